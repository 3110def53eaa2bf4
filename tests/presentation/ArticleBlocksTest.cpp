#include "testing/Printing.h"

#include "presentation/PresentationCase.h"
#include "testing/RandomChoices.h"

#include <gtest/gtest.h>

// Articles of a megabyte, and orders against their definition. The rules themselves are told by the golden
// folder.

namespace mirel {
namespace {

constexpr qsizetype megabyte = 1024 * 1024;

// Of every script, with joined emoji; longer than a heading and a line of its own.
QString paragraph(int number)
{
    return QStringLiteral(
               "%1 学校と軽い文化に美味しいゲームは食べたらしい مرحبا بكم جميعا שלום לכולם "
               "👩‍👩‍👧‍👦 and the rest of a paragraph that is a hundred characters long or "
               "more.")
        .arg(number);
}

QList<ArticleBlock> blocksOf(const QJsonObject& article)
{
    const QJsonObject post{{QStringLiteral("article"), article}};
    return PostPresentation(bookmarkOf("{}", writeJSON(post))).articleBlocks;
}

TEST(LargeArticle, KeepsEveryBlockOfTheEditor)
{
    QJsonArray source;
    QStringList texts;
    for (qsizetype size = 0; size < megabyte; size += texts.last().toUtf8().size()) {
        texts.append(paragraph(static_cast<int>(texts.size())));
        const QJsonObject style{{QStringLiteral("offset"), texts.size()},
                                {QStringLiteral("length"), 1},
                                {QStringLiteral("style"), QStringLiteral("Bold")}};
        source.append(QJsonObject{{QStringLiteral("text"), texts.last()},
                                  {QStringLiteral("inlineStyleRanges"), QJsonArray{style}}});
    }
    const QList<ArticleBlock> blocks =
        blocksOf({{QStringLiteral("content_state"), QJsonObject{{QStringLiteral("blocks"), source}}}});
    ASSERT_EQ(blocks.size(), texts.size());
    for (qsizetype i = 0; i < blocks.size(); ++i) {
        ASSERT_EQ(blocks[i].text, texts[i]);
        ASSERT_EQ(blocks[i].id, QStringLiteral("block-%1").arg(i));
        ASSERT_EQ(blocks[i].styles, QList<ArticleStyleRange>({{i + 1, 1, ArticleStyleRange::Style::bold}}));
    }
}

TEST(LargeArticle, KeepsEveryLineOfThePlainText)
{
    QStringList lines;
    for (qsizetype size = 0; size < megabyte; size += lines.last().toUtf8().size())
        lines.append(paragraph(static_cast<int>(lines.size())));
    const QList<ArticleBlock> blocks =
        blocksOf({{QStringLiteral("plain_text"), lines.join(QStringLiteral("\n\n"))}});
    ASSERT_EQ(blocks.size(), lines.size());
    for (qsizetype i = 0; i < blocks.size(); ++i) {
        ASSERT_EQ(blocks[i].text, lines[i]);
        ASSERT_EQ(blocks[i].id, QStringLiteral("fallback-%1").arg(2 * i));
    }
}

TEST(LargeArticle, StandsALineOfAMegabyte)
{
    const QString line(megabyte, u'字');
    const auto blocks = blocksOf(
        {{QStringLiteral("plain_text"), QString(QStringLiteral("Head\n") + line + QStringLiteral("\nend"))}});
    ASSERT_EQ(blocks.size(), 3);
    EXPECT_EQ(blocks[0].kind, ArticleBlock::Kind::headingTwo);
    EXPECT_EQ(blocks[1].kind, ArticleBlock::Kind::paragraph);
    EXPECT_EQ(blocks[1].text, line);
}

TEST(LargeArticle, StandsAMegabyteOfBlankLines)
{
    const auto blocks = blocksOf({{QStringLiteral("plain_text"), QString(megabyte, u'\n')}});
    EXPECT_TRUE(blocks.isEmpty());
    QString placeholders = QStringLiteral("Short\n");
    placeholders += QStringLiteral(" \n").repeated(megabyte / 2);
    EXPECT_EQ(blocksOf({{QStringLiteral("plain_text"), placeholders}}).size(), 1);
}

TEST(LargeArticle, StandsATypeOfAMegabyteOfLettersThatGrow)
{
    const QJsonObject block{{QStringLiteral("type"), QString(megabyte, u'\u0130')},
                            {QStringLiteral("text"), QStringLiteral("Text")}};
    const QList<ArticleBlock> blocks = blocksOf({{QStringLiteral("blocks"), QJsonArray{block}}});
    ASSERT_EQ(blocks.size(), 1);
    EXPECT_EQ(blocks.first().kind, ArticleBlock::Kind::paragraph);
}

// The definition of their order: sorted where the rule is clear, then inserted one after the other.
QStringList orderedByInsertion(QStringList keys)
{
    const auto number = [](const QString& key) {
        bool isNumber = false;
        const qint64 value = key.toLongLong(&isNumber);
        return isNumber ? std::optional(value) : std::nullopt;
    };
    const auto precedes = [&](const QString& a, const QString& b) {
        const auto left = number(a);
        const auto right = number(b);
        return left && right ? *left < *right : a < b;
    };
    std::stable_sort(keys.begin(), keys.end(), [&](const QString& a, const QString& b) {
        return number(a).has_value() == number(b).has_value() ? precedes(a, b) : number(a).has_value();
    });
    for (qsizetype sorted = 1; sorted < keys.size(); ++sorted) {
        for (qsizetype i = sorted; i > 0 && precedes(keys[i], keys[i - 1]); --i)
            keys.swapItemsAt(i, i - 1);
    }
    return keys;
}

QStringList randomKeys(testing::RandomChoices& random)
{
    QStringList keys;
    const QStringList before{QString(), QString(), QStringLiteral("0"), QStringLiteral("-"),
                             QStringLiteral("x")};
    const QStringList after{QString(), QString(), QStringLiteral("a"), QStringLiteral("z")};
    for (int i = random.below(20); i >= 0; --i) {
        const QString start = random.oneOf(before) + QString::number(random.below(120));
        keys.append(start + random.oneOf(after));
    }
    keys.removeDuplicates();
    return keys;
}

TEST(EntityMap, IsOrderedAsIfItsKeysWereInserted)
{
    testing::RandomChoices random(17);
    for (int round = 0; round < 500; ++round) {
        const QStringList keys = randomKeys(random);
        QStringList entities;
        QStringList blocks;
        for (const QString& key : keys) {
            blocks.append(
                QStringLiteral(R"({"type":"atomic","entityRanges":[{"key":%1}]})").arg(blocks.size()));
            entities.append(QStringLiteral(R"("%1":{"type":"markdown","data":{"markdown":"%1"}})").arg(key));
        }
        const QString raw = QStringLiteral(R"({"article":{"blocks":[%1],"entityMap":{%2}}})")
                                .arg(blocks.join(u','), entities.join(u','));
        QStringList shown;
        for (const ArticleBlock& block : PostPresentation(bookmarkOf("{}", raw.toUtf8())).articleBlocks)
            shown.append(block.text);
        ASSERT_EQ(shown, orderedByInsertion(keys)) << raw.toStdString();
    }
}

TEST(MediaOfAnArticle, AreFoundByTheEndOfTheirKeyTheFirstOfSeveral)
{
    testing::RandomChoices random(19);
    const QStringList parts{QString(), QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("12")};
    const auto randomKey = [&] {
        QStringList key;
        for (int i = random.below(4); i >= 0; --i)
            key.append(random.oneOf(parts));
        return key.join(u'_');
    };
    int found = 0;
    for (int round = 0; round < 500; ++round) {
        QStringList keys;
        QStringList media;
        for (int i = random.below(8); i >= 0; --i) {
            keys.append(randomKey());
            media.append(QStringLiteral(R"({"id":"%1","kind":"photo","url":"https://p.example/1.jpg"})")
                             .arg(keys.last()));
        }
        const QString wanted = randomKey();
        keys.sort();
        const auto endsWithWanted = [&](const QString& key) { return key.endsWith(u'_' + wanted); };
        const auto end = std::find_if(keys.cbegin(), keys.cend(), endsWithWanted);
        const QString expected = keys.contains(wanted) ? wanted : end == keys.cend() ? QString() : *end;

        const QString columns = QStringLiteral(R"({"media":[%1]})").arg(media.join(u','));
        const QString raw =
            QStringLiteral(R"({"article":{"plain_text":"t","cover_media":"%1"}})").arg(wanted);
        const auto blocks = PostPresentation(bookmarkOf(columns.toUtf8(), raw.toUtf8())).articleBlocks;
        const bool isFound = keys.contains(wanted) || end != keys.cend();
        ASSERT_EQ(blocks.size(), isFound ? 2 : 1) << columns.toStdString() << raw.toStdString();
        if (!isFound)
            continue;
        ASSERT_EQ(blocks.first().media.first().id, expected) << columns.toStdString() << raw.toStdString();
        ++found;
    }
    EXPECT_GT(found, 100);
    EXPECT_LT(found, 400);
}

} // namespace
} // namespace mirel
