#include "library/LibrarySearchFinding.h"

#include "library/LibrarySearchContext.h"
#include "library/SearchableText.h"

namespace mirel {

namespace {

using Test = LibrarySearchCondition::Test;

class FieldFinder
{
public:
    explicit FieldFinder(const LibrarySearchContext& context)
        : m_context(context)
        , m_bookmark(context.bookmark())
    {
    }

    // Where a condition that matches does so.
    [[nodiscard]] QStringList fieldsOf(const LibrarySearchCondition& condition)
    {
        addFieldsOf(condition);
        return m_fields;
    }

private:
    void addFieldsOf(const LibrarySearchCondition& condition);
    void addIf(bool isThere, const QString& field)
    {
        if (isThere && !m_fields.contains(field))
            m_fields.append(field);
    }
    void addMedia();
    void addLinks();
    void addTextFields(const QByteArray& needle);

    const LibrarySearchContext& m_context;
    const Bookmark& m_bookmark;
    QStringList m_fields;
};

void FieldFinder::addFieldsOf(const LibrarySearchCondition& condition)
{
    switch (condition.test()) {
    case Test::everything:
    case Test::nothing:
        return;
    case Test::text:
        return addTextFields(condition.needle());
    case Test::label:
    case Test::untagged:
        return addIf(true, rawValue(SearchField::labels));
    case Test::folder:
        return addIf(true, rawValue(SearchField::folder));
    case Test::author:
        addIf(m_context.isByAuthorNamedLike(condition.value()), rawValue(SearchField::authorName));
        return addIf(m_context.isByUsername(condition.value()), rawValue(SearchField::authorUsername));
    case Test::url:
        addIf(m_context.sourceURLContains(condition.needle()), rawValue(SearchField::sourceURL));
        return addTextFields(condition.needle());
    case Test::media:
        return addMedia();
    case Test::noMedia:
        return addIf(true, QStringLiteral("media"));
    case Test::notes:
        return addIf(true, rawValue(SearchField::note));
    case Test::links:
        addLinks();
        return addTextFields(condition.needle());
    case Test::contentType:
        return addIf(true, QStringLiteral("contentType"));
    case Test::inbox:
        m_fields = {QStringLiteral("isArchived"), QStringLiteral("isFavorite"),
                    rawValue(SearchField::folder)};
        return;
    case Test::archived:
    case Test::active:
        return addIf(true, QStringLiteral("isArchived"));
    case Test::favorite:
        return addIf(true, QStringLiteral("isFavorite"));
    case Test::read:
    case Test::unread:
        return addIf(true, QStringLiteral("isRead"));
    }
    Q_UNREACHABLE();
}

void FieldFinder::addMedia()
{
    const auto& quotedPost = m_bookmark.quotedPost;
    const auto& quoted = m_context.quotedContent();
    addIf(!m_bookmark.media.isEmpty(), QStringLiteral("media"));
    addIf(quotedPost && !quotedPost->media.isEmpty(), QStringLiteral("quotedPost.media"));
    addIf(quoted && quoted->hasMedia, QStringLiteral("quotedContent.media"));
}

void FieldFinder::addLinks()
{
    const auto& quoted = m_context.quotedContent();
    addIf(m_context.presentation().hasExternalLinks, QStringLiteral("externalLinks"));
    addIf(quoted && !quoted->externalLinks.isEmpty(), rawValue(SearchField::quotedExternalLinks));
}

void FieldFinder::addTextFields(const QByteArray& needle)
{
    const QByteArray text = searchableText(m_bookmark, m_context.quotedContent());
    qsizetype begin = 0;
    for (const SearchableField& field : searchableFields(m_bookmark, m_context.quotedContent())) {
        const qsizetype end = begin + field.bytes.size();
        // Whatever stands whole in here overlaps the field.
        const qsizetype reach = needle.size() - 1;
        const auto surroundings = QByteArrayView(text)
                                      .first(std::min(text.size(), end + reach))
                                      .sliced(std::max<qsizetype>(0, begin - reach));
        addIf(begin < end && surroundings.contains(needle), rawValue(field.field));
        begin = end + 1;
    }
}

} // namespace

QList<LibrarySearchFinding> explain(const LibrarySearchExpression& expression,
                                    const LibrarySearchContext& bookmark)
{
    QList<LibrarySearchFinding> findings;
    for (const LibrarySearchCondition& condition : expression.conditions()) {
        const bool matches = condition.matches(bookmark);
        const QStringList fields = matches ? FieldFinder(bookmark).fieldsOf(condition) : QStringList();
        findings.append({.condition = condition.text(), .matches = matches, .fields = fields});
    }
    return findings;
}

} // namespace mirel
