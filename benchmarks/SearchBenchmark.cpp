#include "Timing.h"
#include "library/LocalLibraryStore.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>

#include <sqlite3.h>

#include <cstdio>
#include <stdexcept>

namespace mirel {
namespace {

constexpr qint64 pageSize = 50;

QString libraryIn(const QString& directory)
{
    return directory + QStringLiteral("/mirel.sqlite3");
}

// A library for measuring need not survive a power cut.
int writeWithoutWaiting(sqlite3* connection, char**, const sqlite3_api_routines*)
{
    return sqlite3_exec(connection, "PRAGMA synchronous = OFF", nullptr, nullptr, nullptr);
}

// What a user does to a library over the years, the same on every machine: a third with a label, a tenth with
// a note, a seventh in a folder, half read, a few favorites, some archived.
void organize(LocalLibraryStore& store)
{
    const QString color = QStringLiteral("#3E6BF5");
    QList<qint64> labels;
    for (const char* name : {"Work", "Design", "Later", "Science", "Music"})
        labels.append(store.createTag(QString::fromLatin1(name), color, Tag::Source::manual).id);
    QList<qint64> folders;
    for (const char* name : {"Projects", "Recipes", "Papers"})
        folders.append(store.createFolder(QString::fromLatin1(name), {}, {}, Folder::Source::local, {}).id);
    const QList<qint64> ids = store.allBookmarkIDs(LibraryFilter::all, LibrarySort::oldest);
    for (qsizetype i = 0; i < ids.size(); ++i) {
        if (i % 3 == 0)
            store.addTag(labels[i / 3 % labels.size()], ids[i]);
        if (i % 7 == 0)
            store.assignFolder(folders[i / 7 % folders.size()], ids[i]);
        std::optional<QString> note;
        if (i % 10 == 0)
            note = QStringLiteral("For the talk, with what was said on page %1").arg(i % 300);
        if (note || i % 2 == 0)
            store.updateLocalState(ids[i], note, i % 2 == 0, i % 20 == 0, i % 26 == 0);
    }
}

// Does nothing when the library is organized already.
void prepare(const QString& path)
{
    const auto hook = reinterpret_cast<void (*)()>(writeWithoutWaiting);
    sqlite3_auto_extension(hook);
    {
        LocalLibraryStore store(path);
        if (store.libraryCounts().all < pageSize)
            throw std::runtime_error("The library holds less than a page of posts.");
        if (store.tags().isEmpty())
            organize(store);
    }
    sqlite3_cancel_auto_extension(hook);
}

struct Search
{
    const char* name;
    LibraryRefinements refinements;
};

LibraryRefinements query(const char* text)
{
    return {.query = QString::fromUtf8(text)};
}

QList<Search> searches()
{
    const auto instant = [](const char* text) { return Instant::fromISO8601(QString::fromLatin1(text)); };
    return {
        {"everything", {}},
        {"a word", query("kamor")},
        {"a phrase", query("\"our safe weight\"")},
        {"a word that nobody wrote", query("zzzz")},
        {"label:work", query("label:work")},
        {"author:watanabe", query("author:watanabe")},
        {"has:media", query("has:media")},
        {"is:unread", query("is:unread")},
        {"the dates of a year",
         {.dateFrom = instant("2020-01-01T00:00:00Z"), .dateTo = instant("2020-12-31T23:59:59Z")}},
        {"has:links", query("has:links")},
        {"type:article", query("type:article")},
        {"type:link", query("type:link")},
        {"five: text, state, media, label, author", query("kamor is:unread has:media label:work author:mia")},
        {"five: kind, state, label, media, text", query("type:link is:unread NOT label:later has:media ne")},
        {"five: labels, notes, state, folder",
         query("(label:work OR label:design) has:notes is:read folder:projects")},
    };
}

// Prints medians of `runs` runs.
class SearchMeasurement
{
public:
    SearchMeasurement(QString path, int runs, SearchPreparation preparation)
        : m_path(std::move(path))
        , m_runs(runs)
        , m_preparation(preparation)
    {
    }

    // The first search of a store that was just opened, and the same again.
    void compareFirstAndWarm()
    {
        std::vector<double> openings;
        std::printf("%-44s%12s%12s%10s\n", "a page of 50 and the total", "first ms", "warm ms", "found");
        for (const Search& search : searches()) {
            std::vector<double> first;
            std::vector<double> warm;
            qint64 found = 0;
            for (int run = 0; run < m_runs; ++run) {
                openings.push_back(open());
                first.push_back(timeOf([&] { found = find(search); }).count() * 1e3);
                for (int i = 0; i < m_runs; ++i)
                    warm.push_back(timeOf([&] { find(search); }).count() * 1e3);
            }
            std::printf("%-44s%12.2f%12.2f%10lld\n", search.name, median(first), median(warm),
                        static_cast<long long>(found));
        }
        std::printf("%-44s%12.2f\n\n", "opening the library, apart", median(openings));
    }

    void measureListings()
    {
        print(
            "the first page after opening", [this] { open(); }, [this] { list(LibrarySort::newest, 0); });
        const qint64 middle = m_store->libraryCounts().all / 2;
        for (const auto& sort : rawValues(LibrarySort())) {
            const QByteArray name = sort.text.data();
            print(
                "first page, " + name, [] {}, [&] { list(sort.value, 0); });
            print(
                "page in the middle, " + name, [] {}, [&] { list(sort.value, middle); });
        }
        print(
            "counts of the mailboxes", [] {}, [this] { static_cast<void>(m_store->libraryCounts()); });
    }

