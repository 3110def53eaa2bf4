#pragma once

#include "library/LocalLibraryStore.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

namespace mirel::testing {

// A clock that stands still until it is moved.
struct ManualClock
{
    std::shared_ptr<double> seconds = std::make_shared<double>(1'700'000'000.25);

    [[nodiscard]] Instant now() const { return Instant::fromSecondsSince1970(*seconds); }
    void advance(double by) const { *seconds += by; }
    [[nodiscard]] Clock clock() const
    {
        return [shared = seconds] { return Instant::fromSecondsSince1970(*shared); };
    }
};

// A directory for one test with the path of a library in it.
class TemporaryLibrary
{
public:
    [[nodiscard]] QString path() const { return m_directory.filePath(QStringLiteral("mirel.sqlite3")); }
    [[nodiscard]] QString directory() const { return m_directory.path(); }

    // Opens the library's store.
    std::unique_ptr<LocalLibraryStore> open(SearchPreparation preparation = SearchPreparation::onDemand) const
    {
        return std::make_unique<LocalLibraryStore>(path(), clock.clock(), FileManager::standard(),
                                                   preparation);
    }

    // A connection of its own, for looking at the tables.
    [[nodiscard]] std::unique_ptr<SQLiteConnection> connect() const
    {
        return std::make_unique<SQLiteConnection>(path());
    }

    ManualClock clock;

private:
    // In memory where the system has such a directory: waiting for a disk tests nothing.
    [[nodiscard]] static QString pathTemplate()
    {
        const QString memory = QStringLiteral("/dev/shm");
        const QString root = QFileInfo(memory).isWritable() ? memory : QDir::tempPath();
        return root + QStringLiteral("/mirel-test-XXXXXX");
    }

    QTemporaryDir m_directory{pathTemplate()};
};

// A post as a sync brings it. Posts of the same number are equal; the higher the number, the later.
inline SyncedBookmark makePost(int number)
{
    const QString digits = QString::number(number);
    return {
        .tweetID = QStringLiteral("1000") + digits,
        .conversationID = QStringLiteral("2000") + digits,
        .author = {.xID = QStringLiteral("42"),
                   .name = QStringLiteral("Ada Lovelace"),
                   .username = QStringLiteral("ada"),
                   .profileImageURL = QUrl(QStringLiteral("https://pictures.example/ada.png"))},
        .text = QStringLiteral("Post number %1").arg(number),
        .language = QStringLiteral("en"),
        .sourceURL = QUrl(QStringLiteral("https://x.com/ada/status/1000") + digits),
        .createdAt = Instant::fromSecondsSince1970(1'600'000'000.5 + number),
        .metrics = {.views = number, .reposts = 2, .bookmarks = 3, .replies = 4, .quotes = 5, .likes = 6},
        .rawJSON = QByteArrayLiteral("{\"tweet\":{\"id\":\"1000") + digits.toUtf8() + "\"}}",
    };
}

} // namespace mirel::testing
