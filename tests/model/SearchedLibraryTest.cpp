#include "testing/Printing.h"

#include "model/ModelTestBench.h"

namespace mirel {
namespace {

using testing::HeldLibrary;
using testing::makePost;

// The library state over the search language, the presentation and the preferences.
class SearchedLibrary : public testing::ModelTestBench
{
protected:
    void storeWithMedia(int number)
    {
        SyncedBookmark post = makePost(number);
        post.media = {
            {.id = QStringLiteral("3_1"), .url = QUrl(QStringLiteral("https://pictures.example/1.png"))}};
        library.open()->upsertFromX(post, library.clock.now());
    }
};

TEST_F(SearchedLibrary, ListsWhatTheQueryMatches)
{
    startWith(120);
    blockOn(model->runSearch(QStringLiteral("\"number 11\"")));
    EXPECT_EQ(model->libraryResultCount(), 11) << "11, and 110 to 119";
    EXPECT_EQ(model->pageCount(), 1);
    EXPECT_EQ(model->bookmarks().first().text, QStringLiteral("Post number 119"));
    EXPECT_EQ(model->counts().all, 120) << "the counts are of the mailboxes";
    blockOn(model->resetRefinements());
    EXPECT_EQ(model->libraryResultCount(), 120);
}

TEST_F(SearchedLibrary, ASearchCanBePreparedInParts)
{
    store(1, 600);
    makeModel();
    const auto textBytes = [this] {
        return blockOn(
            model->store()->call([](LocalLibraryStore& opened) { return opened.indexSize().bytes; }));
    };
    const auto list = [](LocalLibraryStore& opened) {
        return opened.listBookmarks(LibraryFilter::all, 1, 0, LibrarySort::newest);
    };
    blockOn(model->store()->call(list));
    const qint64 before = textBytes();
    blockOn(model->prepareSearch());
    const qint64 prepared = textBytes();
    EXPECT_GT(prepared, before + 600 * 50) << "the texts of all posts are in memory";
    blockOn(model->runSearch(QStringLiteral("\"number 11\"")));
    EXPECT_EQ(model->libraryResultCount(), 11) << "11, and 110 to 119";
    EXPECT_EQ(textBytes(), prepared);
}

TEST_F(SearchedLibrary, PreparingEndsWithTheModel)
{
    store(1, 600);
    makeModel();
    const auto bytes = [](LocalLibraryStore& opened) { return opened.indexSize().bytes; };
    testing::HeldLibrary held(*model);
    auto preparing = model->prepareSearch();
    auto ending = model->shutDown();
    held.release();
    blockOn(std::move(preparing));
    blockOn(std::move(ending));
    const qint64 left = blockOn(model->store()->call(bytes));
    const auto prepareAll = [](LocalLibraryStore& opened) {
        while (!opened.prepareSearch()) {
        }
    };
    blockOn(model->store()->call(prepareAll));
    EXPECT_LT(left, blockOn(model->store()->call(bytes))) << "a part was not prepared any more";
}

TEST_F(SearchedLibrary, PagesThroughTheMatchesAlone)
{
    startWith(120);
    blockOn(model->runSearch(QStringLiteral("NOT \"number 1\"")));
    EXPECT_EQ(model->libraryResultCount(), 88);
    blockOn(model->nextPage());
    EXPECT_EQ(model->bookmarks().size(), 38);
    blockOn(model->setSearchQuery(QStringLiteral("\"number 120\"")));
    EXPECT_EQ(model->page(), 0);
    EXPECT_EQ(model->bookmarks().size(), 1);
}

TEST_F(SearchedLibrary, AQueryNarrowsWhatAnAuthorHasWritten)
{
    startWith(12);
    blockOn(model->openLibrary(model->bookmarks().first().author.id, {}, {}));
    blockOn(model->runSearch(QStringLiteral("\"number 12\"")));
    EXPECT_EQ(model->libraryResultCount(), 1);
    blockOn(model->openLibrary(4711, {}, {}));
    blockOn(model->runSearch(QStringLiteral("\"number 12\"")));
    EXPECT_EQ(model->libraryResultCount(), 0);
}

TEST_F(SearchedLibrary, ShowsTheResultsOfTheLastLetterAlone)
{
    startWith(12);
    HeldLibrary held(*model);
    QList<qint64> shown;
    QObject::connect(model.get(), &MirelAppModel::libraryChanged,
                     [&] { shown.append(model->libraryResultCount()); });
    for (const char16_t* query : {u"n", u"number", u"\"number 1\"", u"\"number 12\""})
        model->requestSearch(QString::fromUtf16(query));
    held.release();
    blockOn(model->shutDown());
    EXPECT_EQ(shown, QList<qint64>{1});
    EXPECT_EQ(shownTexts(), QStringList{QStringLiteral("Post number 12")});
}

TEST_F(SearchedLibrary, APageOfMatchesThatRanOffTheEndStepsBack)
{
    startWith(60);
    blockOn(model->runSearch(QStringLiteral("is:unread")));
    blockOn(model->nextPage());
    ASSERT_EQ(model->bookmarks().size(), 10);
    for (const Bookmark& bookmark : model->bookmarks())
        change(bookmark.id, true, false, false);
    blockOn(model->refreshLibrary());
    EXPECT_EQ(model->page(), 0);
    EXPECT_EQ(model->bookmarks().size(), 50);
}

TEST_F(SearchedLibrary, SelectsTheMatchesOfAllPages)
{
    startWith(120);
    blockOn(model->runSearch(QStringLiteral("NOT \"number 1\"")));
    blockOn(model->selectAllLibraryResults());
    EXPECT_EQ(model->selectedBookmarkIDs().size(), 88);
    EXPECT_EQ(model->statusMessage(), QStringLiteral("Selected all 88 matching bookmarks."));
}

TEST_F(SearchedLibrary, TheMediaListHoldsAllBookmarksWithMediaWhateverIsRefined)
{
    store(1, 3);
    storeWithMedia(4);
    storeWithMedia(5);
    makeModel();
    blockOn(model->start());
    change(idOf(4), true, true, true);
    blockOn(model->setLibrarySort(LibrarySort::oldest));
    blockOn(model->openLibrary(4711, {}, {}));
    blockOn(model->show(SidebarDestination::media));
    ASSERT_EQ(model->mediaBookmarks().size(), 2);
    EXPECT_EQ(model->mediaBookmarks()[0].text, QStringLiteral("Post number 5"));
    EXPECT_EQ(model->mediaBookmarks()[1].text, QStringLiteral("Post number 4"));
    const qint64 id = model->mediaBookmarks()[1].id;
    blockOn(model->openBookmark(id));
    EXPECT_EQ(model->readerBookmark()->id, id);
    EXPECT_EQ(model->selectedBookmark()->id, id);
}

TEST_F(SearchedLibrary, BeginsWithTheSavedPreferences)
{
    store(1, 45);
    AppPreferences preferences;
    preferences.pageSize = 20;
    preferences.automaticSync = false;
    library.open()->savePreferences(preferences);
    makeModel();
    blockOn(model->start());
    EXPECT_EQ(model->preferences(), preferences);
    EXPECT_EQ(model->bookmarks().size(), 20);
    EXPECT_EQ(model->pageCount(), 3);
    blockOn(model->nextPage());
    blockOn(model->nextPage());
    EXPECT_EQ(model->bookmarks().size(), 5);
}

TEST_F(SearchedLibrary, PreferencesThatCannotBeReadAreTheDefaultsWithoutAMessage)
{
    store(1, 3);
    library.connect()->execute(
        "INSERT INTO app_state (key, value_json) VALUES ('preferences', '{\"appearance\": \"neon\"}')");
    EXPECT_THROW((void)library.open()->preferences(), std::exception);
    syncsAutomatically = true;
    makeModel();
    blockOn(model->start());
    EXPECT_EQ(model->preferences(), AppPreferences{});
    EXPECT_EQ(model->lastError(), std::nullopt);
    EXPECT_EQ(model->bookmarks().size(), 3);
}

TEST_F(SearchedLibrary, TellsWhatKindOfPostIsShown)
{
    SyncedBookmark article = makePost(2);
    article.contentTitle = QStringLiteral("Tides &amp; times");
    article.contentText = QStringLiteral("The sea.");
    library.open()->upsertFromX(article, library.clock.now());
    startWith(1);
    const auto shown = [this](const char* field) {
        return model->property("shownPost").toMap()[QString::fromLatin1(field)].toString();
    };
    model->selectBookmark(model->bookmarks()[0].id);
    blockOn(model->refreshLibrary());
    EXPECT_EQ(shown("kind"), QStringLiteral("Article"));
    EXPECT_EQ(shown("title"), QStringLiteral("Tides & times"));
    EXPECT_EQ(shown("text"), QStringLiteral("The sea."));
    model->selectBookmark(model->bookmarks()[1].id);
    EXPECT_EQ(shown("kind"), QString());
    blockOn(model->refreshLibrary());
    EXPECT_EQ(shown("kind"), QStringLiteral("Post"));
    EXPECT_EQ(shown("title"), QString());
}

} // namespace
} // namespace mirel
