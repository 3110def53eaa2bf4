#include "testing/Printing.h"

#include "records/Bookmark.h"
#include "records/BookmarkHighlight.h"
#include "records/BookmarkRule.h"
#include "records/LibrarySummaries.h"
#include "records/SyncRun.h"

#include <gtest/gtest.h>

namespace mirel {
namespace {

// One record with every field set, as JSON, and the fields that may be missing.
struct RecordRow
{
    const char* name;
    QByteArray json;
    QStringList optionalKeys;
    // Decodes and encodes again.
    QJsonValue (*roundTrip)(const QJsonValue&);
};

template <typename Record>
QJsonValue roundTrip(const QJsonValue& json)
{
    const auto record = fromJSON<Record>(json);
    EXPECT_TRUE(record == fromJSON<Record>(toJSON(record)));
    return toJSON(record);
}

const QByteArray metrics = R"({"views":1,"reposts":2,"bookmarks":3,"replies":4,"quotes":5,"likes":6})";
const QByteArray media = R"({"id":"3_1","kind":"animated_gif","url":"https://a.example/1.mp4",
    "previewURL":"https://a.example/1.jpg","altText":"é","width":640,"height":480})";
const QByteArray syncedAuthor =
    R"({"xID":"12","name":"Ada","username":"ada","profileImageURL":"https://a.example/ada.jpg"})";
const QByteArray author = R"({"id":9007199254740993,"xID":"12","name":"Ada","username":"ada",
    "profileImageURL":"https://a.example/ada.jpg"})";
const QByteArray tag = R"({"id":1,"name":"Label","slug":"label","colorHex":"#aabbcc","source":"generated"})";
const QByteArray folder = R"({"id":2,"name":"Folder","slug":"folder","description":"d","parentID":1,
    "source":"x","xFolderID":"77"})";
const QByteArray quoted = R"({"tweetID":"5","author":)" + syncedAuthor + R"(,"text":"t","media":[)" + media +
                          R"(],"contentTitle":"T","contentText":"C"})";
const QByteArray threadPost =
    R"({"tweetID":"6","text":"t","createdAt":800000000.125,"metrics":)" + metrics + R"(,"media":[]})";
const QByteArray bookmark = R"({"id":1,"tweetID":"4","conversationID":"4","author":)" + author +
                            R"(,"text":"text 😀","contentTitle":"T","contentText":"C","language":"en",
    "sourceURL":"https://x.com/ada/status/4","createdAt":1.5,"syncedAt":-2.25,"metrics":)" +
                            metrics + R"(,"media":[)" + media + R"(],"quotedPost":)" + quoted +
                            R"(,"thread":[)" + threadPost +
                            R"(],"threadEnrichedAt":3,"rawJSON":"{\"id\":\"4\",\"é\":1.0}","note":"n",
    "isRead":true,"isFavorite":false,"isArchived":true,"reviewedAt":4,"tags":[)" +
                            tag + R"(],"folder":)" + folder + '}';

QStringList keys(const char* names)
{
    return QString::fromLatin1(names).split(u' ', Qt::SkipEmptyParts);
}

class RecordCodingTest : public ::testing::TestWithParam<RecordRow>
{
protected:
    QJsonObject m_whole = parseJSON(GetParam().json).toObject();

    // The key that the error names, empty when decoding succeeds.
    QString failingKey(const QJsonObject& json) const
    {
        try {
            (void)GetParam().roundTrip(json);
        } catch (const JSONCodingError& error) {
            EXPECT_TRUE(error.description().contains(error.key())) << qPrintable(error.description());
            return error.key();
        }
        return {};
    }
};

TEST_P(RecordCodingTest, SurvivesWithEveryFieldSet)
{
    EXPECT_EQ(writeJSON(GetParam().roundTrip(m_whole)), writeJSON(m_whole));
}

TEST_P(RecordCodingTest, NamesTheRequiredKeyThatIsMissingNullOrOfAnotherType)
{
    for (const QString& key : m_whole.keys()) {
        if (GetParam().optionalKeys.contains(key))
            continue;
        QJsonObject broken = m_whole;
        broken.remove(key);
        EXPECT_EQ(failingKey(broken), key) << "missing";
        broken.insert(key, QJsonValue::Null);
        EXPECT_EQ(failingKey(broken), key) << "null";
        broken.insert(key, m_whole.value(key).isObject() ? QJsonValue(7) : QJsonValue(QJsonObject()));
        EXPECT_EQ(failingKey(broken), key) << "of another type";
    }
}

TEST_P(RecordCodingTest, ReadsMissingAndNullOptionalsAsAbsentAndLeavesThemOut)
{
    for (const QString& key : GetParam().optionalKeys) {
        ASSERT_TRUE(m_whole.contains(key)) << qPrintable(key);
        QJsonObject without = m_whole;
        without.remove(key);
        EXPECT_EQ(writeJSON(GetParam().roundTrip(without)), writeJSON(without)) << qPrintable(key);
        QJsonObject null = m_whole;
        null.insert(key, QJsonValue::Null);
        EXPECT_EQ(writeJSON(GetParam().roundTrip(null)), writeJSON(without)) << qPrintable(key);
        QJsonObject broken = m_whole;
        broken.insert(key, QJsonArray());
        EXPECT_EQ(failingKey(broken), key) << "of another type";
    }
}

INSTANTIATE_TEST_SUITE_P(
    Records, RecordCodingTest,
    ::testing::Values(
        RecordRow{"PostMetrics", metrics, {}, roundTrip<PostMetrics>},
        RecordRow{"MediaItem", media, keys("previewURL altText width height"), roundTrip<MediaItem>},
        RecordRow{"SyncedAuthor", syncedAuthor, keys("profileImageURL"), roundTrip<SyncedAuthor>},
        RecordRow{"Author", author, keys("profileImageURL"), roundTrip<Author>},
        RecordRow{"QuotedPost", quoted, keys("author contentTitle contentText"), roundTrip<QuotedPost>},
        RecordRow{"ThreadPost", threadPost, {}, roundTrip<ThreadPost>},
        RecordRow{"Tag", tag, {}, roundTrip<Tag>},
        RecordRow{"Folder", folder, keys("description parentID xFolderID"), roundTrip<Folder>},
        RecordRow{"Bookmark", bookmark,
                  keys("conversationID contentTitle contentText language quotedPost threadEnrichedAt note "
                       "reviewedAt folder"),
                  roundTrip<Bookmark>},
        RecordRow{"TagSummary",
                  R"({"tag":)" + tag + R"(,"bookmarkCount":3,"unreadCount":2})",
                  {},
                  roundTrip<TagSummary>},
        RecordRow{"FolderSummary",
                  R"({"folder":)" + folder + R"(,"bookmarkCount":3,"unreadCount":2})",
                  {},
                  roundTrip<FolderSummary>},
        RecordRow{"AuthorSummary",
                  R"({"author":)" + author + R"(,"bookmarkCount":3})",
                  {},
                  roundTrip<AuthorSummary>},
        RecordRow{"BookmarkRule",
                  R"({"id":1,"name":"n","query":"q","action":"folder","targetID":2,"isEnabled":true,
                      "lastRunAt":5.5,"lastMatchCount":3})",
                  keys("lastRunAt"), roundTrip<BookmarkRule>},
        RecordRow{
            "BookmarkHighlight",
            R"({"id":1,"bookmarkID":2,"selectedText":"s","contextText":"c","startOffset":3,"endOffset":4,
                      "colorHex":"#ffff00","createdAt":5.5})",
            keys("contextText"), roundTrip<BookmarkHighlight>},
        RecordRow{"SyncRun",
                  R"({"id":1,"kind":"automatic","status":"rate_limited","pages":2,"fetched":3,"created":4,
                      "updated":5,"errorMessage":"e","rateLimitResetAt":6.5,"startedAt":7.5,
                      "completedAt":8.5,"createdAt":9.5})",
                  keys("errorMessage rateLimitResetAt startedAt completedAt"), roundTrip<SyncRun>},
        RecordRow{"SyncLogEntry",
                  R"({"id":1,"runID":2,"event":"page","message":"m","page":3,"requested":4,"received":5,
                      "reported":6,"cumulative":7,"hasNextPage":true,"createdAt":8.5})",
                  keys("page requested received reported cumulative hasNextPage"), roundTrip<SyncLogEntry>},
        RecordRow{"LibraryCounts",
                  R"({"all":1,"inbox":2,"read":3,"favorites":4,"archive":5})",
                  {},
                  roundTrip<LibraryCounts>}),
    [](const auto& row) { return std::string(row.param.name); });

