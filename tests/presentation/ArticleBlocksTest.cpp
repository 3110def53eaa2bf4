#include "testing/Printing.h"

#include "presentation/PresentationCase.h"

#include <gtest/gtest.h>

// Articles of a megabyte. The rules themselves are told by the golden folder.

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

} // namespace
} // namespace mirel
