#pragma once

#include "records/Bookmark.h"

#include <QStringList>

#include <optional>

namespace mirel {

// The text of one bookmark for people, line by line: its body, and below it fields with names. X's HTML
// escapes are resolved, and nothing steers the terminal.
class BookmarkText
{
public:
    // Wraps to `columns`, when there are any, though never to less than 20.
    explicit BookmarkText(std::optional<int> columns)
        : m_columns(columns)
    {
    }

    // Who wrote the post, and when.
    void addHead(const Bookmark& bookmark);
    void addLine(const QString& line);
    // An empty line and the text behind it; nothing when there is no text. Every line of it begins with
    // `margin`, or the first with `mark`, which must be as wide.
    void addParagraphs(const QString& text, const QString& mark = {}, const QString& margin = {});
    // An empty line and the text behind it, as it stands, each line behind `margin`.
    void addLiteral(const QString& text, const QString& margin);
    // "name  text"; nothing when there is no text.
    void addField(const QString& name, const QString& text);
    // The counters and all that the user's own.
    void addOwnFields(const Bookmark& bookmark);

    [[nodiscard]] QByteArray toUtf8() const;

private:
    std::optional<int> m_columns;
    QStringList m_lines;
    QStringList m_fields;
};

// "Ada Lovelace (@ada)".
[[nodiscard]] QString authorText(const QString& name, const QString& username);

// "photo https://... (A cat)".
[[nodiscard]] QString mediaText(const MediaItem& item);

} // namespace mirel
