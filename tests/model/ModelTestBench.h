#pragma once

#include "model/HeldLibrary.h"
#include "testing/TemporaryLibrary.h"
#include "x/FakeX.h"

#include "credentials/InMemoryCredentialVault.h"
#include "model/MirelAppModel.h"
#include "support/BlockOn.h"

#include <gtest/gtest.h>

namespace mirel::testing {

// A model over a temporary library and a fake X, with its services on their threads.
class ModelTestBench : public ::testing::Test
{
protected:
    void TearDown() override
    {
        if (model)
            blockOn(model->shutDown());
    }

    // Fills the library before the model is made.
    void store(int first, int last)
    {
        const auto opened = library.open();
        for (int number = first; number <= last; ++number)
            opened->upsertFromX(makePost(number), library.clock.now());
    }

    void makeModel(std::optional<XCredentials> credentials = XCredentials{.accessToken = QStringLiteral("a")})
    {
        if (!syncsAutomatically)
            prefer([](AppPreferences& preferences) { preferences.automaticSync = false; });
        MirelServices services;
        services.store = std::make_unique<Serial<LocalLibraryStore>>(
            std::make_shared<ServiceThread>(QStringLiteral("library")), [this] { return library.open(); });
        const auto thread = std::make_shared<ServiceThread>(QStringLiteral("services"));
        services.vault = std::make_unique<Serial<CredentialVault>>(
            thread, [&] { return std::make_unique<InMemoryCredentialVault>(credentials); });
        services.x = std::make_unique<Serial<XDirectAPI>>(thread, [this] {
            auto fake = makeX();
            x = fake.get();
            return fake;
        });
        services.syncService = std::make_unique<Serial<MirelSyncService>>(thread, [&] {
            return std::make_unique<MirelSyncService>(services.x->unguarded(), *services.store,
                                                      library.clock.clock());
        });
        model = std::make_unique<MirelAppModel>(std::move(services), std::nullopt, library.clock.clock());
    }

    virtual std::unique_ptr<FakeX> makeX() { return std::make_unique<FakeX>(); }

    // Changes the preferences in the library; the model reads them when it starts.
    template <typename Change>
    void prefer(Change change)
    {
        const auto opened = library.open();
        AppPreferences preferences = opened->preferences();
        change(preferences);
        opened->savePreferences(preferences);
    }

    // Fills the library, makes the model, and starts it.
    void startWith(int posts)
    {
        store(1, posts);
        makeModel();
        blockOn(model->start());
    }

    // The id of the post of that number among the rows of the current page.
    qint64 idOf(int number) const
    {
        const QString text = QStringLiteral("Post number %1").arg(number);
        for (const Bookmark& bookmark : model->bookmarks()) {
            if (bookmark.text == text)
                return bookmark.id;
        }
        ADD_FAILURE() << "no row is post number " << number;
        return 0;
    }

    // Writes to the library as another part of the program does.
    void change(qint64 id, bool isRead, bool isFavorite, bool isArchived)
    {
        library.open()->updateLocalState(id, {}, isRead, isFavorite, isArchived);
    }

    QStringList shownTexts() const
    {
        QStringList texts;
        for (const Bookmark& bookmark : model->bookmarks())
            texts.append(bookmark.text);
        return texts;
    }

    // Runs the event loop until `condition` holds.
    template <typename Condition>
    static void runUntil(Condition condition)
    {
        QEventLoop loop;
        while (!condition())
            loop.processEvents(QEventLoop::WaitForMoreEvents);
    }

    TemporaryLibrary library;
    // Leaves the preferences alone, so that the start of the model may sync.
    bool syncsAutomatically = false;
    std::unique_ptr<MirelAppModel> model;
    // Belongs to the model; lives on the services thread.
    FakeX* x = nullptr;
};

} // namespace mirel::testing
