#pragma once

#include <QSet>
#include <QString>
#include <QStringList>

namespace mirel::testing {

// A library on disk, looked at with plain SQLite from outside of Mirel.
class LibraryFile
{
public:
    explicit LibraryFile(QString path)
        : m_path(std::move(path))
    {
    }

    // The rows of a query, each column as text; NULL is "NULL". Throws std::runtime_error.
    [[nodiscard]] QList<QStringList> rows(const char* query) const;
    // The first column of each row.
    [[nodiscard]] QStringList column(const char* query) const;

    // Of the posts that are there.
    [[nodiscard]] QSet<QString> postIDs() const;
    // Empty when the file and its references are whole.
    [[nodiscard]] QStringList damage() const;

private:
    QString m_path;
};

} // namespace mirel::testing
