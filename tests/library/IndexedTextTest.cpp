#include "testing/Printing.h"

#include "library/IndexedText.h"
#include "testing/RandomChoices.h"

#include <gtest/gtest.h>

namespace mirel {
namespace {

// Of which no piece comes up twice.
QByteArray numbers(int count)
{
    QByteArray text;
    for (int i = 100'000; text.size() < count; ++i)
        text += QByteArray::number(i) + ' ';
    return text.first(count);
}

const QByteArray address = "https://x.com/ada/status/7";

// A post whose text is also that of its article.
QList<SearchableField> repeating(const QByteArray& text)
{
    return {{SearchField::text, text},
            {SearchField::primaryTitle, "title"},
            {SearchField::contentText, text},
            {SearchField::sourceURL, address},
            {SearchField::authorName, "ada"}};
}

TEST(IndexedText, OfNothingKnowsNoAnswer)
{
    const IndexedText nothing;
    EXPECT_FALSE(nothing.canFind("a"));
    EXPECT_EQ(nothing.size(), 0);
}

TEST(IndexedText, KeepsShortPartsWhole)
{
    const auto fields = repeating(numbers(257));
    const IndexedText text(fields);
    EXPECT_EQ(text.size(), joined(fields).size());
    EXPECT_TRUE(text.canFind(joined(fields)));
    EXPECT_TRUE(text.contains(joined(fields)));
    EXPECT_FALSE(text.contains(joined(fields) + ' '));
}

TEST(IndexedText, KeepsOfALongRepetitionTheEnds)
{
    const IndexedText text(repeating(numbers(258)));
    EXPECT_EQ(text.size(), joined(repeating(numbers(258))).size() - 1);
    const IndexedText longer(repeating(numbers(20'000)));
    EXPECT_EQ(longer.size(), joined(repeating(numbers(20'000))).size() - 20'000 + 257);
}

TEST(IndexedText, AnswersForNeedlesUpToTheLengthOfAnEnd)
{
    const IndexedText shortened(repeating(numbers(258)));
    EXPECT_TRUE(shortened.canFind(QByteArray(128, 'a')));
    EXPECT_FALSE(shortened.canFind(QByteArray(129, 'a')));
    const IndexedText whole(repeating(numbers(257)));
    EXPECT_TRUE(whole.canFind(QByteArray(100'000, 'a')));
}

TEST(IndexedText, FindsEveryPieceAndNothingElse)
{
    for (const int size : {258, 259, 300, 1'000}) {
        const auto fields = repeating(numbers(size));
        const IndexedText text(fields);
        const QByteArray whole = joined(fields);
        for (const int length : {1, 2, 127, 128}) {
            for (qsizetype begin = 0; begin + length <= whole.size(); ++begin)
                ASSERT_TRUE(text.contains(whole.mid(begin, length))) << size << ' ' << length << ' ' << begin;
        }
        const QByteArray repeated = numbers(size);
        EXPECT_FALSE(text.contains(repeated.mid(128 - 60, 60) + repeated.mid(size - 128, 60)))
            << "what was left out stood between";
        EXPECT_FALSE(text.contains("\xFF"
                                   "a"));
    }
}

TEST(IndexedText, AgreesWithTheWholeTextForAnyParts)
{
    testing::RandomChoices random(7);
    for (int round = 0; round < 300; ++round) {
        QList<SearchableField> fields;
        const std::array texts{numbers(random.below(700)), numbers(260), QByteArray("ab"), QByteArray()};
        for (int i = 0; i < 8; ++i)
            fields.append({i == 4 ? SearchField::sourceURL : SearchField::text, random.oneOf(texts)});
        const IndexedText text(fields);
        const QByteArray whole = joined(fields);
        for (int i = 0; i < 100; ++i) {
            QByteArray needle =
                whole.mid(random.below(static_cast<int>(whole.size())), 1 + random.below(150));
            if (random.chance(3))
                needle += '1';
            if (!text.canFind(needle))
                continue;
            ASSERT_EQ(text.contains(needle), whole.contains(needle)) << needle.toStdString();
            ASSERT_EQ(text.addressContains(needle), fields[4].bytes.contains(needle));
        }
    }
}

TEST(IndexedText, FindsInTheAddressAlone)
{
    for (const int size : {10, 1'000}) {
        const IndexedText text(repeating(numbers(size)));
        EXPECT_TRUE(text.addressContains(address));
        EXPECT_TRUE(text.addressContains("status"));
        EXPECT_FALSE(text.addressContains(" " + address.first(3)));
        EXPECT_FALSE(text.addressContains(address.last(3) + ' '));
        EXPECT_FALSE(text.addressContains("100000"));
        EXPECT_FALSE(text.addressContains("ada "));
    }
}

TEST(IndexedText, KeepsAnAddressWholeThatRepeatsTheText)
{
    const QByteArray text = numbers(400);
    const IndexedText indexed({{SearchField::text, text}, {SearchField::sourceURL, text}});
    EXPECT_TRUE(indexed.addressContains(text));
    EXPECT_TRUE(indexed.canFind(text));
}

} // namespace
} // namespace mirel
