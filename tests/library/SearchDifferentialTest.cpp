#include "testing/Printing.h"

#include "library/LibraryEdits.h"
#include "library/PlainEvaluation.h"
#include "library/RandomSearches.h"
#include "testing/FailingSQLite.h"

#include <QFile>
#include <QHashSeed>
#include <QRegularExpression>

#include <gtest/gtest.h>

// Listings, counts and searches from memory against what the tables say, while the library changes in every
// way that there is: through the store that is asked, through a second one, by another process, with and
// without success.

namespace mirel {
namespace {

using testing::LibraryEdit;

constexpr int expressionsPerSeed = 800;
constexpr int seeds = 26;

enum class Operation { page, some, all, ids, count, list, preview };

struct Question
{
    Operation operation = Operation::page;
    LibraryFilter mailbox = LibraryFilter::all;
    LibraryRefinements refinements;
    qint64 limit = 0;
    qint64 offset = 0;
    LibrarySort sort = LibrarySort::newest;
};

struct Answer
{
    // Absent where only a number is asked for.
    std::optional<QList<qint64>> ids;
    std::optional<QList<Bookmark>> items;
    std::optional<qint64> total;
    // What was thrown instead.
    QString failure;
};

template <typename Read>
Answer answerOf(Read read)
{
    try {
        return read();
    } catch (const Error& error) {
        return {.failure = error.description()};
    }
}

Answer answerWith(const QList<Bookmark>& items, std::optional<qint64> total = {})
{
    QList<qint64> ids;
    for (const Bookmark& bookmark : items)
        ids.append(bookmark.id);
    return {.ids = ids, .items = items, .total = total};
}

class SearchDifferential : public ::testing::TestWithParam<int>
{
protected:
    SearchDifferential()
    {
        static_cast<void>(testing::failingStatements());
        // The order of sets and with it what a failing statement hits; a seed shall stand for one run.
        QHashSeed::setDeterministicGlobalSeed();
        for (auto& store : m_stores)
            store = m_library.open();
    }

    ~SearchDifferential() override { testing::failingStatements().disarm(); }

    int below(int limit) { return m_random.below(limit); }

    LocalLibraryStore& someStore() { return *m_stores[static_cast<size_t>(below(2))]; }

    void reopen(std::unique_ptr<LocalLibraryStore>& store)
    {
        store = m_library.open(m_random.chance(2) ? SearchPreparation::whileOpening
                                                  : SearchPreparation::onDemand);
    }

    void fill()
    {
        while (m_plain.counts().all < 20)
            m_stores[0]->upsertFromX(m_bench.nextPost(), Instant());
        for (int i = 0; i < 8; ++i) {
            edit("createTag");
            edit("createFolder");
        }
    }

    // Runs an edit, one in twenty times with a statement that fails on the way.
    void edit()
    {
        const bool isForeign = m_random.chance(6);
        if (m_random.chance(60))
            reopen(m_stores[static_cast<size_t>(below(2))]);
        if (!isForeign && m_random.chance(20))
            testing::failingStatements().arm(below(10));
        run(choose(isForeign ? testing::foreignEdits() : testing::storeEdits()));
    }

    void edit(const char* name)
    {
        for (const LibraryEdit& candidate : testing::storeEdits()) {
            if (qstrcmp(candidate.name, name) == 0)
                run(candidate);
        }
    }

    void run(const LibraryEdit& chosen)
    {
        QString outcome = QStringLiteral("done");
        try {
            chosen.run(someStore(), m_bench);
            ++m_successes[chosen.name];
        } catch (const Error& error) {
            outcome = error.description();
            ++m_failures;
        }
        testing::failingStatements().disarm();
        m_history.append(QString::fromLatin1(chosen.name) + QStringLiteral(": ") + outcome);
    }

    // After edits, before questions.
    void look()
    {
        m_plain.renew();
        m_searches.lookFor(m_plain.readableBookmarks());
        m_hasUnreadable = m_plain.hasUnreadableBookmarks();
    }

    const LibraryEdit& choose(const std::vector<LibraryEdit>& edits)
    {
        int sum = 0;
        for (const LibraryEdit& candidate : edits)
            sum += candidate.weight;
        int left = below(sum);
        auto chosen = edits.cbegin();
        while (left >= chosen->weight)
            left -= (chosen++)->weight;
        return *chosen;
    }

