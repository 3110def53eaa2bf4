#include "BareLoop.h"

#include "library/SQLiteConnection.h"

#include <QHash>

#include <sqlite3.h>

#include <stdexcept>

namespace mirel {

namespace {

constexpr int boundValues = 19;

void require(sqlite3* connection, bool isFine)
{
    if (!isFine)
        throw std::runtime_error(sqlite3_errmsg(connection));
}

// A statement that is used again and again.
class Prepared
{
public:
    Prepared(sqlite3* connection, const char* sql)
        : m_connection(connection)
    {
        require(connection, sqlite3_prepare_v2(connection, sql, -1, &m_statement, nullptr) == SQLITE_OK);
    }
    ~Prepared() { sqlite3_finalize(m_statement); }
    Q_DISABLE_COPY_MOVE(Prepared)

    [[nodiscard]] int parameterCount() const { return sqlite3_bind_parameter_count(m_statement); }

    void bind(int position, const std::optional<QByteArray>& text)
    {
        const int result = text ? sqlite3_bind_text(m_statement, position, text->constData(),
                                                    static_cast<int>(text->size()), SQLITE_STATIC)
                                : sqlite3_bind_null(m_statement, position);
        require(m_connection, result == SQLITE_OK);
    }
    void bind(int position, qint64 number)
    {
        require(m_connection, sqlite3_bind_int64(m_statement, position, number) == SQLITE_OK);
    }
    void bind(int position, Instant instant)
    {
        const int result = sqlite3_bind_double(m_statement, position, instant.secondsSince1970());
        require(m_connection, result == SQLITE_OK);
    }

    void run()
    {
        require(m_connection, sqlite3_step(m_statement) == SQLITE_DONE);
        sqlite3_reset(m_statement);
    }

private:
    sqlite3* m_connection;
    sqlite3_stmt* m_statement = nullptr;
};

std::optional<QByteArray> utf8(const std::optional<QString>& text)
{
    return text ? std::optional(text->toUtf8()) : std::nullopt;
}

qint64 insertAuthor(SQLiteConnection& library, const SyncedAuthor& author)
{
    std::optional<QString> picture;
    if (author.profileImageURL)
        picture = absoluteString(*author.profileImageURL);
    library.run("INSERT INTO authors (x_id, name, username, profile_image_url) VALUES (?, ?, ?, ?)",
                {author.xID, author.name, author.username, picture});
    return library.lastInsertedRowID();
}

} // namespace

BareLoop::BareLoop(const QString& path, QByteArray insertSQL, const QList<SyncedBookmark>& posts)
    : m_path(path)
    , m_insertSQL(std::move(insertSQL))
{
    SQLiteConnection library(path);
    QHash<QString, qint64> authors;
    for (const SyncedBookmark& post : posts) {
        if (!authors.contains(post.author.xID))
            authors.insert(post.author.xID, insertAuthor(library, post.author));
        m_posts.push_back(prepared(post, authors.value(post.author.xID)));
    }
}

BareLoop::Post BareLoop::prepared(const SyncedBookmark& post, qint64 author)
{
    return {
        .texts = {post.tweetID.toUtf8(), utf8(post.conversationID), post.text.toUtf8(),
                  utf8(post.contentTitle), utf8(post.contentText), utf8(post.language),
                  absoluteString(post.sourceURL).toUtf8(), encodeJSON(post.media),
                  encodeJSON(post.quotedPost), post.rawJSON},
        .author = author,
        .createdAt = post.createdAt,
        .metrics = post.metrics,
    };
}

Duration BareLoop::run()
{
    SQLiteConnection library(m_path);
    library.execute("PRAGMA foreign_keys = ON");
    sqlite3* const connection = library.handle();
    Prepared begin(connection, "BEGIN IMMEDIATE");
    Prepared insert(connection, m_insertSQL.constData());
    Prepared commit(connection, "COMMIT");
    if (insert.parameterCount() != boundValues)
        throw std::runtime_error("The library's INSERT has other columns now; adapt BareLoop to it.");
    const Instant syncedAt = Instant::now();
    const auto start = std::chrono::steady_clock::now();
    for (const Post& post : m_posts) {
        begin.run();
        insert.bind(1, post.texts[0]);
        insert.bind(2, post.texts[1]);
        insert.bind(3, post.author);
        for (int i = 2; i < 7; ++i)
            insert.bind(i + 2, post.texts[static_cast<size_t>(i)]);
        insert.bind(9, post.createdAt);
        insert.bind(10, syncedAt);
        insert.bind(11, post.metrics.views);
        insert.bind(12, post.metrics.reposts);
        insert.bind(13, post.metrics.bookmarks);
        insert.bind(14, post.metrics.replies);
        insert.bind(15, post.metrics.quotes);
        insert.bind(16, post.metrics.likes);
        for (int i = 7; i < 10; ++i)
            insert.bind(i + 10, post.texts[static_cast<size_t>(i)]);
        insert.run();
        commit.run();
    }
    return std::chrono::steady_clock::now() - start;
}

} // namespace mirel
