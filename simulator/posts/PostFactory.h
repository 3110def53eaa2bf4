#pragma once

#include "simulator/posts/MediaFactory.h"
#include "simulator/posts/People.h"
#include "simulator/posts/PostDraft.h"
#include "simulator/posts/PostKind.h"

namespace mirel::simulator {

// Makes any post of the simulated world from its key alone. Holds no posts, so that an account of any
// size costs nothing. The same seed, count and origin give the same bytes.
class PostFactory
{
public:
    // `posts` is the number of bookmarks at the start: it spreads their dates. `origin` is where pictures
    // are served, "http://127.0.0.1:8080".
    PostFactory(quint64 seed, int posts, const QString& origin);

    [[nodiscard]] qint64 id(PostKey key) const;
    // The post with that identifier, or absent when there is none.
    [[nodiscard]] std::optional<PostKey> find(qint64 id) const;
    // False for a post that exists, but that its author hides.
    [[nodiscard]] bool isVisible(PostKey key) const;

    [[nodiscard]] PostKind kind(PostKey key) const;
    [[nodiscard]] RenderedPost render(PostKey key) const;
    // All posts of the conversation, its first post included, in no particular order.
    [[nodiscard]] QList<PostKey> conversation(PostKey key) const;
    [[nodiscard]] const People& people() const { return m_people; }

private:
    [[nodiscard]] RandomSource randomFor(PostKey key, quint64 purpose) const;
    [[nodiscard]] qint64 createdAt(PostKey key) const;
    [[nodiscard]] bool exists(PostKey key) const;
    [[nodiscard]] PostKind referencedKind(int serial) const;
    [[nodiscard]] int languageOf(PostKey key) const;
    [[nodiscard]] int authorOf(PostKey key) const;
    [[nodiscard]] int threadLength(int serial) const;
    [[nodiscard]] int threadPosition(int serial) const;
    [[nodiscard]] PostKey threadPost(int serial, int position) const;
    [[nodiscard]] QString postURL(PostKey key) const;
    [[nodiscard]] PostLink shortened(const QString& url, PostDraft& draft) const;

    void write(PostDraft& draft, PostKind kind) const;
    void writePlain(PostDraft& draft) const;
    void writeForeign(PostDraft& draft) const;
    void writeLinkCard(PostDraft& draft) const;
    void writePhotos(PostDraft& draft) const;
    void writeVideo(PostDraft& draft) const;
    void writeAnimatedGIF(PostDraft& draft) const;
    void writeYouTube(PostDraft& draft) const;
    void writeQuote(PostDraft& draft, bool hidden) const;
    void writeRepost(PostDraft& draft) const;
    void writeLongNote(PostDraft& draft) const;
    void writeArticle(PostDraft& draft, bool rich) const;
    void writeThreadPost(PostDraft& draft) const;
    void writeReply(PostDraft& draft, PostKey answered) const;
    void attach(PostDraft& draft, const QList<MediaFactory::Media>& media, const QString& page) const;
    void refer(PostDraft& draft, const char* type, PostKey target) const;
    void addOddities(PostDraft& draft) const;
    [[nodiscard]] QByteArray metrics(PostDraft& draft) const;
    [[nodiscard]] RenderedPost finish(PostDraft& draft) const;

    quint64 m_seed;
    int m_posts;
    People m_people;
    MediaFactory m_media;
    // What the posts are, repeated for every fifty of them: so every page is equally rich and heavy.
    QList<PostKind> m_kinds;
};

} // namespace mirel::simulator