    Question nextQuestion()
    {
        Question question{
            .operation = static_cast<Operation>(below(7)),
            .mailbox =
                m_random.chance(2) ? LibraryFilter::all : m_random.oneOf(rawValues(LibraryFilter())).value,
            .refinements = m_searches.refinements(),
            .limit = below(30) - 2,
            .offset = below(20) - 4,
            .sort = m_random.oneOf(rawValues(LibrarySort())).value,
        };
        if (question.operation == Operation::list)
            question.refinements = {};
        if (question.operation == Operation::count)
            question.sort = LibrarySort::newest;
        if (question.operation == Operation::preview) {
            question = {.operation = Operation::preview,
                        .refinements = {.query = m_searches.expression()},
                        .limit = 500};
        }
        // Which of several unreadable bookmarks comes first must not be left open.
        if (question.sort == LibrarySort::author && m_hasUnreadable)
            question.sort = LibrarySort::oldest;
        return question;
    }

    Answer expected(const Question& question)
    {
        const QList<qint64> all =
            question.operation == Operation::list
                ? m_plain.ids(question.mailbox, question.sort)
                : m_plain.matchingIDs(question.mailbox, question.refinements, question.sort);
        const QList<qint64> page =
            all.mid(std::max<qint64>(question.offset, 0), std::clamp<qint64>(question.limit, 1, 500));
        switch (question.operation) {
        case Operation::page:
            return answerWith(m_plain.bookmarks(page), all.size());
        case Operation::some:
        case Operation::list:
        case Operation::preview:
            return answerWith(m_plain.bookmarks(page));
        case Operation::all:
            return answerWith(m_plain.bookmarks(all));
        case Operation::ids:
            return {.ids = all};
        case Operation::count:
            return {.total = all.size()};
        }
        Q_UNREACHABLE();
    }

    Answer actual(LocalLibraryStore& store, const Question& question)
    {
        const auto& [operation, mailbox, refinements, limit, offset, sort] = question;
        switch (operation) {
        case Operation::page: {
            const auto page = store.searchBookmarksPage(mailbox, refinements, limit, offset, sort);
            return answerWith(page.items, page.totalCount);
        }
        case Operation::some:
            return answerWith(store.searchBookmarks(mailbox, refinements, limit, offset, sort));
        case Operation::all:
            return answerWith(store.searchAllBookmarks(mailbox, refinements, sort));
        case Operation::ids:
            return {.ids = store.matchingBookmarkIDs(mailbox, refinements, sort)};
        case Operation::count:
            return {.total = store.countBookmarks(mailbox, refinements)};
        case Operation::list:
            return answerWith(store.listBookmarks(mailbox, limit, offset, sort));
        case Operation::preview:
            return answerWith(store.previewRule(m_ruleID));
        }
        Q_UNREACHABLE();
    }

    // What is previewed is the query as it is stored.
    void storeRule(Question& question)
    {
        m_bench.connection().run("INSERT OR REPLACE INTO bookmark_rules (name, query, action, target_id, "
                                 "is_enabled) VALUES ('preview', ?, 'tag', 1, 0)",
                                 {question.refinements.query});
        m_ruleID = m_bench.connection().lastInsertedRowID();
        question.refinements.query =
            m_bench.connection()
                .firstRow("SELECT query FROM bookmark_rules WHERE id = ?", {m_ruleID})
                ->text("query")
                .value();
    }

    void ask()
    {
        Question question = nextQuestion();
        if (question.operation != Operation::list)
            ++m_expressions;
        if (question.operation == Operation::preview)
            storeRule(question);
        const bool mayFail = m_random.chance(40);
        if (mayFail)
            testing::failingStatements().arm(below(12));
        LocalLibraryStore& store = someStore();
        if (m_random.chance(10))
            prepareSearch(store);
        const Answer given = answerOf([&] { return actual(store, question); });
        testing::failingStatements().disarm();
        if (mayFail && testing::failingStatements().fired() && !given.failure.isEmpty())
            return;
        compare(given, answerOf([&] { return expected(question); }), question);
    }

    static void prepareSearch(LocalLibraryStore& store)
    {
        try {
            store.prepareSearch();
        } catch (const Error&) {
            // A failing statement; the search then starts from what was prepared.
        }
    }

    void askForCounts()
    {
        EXPECT_EQ(describe(someStore().libraryCounts()), describe(m_plain.counts())) << context({});
    }

