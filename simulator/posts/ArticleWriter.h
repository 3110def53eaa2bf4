#pragma once

#include "simulator/posts/Prose.h"

#include <QByteArray>

namespace mirel::simulator {

// Writes the `article` object of a post: a long text, with or without the rich editor document.
class ArticleWriter
{
public:
    // How the rich document is spelled. All of them were seen in the wild.
    enum class Spelling { CamelCaseArray, CamelCaseObject, SnakeCase };

    // Draws from `random`, which must outlive it. The first media key is the cover, the second stands in
    // the text, `embeddedPost` too.
    ArticleWriter(const Topic& topic, RandomSource& random, QList<QByteArray> mediaKeys, qint64 embeddedPost);

    [[nodiscard]] QByteArray rich(Spelling spelling);
    [[nodiscard]] QByteArray plain();
    [[nodiscard]] QByteArray titleOnly();

private:
    struct Style
    {
        qsizetype offset;
        qsizetype length;
        QString name;
    };

    struct Block
    {
        QString type;
        QString text;
        QList<Style> styles;
        // Position in the entity table, with the range that it covers.
        std::optional<int> entity;
        qsizetype entityOffset = 0;
        qsizetype entityLength = 1;
    };

    void writeBlocks(int sections);
    void writeSection();
    void appendParagraph(int sentences);
    void appendList(const QString& type, int items);
    void appendLinkParagraph();
    void appendAtomic(const QByteArray& type, const QByteArray& data);
    [[nodiscard]] QString plainText() const;
    [[nodiscard]] QByteArray document(Spelling spelling) const;
    [[nodiscard]] QByteArray blockJSON(const Block& block, bool snakeCase) const;
    [[nodiscard]] QByteArray entityTable(Spelling spelling) const;
    [[nodiscard]] QByteArray sideEntities() const;
    [[nodiscard]] QByteArray articleWith(const QByteArray& document);

    RandomSource& m_random;
    Prose m_prose;
    QList<QByteArray> m_mediaKeys;
    qint64 m_embeddedPost;
    QString m_site;
    QList<Block> m_blocks;
    // Type and data of each entity.
    QList<std::pair<QByteArray, QByteArray>> m_entities;
};

} // namespace mirel::simulator
