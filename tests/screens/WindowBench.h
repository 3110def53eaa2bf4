#pragma once

#include "screens/InventedPosts.h"
#include "screens/ScriptedX.h"
#include "testing/Eventually.h"
#include "testing/Printing.h"

#include "credentials/InMemoryCredentialVault.h"
#include "screens/Screens.h"
#include "support/BlockOn.h"

#include <QQuickItem>
#include <QTest>

#include <gtest/gtest.h>

namespace mirel::testing {

// The real window over the real model and a library of its own. The test fills the library, then opens the
// window.
class WindowBench : public ::testing::Test
{
protected:
    WindowBench();
    ~WindowBench() override;

    void fill(const QList<SyncedBookmark>& posts);
    // `count` posts, the newest first in the list.
    void fillWithNumberedPosts(int count);

    // A model over the library; `pages` gives it an X to sync from.
    void makeModel(const std::optional<ScriptedX::Pages>& pages = {}, bool isConnected = false);
    // Shows the window, and its rows once `model` has loaded them.
    void openWindow();
    // Shows the window and leaves the model as it is.
    void showWindow();

    [[nodiscard]] QQuickWindow& window() const { return screens->window(); }
    // The visible item of that object name; null when there is none.
    [[nodiscard]] QQuickItem* visible(const char* name, QQuickItem* below = nullptr) const;
    [[nodiscard]] QList<QQuickItem*> allVisible(const char* name, QQuickItem* below = nullptr) const;
    [[nodiscard]] QString text(const char* name, QQuickItem* below = nullptr) const;
    // The rows that are on the screen, from top to bottom.
    [[nodiscard]] QList<QQuickItem*> rows() const;
    [[nodiscard]] QQuickItem& list() const;

    // No text and no control stands out of the window, and no control is narrower than what it holds.
    void expectNothingIsCut() const;
    // Saves what the window shows as `name`.png among the build's pictures, to be looked at.
    void keepPicture(const QString& name) const;

    // Types into what has the keyboard.
    void type(const char* text);
    // The text of the current row.
    [[nodiscard]] QString currentRowText() const;
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void click(QQuickItem* item);
    // A sync begins when the test says so.
    void preferNoAutomaticSync() const;

    TemporaryLibrary library;
    DesktopSettings desktop{DesktopSettings::Values{}};
    std::unique_ptr<MirelAppModel> model;
    std::unique_ptr<Screens> screens;
    // What the browser was asked to show.
    QList<QUrl> openedPages;
};

} // namespace mirel::testing