    void compare(const Answer& given, const Answer& wanted, const Question& question)
    {
        ASSERT_EQ(given.failure, wanted.failure) << context(question);
        ASSERT_EQ(given.total, wanted.total) << context(question);
        ASSERT_EQ(given.ids.has_value(), wanted.ids.has_value()) << context(question);
        if (!wanted.ids)
            return;
        ASSERT_EQ(places(*given.ids, question.sort), places(*wanted.ids, question.sort)) << context(question);
        ASSERT_EQ(QSet<qint64>(given.ids->cbegin(), given.ids->cend()).size(), given.ids->size())
            << context(question);
        if (given.items) {
            ASSERT_TRUE(*given.items == m_plain.bookmarks(*given.ids)) << context(question);
        }
        m_found += static_cast<int>(wanted.ids->size());
    }

    QList<qint64> places(const QList<qint64>& ids, LibrarySort sort)
    {
        QList<qint64> places;
        for (const qint64 id : ids)
            places.append(m_plain.placeOf(id, sort));
        return places;
    }

    static QByteArray describe(const LibraryCounts& counts) { return encodeJSON(counts); }

    // What led here.
    std::string context(const Question& question) const
    {
        const LibraryRefinements& wanted = question.refinements;
        return QStringLiteral("operation %1, %2, %3, limit %4, offset %5, query [%6]; the last edits:\n%7")
            .arg(static_cast<int>(question.operation))
            .arg(rawValue(question.mailbox), rawValue(question.sort))
            .arg(question.limit)
            .arg(question.offset)
            .arg(wanted.query, m_history.last(std::min<qsizetype>(8, m_history.size())).join(u'\n'))
            .toStdString();
    }

    testing::RandomChoices m_random{static_cast<unsigned int>(GetParam())};
    testing::TemporaryLibrary m_library;
    std::array<std::unique_ptr<LocalLibraryStore>, 2> m_stores;
    testing::EditBench m_bench{m_library.path(), static_cast<unsigned int>(GetParam()) + 1'000};
    testing::PlainEvaluation m_plain{m_library.path()};
    testing::RandomSearches m_searches{static_cast<unsigned int>(GetParam()) + 2'000};
    bool m_hasUnreadable = false;
    qint64 m_ruleID = 0;
    int m_expressions = 0;
    int m_found = 0;
    int m_failures = 0;
    QMap<QByteArray, int> m_successes;
    QStringList m_history;
};

TEST_P(SearchDifferential, EveryAnswerIsThatOfThePlainEvaluation)
{
    fill();
    try {
        while (m_expressions < expressionsPerSeed && !HasFailure()) {
            for (int i = below(3); i >= 0; --i)
                edit();
            look();
            for (int i = below(4); i >= 0 && !HasFailure(); --i)
                ask();
            if (m_random.chance(3))
                askForCounts();
        }
    } catch (const Error& error) {
        FAIL() << error.description().toStdString() << "\n" << context({});
    }
    if (HasFailure())
        return;
    // The comparison is worth something only when much was found, and much was done or refused.
    EXPECT_GT(m_found, expressionsPerSeed);
    EXPECT_GT(m_successes.size(), 30);
    EXPECT_GT(m_failures, 30);
}

INSTANTIATE_TEST_SUITE_P(Seeds, SearchDifferential, ::testing::Range(1, seeds + 1),
                         [](const auto& row) { return "Seed" + std::to_string(row.param); });

// The operations that LocalLibraryStore.h declares: the names before a parenthesis in the lines that begin a
// declaration.
QStringList declaredOperations()
{
    QFile header(QStringLiteral(MIREL_STORE_HEADER));
    if (!header.open(QFile::ReadOnly))
        return {};
    const QString text = QString::fromUtf8(header.readAll()).section(QStringLiteral("\nprivate:"), 0, 0);
    static const QRegularExpression declaration(QStringLiteral("^    (?!//)(?:\\S.*?[ >&])?(\\w+)\\("),
                                                QRegularExpression::MultilineOption);
    QStringList names;
    for (const auto& match : declaration.globalMatch(text))
        names.append(match.captured(1));
    names.removeDuplicates();
    return names;
}

// A new operation belongs into storeEdits() when it writes, and into readingOperations() otherwise.
TEST(SearchDifferential, EveryOperationOfTheStoreThatWritesIsAmongTheEdits)
{
    QStringList known = testing::readingOperations();
    for (const LibraryEdit& edit : testing::storeEdits())
        known.append(QString::fromLatin1(edit.name));
    QStringList declared = declaredOperations();
    known.sort();
    declared.sort();
    EXPECT_EQ(declared, known);
}

} // namespace
} // namespace mirel