    // What a search takes in that was written since the last one; the writing is not measured.
    void measureAfterChanges()
    {
        const Search search{"", query("kamor type:article")};
        find(search);
        const qint64 id = m_store->allBookmarkIDs(LibraryFilter::all, LibrarySort::newest).first();
        const Tag label = m_store->tags().first();
        bool state = false;
        const auto again = [&] { find(search); };
        print(
            "a search after a label was put on or off",
            [&] {
                state = !state;
                state ? m_store->addTag(label.id, id) : m_store->removeTag(label.id, id);
            },
            again);
        print(
            "a search after a bookmark was read",
            [&] {
                state = !state;
                m_store->updateLocalState(id, {}, state, false, false);
            },
            again);
        int posts = 0;
        print(
            "a search after a post was stored",
            [&] { m_store->upsertFromX(changed(m_store->bookmark(id), posts++), Instant::now()); }, again);
        print(
            "a search after a label was renamed",
            [&] {
                state = !state;
                const QString name = state ? label.name + QStringLiteral(" renamed") : label.name;
                m_store->renameTag(label.id, name, label.colorHex);
            },
            again);
        m_store->renameTag(label.id, label.name, label.colorHex);
    }

    void printMemory()
    {
        for (const Search& search : searches())
            find(search);
        const auto size = m_store->indexSize();
        std::printf("%-44s%12lld\n", "bytes of the index a bookmark",
                    static_cast<long long>(size.bytes / size.bookmarks));
    }

private:
    double open()
    {
        m_store.reset();
        const auto openAnew = [this] {
            m_store = std::make_unique<LocalLibraryStore>(m_path, Instant::now, FileManager::standard(),
                                                          m_preparation);
        };
        return timeOf(openAnew).count() * 1e3;
    }

    qint64 find(const Search& search)
    {
        return m_store
            ->searchBookmarksPage(LibraryFilter::all, search.refinements, pageSize, 0, LibrarySort::newest)
            .totalCount;
    }

    void list(LibrarySort sort, qint64 offset)
    {
        if (m_store->listBookmarks(LibraryFilter::all, pageSize, offset, sort).isEmpty())
            throw std::runtime_error("A page of the library is empty.");
    }

    static SyncedBookmark changed(const Bookmark& bookmark, int number)
    {
        return {.tweetID = bookmark.tweetID,
                .conversationID = bookmark.conversationID,
                .author = {.xID = bookmark.author.xID,
                           .name = bookmark.author.name,
                           .username = bookmark.author.username,
                           .profileImageURL = bookmark.author.profileImageURL},
                .text = QStringLiteral("Stored %1 times").arg(number),
                .language = bookmark.language,
                .sourceURL = bookmark.sourceURL,
                .createdAt = bookmark.createdAt,
                .metrics = bookmark.metrics,
                .media = bookmark.media,
                .quotedPost = bookmark.quotedPost,
                .rawJSON = bookmark.rawJSON};
    }

    void print(const QByteArray& name, const std::function<void()>& before,
               const std::function<void()>& operation)
    {
        std::vector<double> times;
        for (int run = 0; run < m_runs; ++run) {
            before();
            times.push_back(timeOf(operation).count() * 1e3);
        }
        std::printf("%-44s%12.2f ms\n", name.constData(), median(times));
    }

    QString m_path;
    int m_runs;
    SearchPreparation m_preparation;
    std::unique_ptr<LocalLibraryStore> m_store;
};

void run(const QString& directory, int runs, SearchPreparation preparation)
{
    const QString path = libraryIn(directory);
    if (!QFile::exists(path))
        throw std::runtime_error("There is no library in that directory.");
    prepare(path);
    SearchMeasurement measurement(path, runs, preparation);
    measurement.compareFirstAndWarm();
    measurement.measureListings();
    measurement.measureAfterChanges();
    measurement.printMemory();
}

} // namespace
} // namespace mirel

int main(int argumentCount, char** arguments)
{
    QCoreApplication application(argumentCount, arguments);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Searches and lists the library in DIRECTORY, which gets labels, folders, notes and "
                       "states for that, and is changed while it is measured."));
    parser.addHelpOption();
    const QCommandLineOption runs(QStringLiteral("runs"), QStringLiteral("Runs of each measurement."),
                                  QStringLiteral("N"), QStringLiteral("5"));
    parser.addOption(runs);
    const QCommandLineOption onDemand(
        QStringLiteral("on-demand"),
        QStringLiteral("Open the library without preparing searches, as the window does not."));
    parser.addOption(onDemand);
    parser.addPositionalArgument(QStringLiteral("DIRECTORY"), QStringLiteral("The data directory."));
    parser.process(application);
    if (parser.positionalArguments().size() != 1)
        parser.showHelp(EXIT_FAILURE);
    try {
        mirel::run(parser.positionalArguments().first(), std::max(1, parser.value(runs).toInt()),
                   parser.isSet(onDemand) ? mirel::SearchPreparation::onDemand
                                          : mirel::SearchPreparation::whileOpening);
        return EXIT_SUCCESS;
    } catch (...) {
        std::fprintf(stderr, "search-benchmark: %s\n", qPrintable(mirel::describe(std::current_exception())));
        return EXIT_FAILURE;
    }
}
