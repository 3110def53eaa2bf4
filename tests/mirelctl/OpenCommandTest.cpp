#include "CommandBench.h"

namespace mirel {
namespace {

class OpenCommandOutput : public testing::CommandBench
{
protected:
    // What stands between the address and the fields below the post.
    QByteArray body(const QByteArray& output)
    {
        const qsizetype start = output.indexOf("/10001\n");
        return output.sliced(start + 7, output.indexOf("\nCounters") - start - 7);
    }

    void storeArticle(const QByteArray& blocks, const QByteArray& entities = "[]",
                      const QByteArray& includes = "{}")
    {
        SyncedBookmark post = testing::makePost(1);
        post.contentTitle = QStringLiteral("Title");
        post.rawJSON = R"({"tweet":{"id":"10001","article":{"content_state":{"blocks":)" + blocks +
                       R"(,"entities":)" + entities + R"(}}},"includes":)" + includes + '}';
        store(post);
    }
};

TEST_F(OpenCommandOutput, ShowsAPostWithWhatItsUserMadeOfIt)
{
    SyncedBookmark post = testing::makePost(1);
    post.text = QStringLiteral("A &amp; B\x1b[2J");
    post.media = {{.id = QStringLiteral("3_1"),
                   .kind = MediaKind::photo,
                   .url = QUrl(QStringLiteral("https://pictures.example/1.jpg")),
                   .altText = QStringLiteral("A cat")}};
    post.rawJSON = R"({"tweet":{"id":"10001","entities":{"urls":[
        {"expanded_url":"https://a.example/","title":"A page"},{"expanded_url":"https://b.example/"}]}}})";
    store(post);
    text("label create Work");
    text("label add work 10001");
    text("folder create Box");
    text("folder assign box 10001");
    text("highlight add 10001 \"A & B\"");
    inLibrary([](LocalLibraryStore& library) {
        library.updateLocalState(1, QStringLiteral("My note"), true, true, true);
        library.replaceThread(1, {{.tweetID = QStringLiteral("10001"), .text = QStringLiteral("First")},
                                  {.tweetID = QStringLiteral("9"), .text = QStringLiteral("Second")}});
    });
    EXPECT_EQ(output("open https://x.com/ada/status/10001", forPeople),
              "Ada Lovelace (@ada)\n"
              "2020-09-13 12:26\n"
              "Thread\n"
              "https://x.com/ada/status/10001\n"
              "\n"
              "A & B[2J\n"
              "\n"
              "Second\n"
              "\n"
              "Link        A page <https://a.example/>\n"
              "Link        https://b.example/\n"
              "Media       photo https://pictures.example/1.jpg (A cat)\n"
              "Counters    6 likes, 2 reposts, 4 replies, 5 quotes, 3 bookmarks, 1 views\n"
              "State       read, favorite, archived\n"
              "Labels      Work\n"
              "Folder      Box\n"
              "Note        My note\n"
              "Highlight   A & B\n");
}

TEST_F(OpenCommandOutput, WritesEveryKindOfBlock)
{
    storeArticle(R"([
        {"type":"header-one","text":"One"},{"type":"header-two","text":"Two"},
        {"type":"header-three","text":"Three"},{"type":"unstyled","text":"Plain"},
        {"type":"unordered-list-item","text":"Item"},
        {"type":"ordered-list-item","text":"First"},{"type":"ordered-list-item","text":"Second"},
        {"type":"blockquote","text":"Said"},
        {"type":"ordered-list-item","text":"Anew"},
        {"type":"atomic","text":" ","entityRanges":[{"key":0}]},
        {"type":"atomic","text":" ","entityRanges":[{"key":1}]},
        {"type":"atomic","text":" ","entityRanges":[{"key":2}]},
        {"type":"atomic","text":" ","entityRanges":[{"key":3}]},
        {"type":"atomic","text":" ","entityRanges":[{"key":4}]},
        {"type":"atomic","text":" ","entityRanges":[{"key":5}]}])",
                 R"([{"type":"divider"},
        {"type":"markdown","data":{"markdown":"if (a)\n    b = \"a line that is longer than sixty columns and stays whole\";"}},
        {"type":"tweet","data":{"post_id":"77"}},{"type":"tweet","data":{"post_id":"78"}},
        {"type":"image","data":{"caption":"Below","media_items":[{"mediaId":"5"}]}},
        {"type":"image","data":{"media_items":[{"mediaId":"6"}]}}])",
                 R"({"tweets":[{"id":"77","author_id":"8","text":"Embedded"}],
        "users":[{"id":"8","name":"Bob","username":"bob"}],
        "media":[{"media_key":"3_5","type":"photo","url":"https://p.example/5.jpg","alt_text":"A dog"}]})");
    EXPECT_EQ(body(output("open 10001", forPeople)),
              "\nTitle\n"
              "\n# One\n"
              "\n## Two\n"
              "\n### Three\n"
              "\nPlain\n"
              "\n- Item\n"
              "\n1. First\n"
              "\n2. Second\n"
              "\n> Said\n"
              "\n1. Anew\n"
              "\n---\n"
              "\n    if (a)\n"
              "        b = \"a line that is longer than sixty columns and stays whole\";\n"
              "\n> [post] Bob (@bob): Embedded\n"
              "\n> [post 78]\n"
              "\n[photo https://p.example/5.jpg (A dog)]\nBelow\n"
              "\n[media]\n");
    EXPECT_TRUE(output("open 10001", forPeople).contains("\nArticle\n"));
}

