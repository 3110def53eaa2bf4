#include "library/SearchableText.h"

#include "support/Text.h"

#include <QStringEncoder>

namespace mirel {

namespace {

QString joined(const QList<QUrl>& urls)
{
    QStringList texts;
    for (const QUrl& url : urls)
        texts.append(absoluteString(url));
    return texts.join(u' ');
}

QString joinedNames(const QList<Tag>& labels)
{
    QStringList names;
    for (const Tag& label : labels)
        names.append(label.name);
    return names.join(u' ');
}

} // namespace

QString searchKey(const QString& text)
{
    return lowerCased(trimmed(text));
}

// Lower-casing looks at no neighbors, so runs of ASCII, which most texts are made of, take a short cut.
QByteArray searchBytes(const QString& text)
{
    const auto isASCII = [](QChar character) { return character.unicode() < 0x80; };
    QByteArray bytes;
    bytes.reserve(text.size() + text.size() / 4);
    for (const QChar* place = text.cbegin(); place != text.cend();) {
        for (; place != text.cend() && isASCII(*place); ++place) {
            const char letter = static_cast<char>(place->unicode());
            bytes += letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
        }
        const QChar* const end = std::find_if(place, text.cend(), isASCII);
        if (end == place)
            continue;
        // QString::toUtf8() would make a question mark of half a surrogate pair, which is a text to search
        // for.
        QStringEncoder encoder(QStringEncoder::Utf8, QStringConverter::Flag::Stateless);
        bytes += encoder.encode(lowerCased(QString(place, end - place)));
        place = end;
    }
    return bytes;
}

QList<SearchableField> searchableFields(const Bookmark& bookmark,
                                        const std::optional<PresentationFacts::Quoted>& quoted)
{
    QList<SearchableField> fields;
    const auto add = [&fields](SearchField field, const std::optional<QString>& text) {
        if (text)
            fields.append({field, searchBytes(*text)});
    };
    // The text of an article is often both, and long.
    const auto addContentText = [&] {
        if (bookmark.contentText == bookmark.text)
            fields.append({SearchField::contentText, fields.constFirst().bytes});
        else
            add(SearchField::contentText, bookmark.contentText);
    };
    const bool quotedHasTitle = quoted && quoted->title;
    add(SearchField::text, bookmark.text);
    add(SearchField::primaryTitle, quotedHasTitle ? quoted->title : bookmark.contentTitle);
    add(SearchField::contentTitle, bookmark.contentTitle);
    addContentText();
    add(SearchField::note, bookmark.note);
    add(SearchField::sourceURL, absoluteString(bookmark.sourceURL));
    add(SearchField::authorName, bookmark.author.name);
    add(SearchField::authorUsername, bookmark.author.username);
    if (bookmark.quotedPost)
        add(SearchField::quotedPostText, bookmark.quotedPost->text);
    if (quoted)
        add(SearchField::quotedExternalLinks, joined(quoted->externalLinks));
    add(SearchField::labels, joinedNames(bookmark.tags));
    if (bookmark.folder)
        add(SearchField::folder, bookmark.folder->name);
    return fields;
}

QByteArray joined(const QList<SearchableField>& fields)
{
    QByteArrayList texts;
    for (const SearchableField& field : fields)
        texts.append(field.bytes);
    return texts.join(' ');
}

QByteArray searchableText(const Bookmark& bookmark, const std::optional<PresentationFacts::Quoted>& quoted)
{
    return joined(searchableFields(bookmark, quoted));
}

} // namespace mirel
