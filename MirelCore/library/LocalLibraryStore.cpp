#include "library/LocalLibraryStore.h"

namespace mirel {

namespace {

// A library that cannot be read for searching may be one that the opening creates or mends. If not, whoever
// reads it next reports that.
void attempt(void (LibraryIndex::*step)(), LibraryIndex& index)
{
    try {
        (index.*step)();
    } catch (const Error&) {
        index.forget();
    }
}

} // namespace

LocalLibraryStore::LocalLibraryStore(const QString& databasePath, Clock now, const FileManager& fileManager,
                                     SearchPreparation preparation)
    : m_database(databasePath, fileManager)
    , m_now(std::move(now))
    , m_index(m_database)
{
    if (preparation == SearchPreparation::whileOpening)
        attempt(&LibraryIndex::beginLoadingAhead, m_index);
    migrate();
    attempt(&LibraryIndex::endLoadingAhead, m_index);
}

void LocalLibraryStore::purgeAllLocalData()
{
    // bookmark_search empties through its trigger.
    static constexpr const char* script = R"sql(
        BEGIN IMMEDIATE;
        DELETE FROM chat_sources;
        DELETE FROM chat_messages;
        DELETE FROM chats;
        DELETE FROM ai_usage;
        DELETE FROM auto_label_runs;
        DELETE FROM tag_suggestions;
        DELETE FROM bookmark_insights;
        DELETE FROM highlights;
        DELETE FROM bookmark_rules;
        DELETE FROM bookmark_tags;
        DELETE FROM bookmark_folders;
        DELETE FROM tags;
        DELETE FROM folders;
        DELETE FROM bookmarks;
        DELETE FROM authors;
        DELETE FROM sync_log_entries;
        DELETE FROM sync_runs;
        DELETE FROM app_state;
        COMMIT;
    )sql";
    m_index.forget();
    try {
        m_database.execute(script);
    } catch (...) {
        // A script that failed half-way leaves its transaction open.
        m_database.rollBack();
        throw;
    }
}

} // namespace mirel