TEST_F(OpenCommandOutput, WrapsBlocksBehindTheirMarks)
{
    const QByteArray long1 = "words that go on and on until the line of sixty columns is full";
    storeArticle(R"([{"type":"unordered-list-item","text":")" + long1 +
                 R"("},{"type":"blockquote","text":")" + long1 + R"("}])");
    EXPECT_EQ(body(output("open 10001", forPeople)),
              "\nTitle\n"
              "\n- words that go on and on until the line of sixty columns is\n  full\n"
              "\n> words that go on and on until the line of sixty columns is\n> full\n");
    EXPECT_TRUE(output("open 10001", forPipes).contains("- " + long1 + '\n'));
}

TEST_F(OpenCommandOutput, WritesTheAddressBehindWhatIsLinkedAndDropsRangesOutsideOfTheText)
{
    storeArticle(R"([{"text":"one two","entityRanges":[
        {"key":0,"offset":0,"length":3},{"key":1,"offset":4,"length":3},
        {"key":0,"offset":4,"length":4},{"key":0,"offset":-1,"length":2},{"key":0,"offset":2,"length":0},
        {"key":0,"offset":9223372036854775807,"length":9223372036854775807}]}])",
                 R"([{"type":"link","data":{"url":"https://a.example/"}},
        {"type":"link","data":{"url":"https://b.example/"}}])");
    EXPECT_EQ(body(output("open 10001", forPipes)),
              "\nTitle\n\none <https://a.example/> two <https://b.example/>\n");
}

TEST_F(OpenCommandOutput, ShowsQuotedContent)
{
    SyncedBookmark post = testing::makePost(1);
    post.quotedPost = QuotedPost{.tweetID = QStringLiteral("9"),
                                 .author = SyncedAuthor{.xID = QStringLiteral("8"),
                                                        .name = QStringLiteral("Bob"),
                                                        .username = QStringLiteral("bob")},
                                 .text = QStringLiteral("Quoted\ntext"),
                                 .media = {{.id = QStringLiteral("3_1"),
                                            .kind = MediaKind::video,
                                            .url = QUrl(QStringLiteral("https://v.example/1.mp4"))}}};
    post.rawJSON = R"({"tweet":{"id":"10001"},"includes":{"tweets":[
        {"id":"9","entities":{"urls":[{"expanded_url":"https://a.example/","title":"A page"}]}}]}})";
    store(post);
    const QByteArray shown = output("open 10001", forPeople);
    EXPECT_TRUE(shown.contains("\nQuoted video\n"));
    EXPECT_EQ(body(shown), "\nPost number 1\n"
                           "\n> Bob (@bob)\n"
                           "\n> A page\n"
                           "\n> Quoted\n> text\n"
                           "\n> A page <https://a.example/>\n"
                           "\n> [video https://v.example/1.mp4]\n");
}

TEST_F(OpenCommandOutput, ShowsTheArticleOfAQuotedPost)
{
    SyncedBookmark post = testing::makePost(1);
    post.quotedPost = QuotedPost{.tweetID = QStringLiteral("9"), .text = QStringLiteral("https://t.co/a")};
    post.rawJSON = R"({"tweet":{"id":"10001"},"includes":{"tweets":[{"id":"9","article":{"title":"Its title",
        "content_state":{"blocks":[{"type":"ordered-list-item","text":"Item"}]}}}]}})";
    store(post);
    const QByteArray shown = output("open 10001", forPeople);
    EXPECT_TRUE(shown.contains("\nQuoted article\n"));
    EXPECT_EQ(body(shown), "\nPost number 1\n\n> Quoted post\n\n> Its title\n\n> 1. Item\n");
}

TEST_F(OpenCommandOutput, ShowsTheWholeTextOfALongPostOnce)
{
    SyncedBookmark post = testing::makePost(1);
    post.text = QStringLiteral("The beginning");
    post.contentText = QStringLiteral("The beginning and the end");
    store(post);
    EXPECT_EQ(body(output("open 10001", forPipes)), "\nThe beginning and the end\n");
}

TEST_F(OpenCommandOutput, IsThinnerWhenTheRawJSONIsDamaged)
{
    SyncedBookmark post = testing::makePost(1);
    post.rawJSON = "{\"tweet\":";
    store(post);
    EXPECT_EQ(body(output("open 10001", forPipes)), "\nPost number 1\n");
}

TEST_F(OpenCommandOutput, GivesMachinesTheBookmark)
{
    storePosts(1);
    EXPECT_TRUE(json<Bookmark>("open 10001") == json<Bookmark>("show 10001"));
}

TEST_F(OpenCommandOutput, RefusesWhatIsNoPostAndWhatIsNotStored)
{
    storePosts(1);
    EXPECT_EQ(failure("open nonsense"), "Enter a valid X post URL or tweet ID.");
    EXPECT_EQ(failure("open https://x.com/ada/status/abc/status/10001"),
              "Enter a valid X post URL or tweet ID.");
    EXPECT_EQ(failure("open \"\""), "Enter a valid X post URL or tweet ID.");
    EXPECT_EQ(failure("open 999"), "That X post is not in the local library.");
    EXPECT_EQ(failure("open \"  10001 \""), "no failure");
    EXPECT_EQ(failure("open https://x.com/ada/status/10001/photo/1"), "no failure");
}

} // namespace
} // namespace mirel
