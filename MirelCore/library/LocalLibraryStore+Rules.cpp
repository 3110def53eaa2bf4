#include "library/LocalLibraryStore.h"

#include "library/OrganizationError.h"
#include "library/OrganizationNames.h"
#include "library/RowDecoding.h"
#include "library/SQLiteStoreError.h"

namespace mirel {

namespace {

// What one run of a rule sees.
constexpr qsizetype mostRuleMatches = 500;

} // namespace

BookmarkRule LocalLibraryStore::createRule(const QString& name, const QString& query,
                                           BookmarkRule::Action action, qint64 targetID, bool isEnabled)
{
    m_database.run(
        "INSERT INTO bookmark_rules (name, query, action, target_id, is_enabled) VALUES (?, ?, ?, ?, ?)",
        {cleanName(name), query, rawValue(action), targetID, isEnabled});
    return rule(m_database.lastInsertedRowID());
}

BookmarkRule LocalLibraryStore::rule(qint64 id)
{
    const auto row = m_database.firstRow("SELECT * FROM bookmark_rules WHERE id = ?", {id});
    if (!row) {
        throw SQLiteStoreError(SQLiteStoreError::Case::notFound,
                               QStringLiteral("The rule no longer exists."));
    }
    return decodeRule(*row);
}

QList<BookmarkRule> LocalLibraryStore::rules(const QString& search)
{
    const QString pattern = searchPattern(search);
    QList<BookmarkRule> rules;
    for (const SQLiteRow& row :
         m_database.rows("SELECT * FROM bookmark_rules "
                         "WHERE lower(name) LIKE ? OR lower(query) LIKE ? ORDER BY name COLLATE NOCASE",
                         {pattern, pattern}))
        rules.append(decodeRule(row));
    return rules;
}

void LocalLibraryStore::setRuleEnabled(qint64 id, bool enabled)
{
    m_database.run("UPDATE bookmark_rules SET is_enabled = ? WHERE id = ?", {enabled, id});
}

void LocalLibraryStore::deleteRule(qint64 id)
{
    m_database.run("DELETE FROM bookmark_rules WHERE id = ?", {id});
}

QList<Bookmark> LocalLibraryStore::previewRule(qint64 id)
{
    return matchingBookmarks(LibraryFilter::all, {.query = rule(id).query}, LibrarySort::newest)
        .mid(0, mostRuleMatches);
}

bool LocalLibraryStore::ruleTargetExists(const BookmarkRule& rule)
{
    switch (rule.action) {
    case BookmarkRule::Action::tag:
        return m_database.firstRow("SELECT id FROM tags WHERE id = ?", {rule.targetID}).has_value();
    case BookmarkRule::Action::folder:
        return m_database.firstRow("SELECT id FROM folders WHERE id = ?", {rule.targetID}).has_value();
    }
    Q_UNREACHABLE();
}

qint64 LocalLibraryStore::runRule(qint64 id)
{
    const BookmarkRule running = rule(id);
    if (!ruleTargetExists(running))
        throw OrganizationError(OrganizationError::Case::missingTarget);
    const QList<Bookmark> matches = previewRule(id);
    for (const Bookmark& bookmark : matches) {
        switch (running.action) {
        case BookmarkRule::Action::tag:
            addTag(running.targetID, bookmark.id);
            break;
        case BookmarkRule::Action::folder:
            assignFolder(running.targetID, bookmark.id);
            break;
        }
    }
    m_database.run("UPDATE bookmark_rules SET last_run_at = ?, last_match_count = ? WHERE id = ?",
                   {m_now(), matches.size(), id});
    return matches.size();
}

qint64 LocalLibraryStore::runEnabledRules()
{
    qint64 filed = 0;
    for (const BookmarkRule& each : rules({})) {
        if (each.isEnabled)
            filed += runRule(each.id);
    }
    return filed;
}

} // namespace mirel
