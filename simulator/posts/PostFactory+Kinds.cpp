#include "simulator/posts/ArticleWriter.h"
#include "simulator/posts/PostFactory.h"
#include "simulator/posts/Prose.h"

namespace mirel::simulator {

namespace {

QString randomLetters(RandomSource& random, int count)
{
    static const QByteArray alphabet = "ABCDEFGHJKLMNPQRSTUVWXYZabcdefghijkmnopqrstuvwxyz0123456789";
    QString letters;
    for (int i = 0; i < count; ++i)
        letters += QLatin1Char(alphabet.at(random.below(static_cast<int>(alphabet.size()))));
    return letters;
}

QString pickFrom(const char* list, RandomSource& random)
{
    return random.pick(Content::shared().lists.value(QLatin1StringView(list)));
}

QString slug(const QString& title)
{
    QString result;
    for (const QChar character : title.toLower()) {
        if (character.isLetterOrNumber())
            result += character;
        else if (!result.isEmpty() && !result.endsWith(u'-'))
            result += u'-';
    }
    return result.left(60);
}

} // namespace

void PostFactory::write(PostDraft& draft, PostKind kindOfPost) const
{
    switch (kindOfPost) {
    case PostKind::Plain:
    case PostKind::Thread:
        return writePlain(draft);
    case PostKind::ForeignLanguage:
        return writeForeign(draft);
    case PostKind::LinkCard:
        return writeLinkCard(draft);
    case PostKind::Photos:
        return writePhotos(draft);
    case PostKind::Video:
        return writeVideo(draft);
    case PostKind::AnimatedGIF:
        return writeAnimatedGIF(draft);
    case PostKind::YouTube:
        return writeYouTube(draft);
    case PostKind::Quote:
    case PostKind::QuoteOfArticle:
        return writeQuote(draft, false);
    case PostKind::QuoteOfHidden:
        return writeQuote(draft, true);
    case PostKind::Repost:
        return writeRepost(draft);
    case PostKind::LongNote:
        return writeLongNote(draft);
    case PostKind::RichArticle:
        return writeArticle(draft, true);
    case PostKind::PlainArticle:
        return writeArticle(draft, false);
    case PostKind::Reply:
        return writeReply(draft, {draft.key.serial, PostKey::referenced});
    }
}

void PostFactory::writePlain(PostDraft& draft) const
{
    const Topic& topic = m_people.topic(draft.author);
    Prose prose(topic, draft.random);
    draft.text.append(prose.sentence());
    if (draft.random.oneIn(3))
        draft.text.append(draft.random.oneIn(2) ? u"\n\n" : u" ").append(prose.sentence());
    if (draft.random.oneIn(6))
        draft.text.append(u" ").append(pickFrom("emoji", draft.random));
    if (draft.random.oneIn(3))
        draft.text.append(u" ").appendHashtag(draft.random.pick(topic.hashtags));
}

void PostFactory::writeForeign(PostDraft& draft) const
{
    const Language& language = Content::shared().languages.at(languageOf(draft.key));
    draft.language = language.code;
    const QList<int> order = draft.random.shuffled(static_cast<int>(language.sentences.size()));
    const int count = draft.random.between(1, 2);
    for (int i = 0; i < count; ++i) {
        if (i > 0)
            draft.text.append(u" ");
        draft.text.append(language.sentences.at(order.at(i)));
    }
    if (draft.random.oneIn(4))
        draft.text.append(u" ").append(pickFrom("emoji", draft.random));
}

void PostFactory::writeLinkCard(PostDraft& draft) const
{
    const Topic& topic = m_people.topic(draft.author);
    Prose prose(topic, draft.random);
    const QString title = prose.title();
    const QString site = draft.random.pick(topic.sites);
    const QString address =
        QStringLiteral("https://%1/%2/%3").arg(site).arg(draft.random.between(2015, 2026)).arg(slug(title));
    PostLink link = shortened(address, draft);
    if (!draft.random.oneIn(4))
        link.details.append({"images", m_media.cardImages(draft.id + 7)});
    link.details.append({"status", QByteArray("200")});
    link.details.append({"title", jsonString(title)});
    if (!draft.random.oneIn(5))
        link.details.append({"description", jsonString(prose.paragraph(2))});
    link.details.append({"unwound_url", jsonString(address + QStringLiteral("?utm_source=x&ref=home"))});
    draft.text.append(prose.sentence()).append(u" ").appendLink(link);
}

void PostFactory::writePhotos(PostDraft& draft) const
{
    writePlain(draft);
    QList<MediaFactory::Media> photos;
    const int count = draft.random.between(1, 4);
    for (int i = 0; i < count; ++i)
        photos.append(m_media.photo(draft.id + 10 + i, draft.random));
    attach(draft, photos, QStringLiteral("photo"));
}

void PostFactory::writeVideo(PostDraft& draft) const
{
    writePlain(draft);
    attach(draft, {m_media.video(draft.id + 20, draft.random)}, QStringLiteral("video"));
}

void PostFactory::writeAnimatedGIF(PostDraft& draft) const
{
    draft.text.append(pickFrom("reactions", draft.random));
    attach(draft, {m_media.animatedGIF(draft.id + 30, draft.random)}, QStringLiteral("photo"));
}

void PostFactory::writeYouTube(PostDraft& draft) const
{
    static const QList<QString> forms{QStringLiteral("https://youtu.be/"),
                                      QStringLiteral("https://www.youtube.com/watch?v="),
                                      QStringLiteral("https://m.youtube.com/watch?v=")};
    const QString form = draft.random.pick(forms);
    PostLink link = shortened(form + randomLetters(draft.random, 11), draft);
    link.details.append({"title", jsonString(pickFrom("videoTitles", draft.random))});
    draft.text.append(pickFrom("reactions", draft.random)).append(u" ").appendLink(link);
}

void PostFactory::writeQuote(PostDraft& draft, bool hidden) const
{
    const PostKey quoted{draft.key.serial, PostKey::referenced};
    draft.text.append(pickFrom("reactions", draft.random)).append(u" ");
    draft.text.appendLink(shortened(postURL(quoted), draft));
    refer(draft, "quoted", quoted);
    draft.result.referenceIsHidden = hidden;
}

void PostFactory::writeRepost(PostDraft& draft) const
{
    const PostKey repeated{draft.key.serial, PostKey::referenced};
    PostDraft original{repeated, id(repeated), authorOf(repeated), randomFor(repeated, 2)};
    write(original, kind(repeated));
    draft.text.append(u"RT ").appendMention(m_people.username(original.author), m_people.id(original.author));
    QString text = original.text.text();
    text.replace(QStringLiteral("&lt;"), QStringLiteral("<"))
        .replace(QStringLiteral("&gt;"), QStringLiteral(">"));
    text.replace(QStringLiteral("&amp;"), QStringLiteral("&"));
    draft.text.append(u": ").append(text.size() > 110 ? text.left(text.lastIndexOf(u' ', 110)) + u'…' : text);
    refer(draft, "retweeted", repeated);
}

void PostFactory::writeLongNote(PostDraft& draft) const
{
    const Topic& topic = m_people.topic(draft.author);
    Prose prose(topic, draft.random);
    PostText note;
    for (int i = 0; i < 8; ++i) {
        const QString sentence = prose.sentence();
        note.append(sentence).append(i % 2 == 1 ? u"\n\n" : u" ");
        if (draft.text.length() + sentence.size() < 230)
            draft.text.append(sentence).append(u" ");
    }
    note.appendHashtag(draft.random.pick(topic.hashtags)).append(u" ");
    const int other = m_people.englishAuthor(draft.random);
    note.append(u"(with thanks to ").appendMention(m_people.username(other), m_people.id(other)).append(u")");
    draft.text.append(u"… ").appendLink(
        shortened(QStringLiteral("https://x.com/i/web/status/%1").arg(draft.id), draft));
    draft.extras.raw("note_tweet",
                     JSONObjectText().text("text", note.text()).raw("entities", note.entities()).json());
    draft.extras.raw("display_text_range", "[0,280]");
}

void PostFactory::writeArticle(PostDraft& draft, bool rich) const
{
    draft.language = QStringLiteral("zxx");
    draft.text.appendLink(shortened(QStringLiteral("https://x.com/i/article/%1").arg(draft.id), draft));
    const auto cover = m_media.photo(draft.id + 40, draft.random);
    const auto inside = m_media.photo(draft.id + 41, draft.random);
    draft.result.articleMedia = {cover, inside};
    const PostKey embedded{draft.key.serial, PostKey::replies};
    ArticleWriter writer(m_people.topic(draft.author), draft.random, {cover.first, inside.first},
                         id(embedded));
    if (rich) {
        const auto spelling = static_cast<ArticleWriter::Spelling>(draft.random.below(3));
        draft.extras.raw("article", writer.rich(spelling));
    } else {
        const bool bare = draft.key.role == PostKey::bookmarked && draft.random.oneIn(12);
        draft.extras.raw("article", bare ? writer.titleOnly() : writer.plain());
        if (bare)
            draft.result.articleMedia.clear();
    }
}

void PostFactory::writeThreadPost(PostDraft& draft) const
{
    const int serial = draft.key.serial;
    const int position =
        draft.key.role == PostKey::bookmarked ? threadPosition(serial) : draft.key.role - PostKey::thread;
    Prose prose(m_people.topic(draft.author), draft.random);
    draft.text.append(QStringLiteral("%1/%2 ").arg(position + 1).arg(threadLength(serial)));
    draft.text.append(position == 0 ? prose.title() + QStringLiteral(". A thread 🧵\n\n") + prose.sentence()
                                    : prose.paragraph(2));
    if (position == 0)
        return;
    draft.conversation = id(threadPost(serial, 0));
    draft.extras.text("in_reply_to_user_id", QString::number(m_people.id(draft.author)));
    refer(draft, "replied_to", threadPost(serial, position - 1));
}

void PostFactory::writeReply(PostDraft& draft, PostKey answered) const
{
    const int other = authorOf(answered);
    draft.text.appendMention(m_people.username(other), m_people.id(other)).append(u" ");
    draft.text.append(pickFrom("replies", draft.random));
    draft.conversation = id(answered);
    draft.extras.text("in_reply_to_user_id", QString::number(m_people.id(other)));
    refer(draft, "replied_to", answered);
}

QString PostFactory::postURL(PostKey key) const
{
    return QStringLiteral("https://x.com/%1/status/%2").arg(m_people.username(authorOf(key))).arg(id(key));
}

PostLink PostFactory::shortened(const QString& url, PostDraft& draft) const
{
    QString shown = url.section(QStringLiteral("//"), 1);
    if (shown.startsWith(QStringLiteral("www.")))
        shown.remove(0, 4);
    if (shown.size() > 27)
        shown = shown.left(26) + u'…';
    return {QStringLiteral("https://t.co/") + randomLetters(draft.random, 10), url, shown, {}};
}

void PostFactory::attach(PostDraft& draft, const QList<MediaFactory::Media>& media, const QString& page) const
{
    const QString shortCode = randomLetters(draft.random, 10);
    const QString address = postURL(draft.key);
    QList<PostLink> links;
    for (int i = 0; i < media.size(); ++i) {
        draft.attachments.append(media.at(i).first);
        draft.result.media.append(media.at(i));
        links.append({QStringLiteral("https://t.co/") + shortCode,
                      QStringLiteral("%1/%2/%3").arg(address, page).arg(page == u"photo" ? 1 : i + 1),
                      QStringLiteral("pic.x.com/") + shortCode,
                      {{"media_key", '"' + media.at(i).first + '"'}}});
    }
    draft.text.append(u" ").appendLinks(links);
}

void PostFactory::refer(PostDraft& draft, const char* type, PostKey target) const
{
    const QByteArray reference = JSONObjectText()
                                     .text("type", QString::fromLatin1(type))
                                     .text("id", QString::number(id(target)))
                                     .json();
    draft.extras.raw("referenced_tweets", jsonArray({reference}));
    draft.result.reference = target;
}

void PostFactory::addOddities(PostDraft& draft) const
{
    if (draft.random.oneIn(9)) {
        draft.extras.raw("edit_controls", "{\"edits_remaining\":5,\"is_edit_eligible\":false,"
                                          "\"editable_until\":\"2026-08-20T19:00:00.000Z\"}");
    }
    // Fields that nobody asked for, with numbers that a careless reader changes.
    if (draft.random.oneIn(8)) {
        draft.extras.raw("ranking_signals", "{\"confidence\":1.0,\"sequence\":9007199254740993,"
                                            "\"hash\":18446744073709551615,\"weights\":[0.10,1e3,-0.0]}");
    }
    if (draft.random.oneIn(15))
        draft.extras.text("source", u"Twitter for iPhone");
    if (draft.random.oneIn(30)) {
        const auto& places = Content::shared().places;
        const int place = draft.random.below(static_cast<int>(places.size()));
        draft.result.place = place;
        draft.extras.raw("geo",
                         JSONObjectText()
                             .text("place_id", places.at(place).value(QLatin1StringView("id")).toString())
                             .json());
    }
}

} // namespace mirel::simulator