template <typename Enumeration>
QStringList texts()
{
    QStringList texts;
    for (const auto& row : rawValues(Enumeration{})) {
        texts.append(row.text);
        EXPECT_EQ(decodeJSON<Enumeration>(encodeJSON(row.value)), row.value);
    }
    EXPECT_THROW((void)decodeJSON<Enumeration>("\"unheard of\""), JSONCodingError);
    EXPECT_THROW((void)decodeJSON<Enumeration>("0"), JSONCodingError);
    return texts;
}

TEST(RecordEnumerations, HaveTheirRawValuesAndNoOthers)
{
    EXPECT_EQ(texts<MediaKind>().join(u' '), u"photo video animated_gif youtube");
    EXPECT_EQ(texts<Tag::Source>().join(u' '), u"manual generated");
    EXPECT_EQ(texts<Folder::Source>().join(u' '), u"local x");
    EXPECT_EQ(texts<BookmarkRule::Action>().join(u' '), u"tag folder");
    EXPECT_EQ(texts<SyncRun::Kind>().join(u' '), u"initial manual automatic");
    EXPECT_EQ(texts<SyncRun::Status>().join(u' '), u"queued running completed rate_limited failed");
    EXPECT_EQ(texts<SyncLogEntry::Event>().join(u' '), u"started page completed failed");
}

TEST(RecordCoding, FailsAWholeArrayForOneUnknownKind)
{
    const QByteArray array = '[' + media + ',' + QByteArray(media).replace("animated_gif", "hologram") + ']';
    try {
        (void)decodeJSON<QList<MediaItem>>(array);
        ADD_FAILURE();
    } catch (const JSONCodingError& error) {
        EXPECT_EQ(error.key(), u"1.kind");
        EXPECT_TRUE(error.description().contains(QStringLiteral("hologram")));
    }
}

TEST(RecordCoding, NamesTheWholePathOfAFailure)
{
    QByteArray broken = bookmark;
    broken.replace(R"("views":1,)", "");
    try {
        (void)decodeJSON<Bookmark>(broken);
        ADD_FAILURE();
    } catch (const JSONCodingError& error) {
        EXPECT_EQ(error.key(), u"metrics.views");
    }
}

TEST(RecordCoding, WritesDatesAsSecondsSince2001)
{
    ThreadPost post;
    post.createdAt = Instant::fromSecondsSince1970(978'307'200 + 12.5);
    EXPECT_EQ(toJSON(post).toObject().value(u"createdAt"), QJsonValue(12.5));
}

TEST(LibraryCounts, BeginWithZeros)
{
    EXPECT_EQ(LibraryCounts(), (LibraryCounts{0, 0, 0, 0, 0}));
}

} // namespace
} // namespace mirel
