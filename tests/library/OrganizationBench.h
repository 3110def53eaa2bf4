#pragma once

#include "testing/Printing.h"

#include "testing/TemporaryLibrary.h"

#include "library/OrganizationError.h"
#include "library/SQLiteStoreError.h"

#include <gtest/gtest.h>

namespace mirel::testing {

// One character, of one code point or several.
struct CharacterCase
{
    const char* name;
    const char16_t* character;
    // What the library keeps of it, when that is something else.
    const char16_t* kept = nullptr;

    [[nodiscard]] QString given(qsizetype times) const
    {
        return QString::fromUtf16(character).repeated(times);
    }
    [[nodiscard]] QString stored(qsizetype times) const
    {
        return QString::fromUtf16(kept ? kept : character).repeated(times);
    }
};

inline void PrintTo(const CharacterCase& row, std::ostream* stream)
{
    *stream << row.name;
}

inline constexpr CharacterCase characterCases[] = {
    {"ASCII", u"a"},
    {"CombiningMark", u"e\u0301"},
    {"BeyondTheBasicPlane", u"😀"},
    {"Family", u"👨‍👩‍👧‍👦"},
    {"SkinTone", u"👍🏽"},
    {"Flag", u"🇩🇪"},
    {"Chinese", u"漢"},
    {"Hangul", u"\u1112\u1161\u11ab"},
    {"Arabic", u"ب"},
    {"HebrewWithPoint", u"\u05e9\u05c1"},
    {"DotlessI", u"\u0131"},
    {"DottedI", u"\u0130"},
    {"SharpS", u"\u00df"},
    {"HighSurrogateAlone", u"\xd83d", u"?"},
    {"LowSurrogateAlone", u"\xde00", u"?"},
};

// Long enough to take minutes where a cost grows with the square of it. Its slug is longer than it.
inline QString longText()
{
    return QStringLiteral("\u00df").repeated(1'000'000);
}

// A library with what tests of labels, folders, rules, highlights and authors begin with.
class OrganizationBench : public ::testing::Test
{
protected:
    qint64 add(int number) { return store->upsertFromX(makePost(number), library.clock.now()).id; }

    Tag tag(const char* name)
    {
        return store->createTag(QString::fromUtf8(name), QStringLiteral("#111111"), Tag::Source::manual);
    }

    Folder folder(const char* name, std::optional<qint64> parentID = {})
    {
        return store->createFolder(QString::fromUtf8(name), {}, parentID, Folder::Source::local, {});
    }

    QStringList tagNames(qint64 bookmarkID)
    {
        QStringList names;
        for (const Tag& each : store->bookmark(bookmarkID).tags)
            names.append(each.name);
        return names;
    }

    qint64 count(const char* table)
    {
        return connection->firstRow(QByteArray("SELECT COUNT(*) AS n FROM ") + table)->integer("n").value();
    }

    template <typename Operation>
    void expectError(SQLiteStoreError::Case errorCase, const char* description, Operation operation)
    {
        try {
            operation();
            ADD_FAILURE() << "nothing was thrown";
        } catch (const SQLiteStoreError& error) {
            EXPECT_EQ(error.errorCase(), errorCase);
            EXPECT_EQ(error.description(), QString::fromLatin1(description));
        }
    }

    template <typename Operation>
    void expectError(OrganizationError::Case errorCase, const char* description, Operation operation)
    {
        try {
            operation();
            ADD_FAILURE() << "nothing was thrown";
        } catch (const OrganizationError& error) {
            EXPECT_EQ(error.errorCase(), errorCase);
            EXPECT_EQ(error.description(), QString::fromLatin1(description));
        }
    }

    TemporaryLibrary library;
    std::unique_ptr<LocalLibraryStore> store = library.open();
    std::unique_ptr<SQLiteConnection> connection = library.connect();
};

// What is said of a row that refers to one that is not there.
inline constexpr const char* missingReference = "Local library command failed: FOREIGN KEY constraint failed";

} // namespace mirel::testing
