#include "mirelctl/BookmarkText.h"

#include "mirelctl/TextOutput.h"
#include "model/DisplayText.h"

#include <QLocale>

namespace mirel {

namespace {

constexpr int nameWidth = 12;
constexpr int narrowestText = 20;

QString metricsText(const PostMetrics& metrics)
{
    const QLocale locale;
    return QStringList{
        locale.toString(metrics.likes) + QStringLiteral(" likes"),
        locale.toString(metrics.reposts) + QStringLiteral(" reposts"),
        locale.toString(metrics.replies) + QStringLiteral(" replies"),
        locale.toString(metrics.quotes) + QStringLiteral(" quotes"),
        locale.toString(metrics.bookmarks) + QStringLiteral(" bookmarks"),
        locale.toString(metrics.views) + QStringLiteral(" views"),
    }
        .join(QStringLiteral(", "));
}

QString stateText(const Bookmark& bookmark)
{
    QStringList states{bookmark.isRead ? QStringLiteral("read") : QStringLiteral("unread")};
    if (bookmark.isFavorite)
        states.append(QStringLiteral("favorite"));
    if (bookmark.isArchived)
        states.append(QStringLiteral("archived"));
    return states.join(QStringLiteral(", "));
}

QString labelsText(const QList<Tag>& tags)
{
    QStringList names;
    for (const Tag& tag : tags)
        names.append(tag.name);
    return names.join(QStringLiteral(", "));
}

} // namespace

void BookmarkText::addHead(const Bookmark& bookmark)
{
    addLine(authorText(bookmark.author.name, bookmark.author.username));
    addLine(timeText(bookmark.createdAt));
}

void BookmarkText::addLine(const QString& line)
{
    m_lines.append(oneLine(line));
}

void BookmarkText::addParagraphs(const QString& text, const QString& mark, const QString& margin)
{
    const QString shown = printable(displayText(text)).trimmed();
    if (shown.isEmpty())
        return;
    m_lines.append(QString());
    const int width = m_columns ? std::max(narrowestText, *m_columns - displayWidth(margin)) : 0;
    const QStringList lines = m_columns ? wrappedToWidth(shown, width) : shown.split(u'\n');
    for (qsizetype i = 0; i < lines.size(); ++i)
        m_lines.append((i == 0 && !mark.isEmpty() ? mark : margin) + lines[i]);
}

void BookmarkText::addLiteral(const QString& text, const QString& margin)
{
    m_lines.append(QString());
    for (const QString& line : printable(displayText(text)).split(u'\n'))
        m_lines.append(margin + line);
}

void BookmarkText::addField(const QString& name, const QString& text)
{
    if (!text.isEmpty())
        m_fields.append(paddedToWidth(name, nameWidth) + oneLine(displayText(text)));
}

void BookmarkText::addOwnFields(const Bookmark& bookmark)
{
    addField(QStringLiteral("Counters"), metricsText(bookmark.metrics));
    addField(QStringLiteral("State"), stateText(bookmark));
    addField(QStringLiteral("Labels"), labelsText(bookmark.tags));
    addField(QStringLiteral("Folder"), bookmark.folder ? bookmark.folder->name : QString());
    addField(QStringLiteral("Note"), bookmark.note.value_or(QString()));
}

QByteArray BookmarkText::toUtf8() const
{
    QStringList lines = m_lines;
    if (!m_fields.isEmpty())
        lines += QStringList{QString()} + m_fields;
    return (lines.join(u'\n') + u'\n').toUtf8();
}

QString authorText(const QString& name, const QString& username)
{
    return oneLine(name) + QStringLiteral(" (@") + oneLine(username) + u')';
}

QString mediaText(const MediaItem& item)
{
    QString text = rawValue(item.kind) + u' ' + absoluteString(item.url);
    if (item.altText)
        text += QStringLiteral(" (") + *item.altText + u')';
    return text;
}

} // namespace mirel
