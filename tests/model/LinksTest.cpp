#include "testing/Printing.h"

#include "model/ConnectionBench.h"

namespace mirel {
namespace {

const QString noPost = QStringLiteral("That Mirel link does not contain an X post URL or tweet ID.");
const QString notStored = QStringLiteral("That X post is not in the local library.");
const QString noReference = QStringLiteral("Enter a valid X post URL or tweet ID.");

class Links : public testing::ConnectionBench
{
protected:
    void SetUp() override
    {
        library.open()->upsertFromX(testing::makePost(1), library.clock.now());
        makeModel();
        blockOn(model->start());
    }

    void open(const char* url) { blockOn(model->handleOpenURL(QUrl(QString::fromUtf8(url)))); }
    void openTweet(const char* text) { blockOn(model->openTweetURL(QString::fromUtf8(text))); }

    QString opened() const { return model->readerBookmark() ? model->readerBookmark()->tweetID : QString(); }
};

TEST_F(Links, OpenThePostThatTheyName)
{
    for (const char* const url :
         {"mirel://open/10001", "MIREL://Post/10001/", "mirel://post?id=10001",
          "mirel://open?TWEET=%2010001%20", "mirel://open?url=https%3A%2F%2Fx.com%2Fada%2Fstatus%2F10001",
          "https://x.com/ada/status/10001", "https://www.twitter.com/ada/status/10001/photo/1?s=20"}) {
        blockOn(model->show(SidebarDestination::library));
        ASSERT_EQ(opened(), QString());
        open(url);
        EXPECT_EQ(opened(), QStringLiteral("10001")) << url;
    }
    EXPECT_EQ(error(), QString());
}

TEST_F(Links, WithoutAPostAreTold)
{
    for (const char* const url :
         {"mirel://post?url=&id=123", "mirel://open", "mirel://open/", "mirel://settings/1",
          "https://elsewhere.example/ada/status/10001", "file:///etc/passwd", "10001", ""}) {
        model->dismissError();
        open(url);
        EXPECT_EQ(error(), noPost) << url;
        EXPECT_EQ(opened(), QString());
    }
}

TEST_F(Links, ThatNameAPostWronglyAreTold)
{
    open("mirel://open/no-post");
    EXPECT_EQ(error(), noReference);
    open("https://x.com/ada/status/abc/status/10001");
    EXPECT_EQ(error(), noReference);
}

TEST_F(Links, ToAPostThatIsNotStoredAreTold)
{
    open("mirel://open/1234567890");
    EXPECT_EQ(error(), notStored);
    EXPECT_EQ(opened(), QString());
}

TEST_F(Links, OfASignInNeedTheServiceForIt)
{
    blockOn(model->shutDown());
    MirelServices withoutOAuth = services({});
    withoutOAuth.oauth.reset();
    model = std::make_unique<MirelAppModel>(std::move(withoutOAuth));
    open("mirel://oauth/x?state=s&code=c");
    EXPECT_EQ(error(), noPost);
}

TEST_F(Links, APastedReferenceOpensItsPost)
{
    for (const char* const text :
         {"  10001 ", "https://x.com/ada/status/10001/photo/1", "https://elsewhere.example/status/10001"}) {
        blockOn(model->show(SidebarDestination::library));
        openTweet(text);
        EXPECT_EQ(opened(), QStringLiteral("10001")) << text;
    }
    EXPECT_EQ(error(), QString());
}

TEST_F(Links, APastedTextWithoutAPostIsTold)
{
    for (const char* const text : {"", "  ", "ada", "https://x.com/ada", "https://x.com/ada/status/",
                                   "https://x.com/ada/status/abc/status/10001"}) {
        model->dismissError();
        openTweet(text);
        EXPECT_EQ(error(), noReference) << text;
    }
    model->dismissError();
    openTweet("1234567890");
    EXPECT_EQ(error(), notStored);
}

TEST_F(Links, AnyNumberInUnicodeIsAnId)
{
    openTweet("١٢٣");
    EXPECT_EQ(error(), notStored);
}

TEST_F(Links, ALibraryThatCannotBeReadIsTold)
{
    library.connect()->execute("ALTER TABLE bookmarks RENAME TO gone");
    openTweet("10001");
    EXPECT_TRUE(error().startsWith(QStringLiteral("Local library command failed"))) << qPrintable(error());
    library.connect()->execute("ALTER TABLE gone RENAME TO bookmarks");
}

TEST(LinksWithoutALibrary, AreReadAndOpenNothing)
{
    MirelAppModel model{MirelServices{}};
    blockOn(model.openTweetURL(QStringLiteral("10001")));
    EXPECT_EQ(model.lastError(), std::nullopt);
    blockOn(model.openTweetURL(QStringLiteral("ada")));
    EXPECT_EQ(model.lastError(), noReference);
    blockOn(model.handleOpenURL(QUrl(QStringLiteral("mirel://oauth/x?code=1"))));
    EXPECT_EQ(model.lastError(), noPost);
}

} // namespace
} // namespace mirel
