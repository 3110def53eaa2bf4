#include "screens/InventedPosts.h"

#include "support/Text.h"

namespace mirel::testing {

namespace {

struct Invention
{
    const char16_t* name;
    const char* username;
    const char16_t* title;
    const char16_t* text;
    int photos;
    int videos;
    qint64 likes;
};

constexpr Invention inventions[] = {
    {u"Maren Oduya", "marenwrites", u"",
     u"A small thing I learned from fifteen years of editing: the sentence you are most proud of is usually "
     u"the one the reader skips. Cut it, read the paragraph aloud, and see whether anything is missing.",
     1, 0, 1284},
    {u"ياسمين الخطيب", "yasmin_kh", u"",
     u"القراءة البطيئة ليست ترفًا. حين نعود إلى الفقرة نفسها مرتين نكتشف أن الكاتب وضع فيها بابًا لم نره في "
     u"المرة الأولى، وأن الفكرة كانت تنتظر منا أن نبطئ قليلًا.",
     0, 0, 342},
    {u"Field Notes Weekly", "fieldnotes", u"What the tide tables of 1911 still get right",
     u"Before computers, harbour towns predicted the sea with brass machines of wheels and wires. We went "
     u"looking for the last one that runs, and for the people who keep it honest.",
     1, 0, 15904},
    {u"佐藤 真由美", "mayumi_sato", u"",
     u"朝の図書館で古い地図を広げていたら、隣の席の方が「その橋はもうありませんよ」と教えてくれた。"
     u"地図は嘘をつかないけれど、街は静かに書き換えられていく。",
     3, 0, 27},
    {u"Tomás Ferreira", "tomasbuilds", u"",
     u"Finally finished the workbench 🪵✨ Dovetails are not perfect, but they are mine. Slow-motion of "
     u"the "
     u"plane going through the oak below 👇🏽",
     0, 1, 88412},
    {u"Ines K.", "ines", u"", u"Ship the boring version first.", 0, 0, 5},
    {u"אורי לביא", "orilavie", u"",
     u"שלושה דברים שלמדתי מבניית גינה על הגג: אדמה כבדה מכפי שחושבים, עגבניות סולחות, והשכנים תמיד שואלים "
     u"מתי הבציר.",
     1, 0, 611},
    {u"Priya Raman", "priyaraman", u"",
     u"Thread on reading papers outside your field:\n\n1. Skip the abstract at first.\n2. Look at every "
     u"figure "
     u"and write down what you think it says.\n3. Only then read the captions.\n4. Now the abstract will "
     u"surprise you, which is the point.",
     0, 0, 9731},
    {u"Donaudampfschifffahrtsgesellschaftskapitänsverein e.V.", "kapitaensverein_an_der_donau", u"",
     u"Rindfleischetikettierungsüberwachungsaufgabenübertragungsgesetz and "
     u"https://example.org/a/very/long/address/without/any/place/to/break/it/because/addresses/are/like/that",
     0, 0, 3},
    {u"Night Train Atlas", "nighttrains", u"Vienna to the coast, asleep",
     u"Six countries, one bunk, and a conductor who knows everyone by the second evening.", 2, 0, 2210},
};

MediaItem makeMedia(const QUrl& pictures, int post, int item, MediaKind kind)
{
    const QString name = QStringLiteral("%1-%2.png").arg(post).arg(item);
    const QUrl picture = pictures.resolved(QUrl(QStringLiteral("media/") + name));
    const bool isPhoto = kind == MediaKind::photo;
    return {.id = QStringLiteral("3_") + name,
            .kind = kind,
            .url = isPhoto ? picture : pictures.resolved(QUrl(QStringLiteral("media/film.mp4"))),
            .previewURL = isPhoto ? std::nullopt : std::optional(picture),
            .altText = QStringLiteral("A picture that belongs to the post"),
            .width = 1200,
            .height = 900};
}

SyncedBookmark makeInvention(const Invention& invention, int number, const QUrl& pictures)
{
    SyncedBookmark post = makePost(number);
    const QString username = QString::fromLatin1(invention.username);
    post.author.xID = QStringLiteral("7") + username;
    post.author.name = QString::fromUtf16(invention.name);
    post.author.username = username;
    post.author.profileImageURL =
        pictures.isEmpty()
            ? std::nullopt
            : std::optional(pictures.resolved(QUrl(QStringLiteral("avatars/%1.png").arg(number))));
    const QString title = QString::fromUtf16(invention.title);
    post.contentTitle = nilIfBlank(QStringView(title));
    if (post.contentTitle)
        post.contentText = QString::fromUtf16(invention.text);
    post.text =
        post.contentTitle ? QStringLiteral("https://t.co/aBcDeF1234") : QString::fromUtf16(invention.text);
    post.metrics = {.views = invention.likes * 41,
                    .reposts = invention.likes / 9,
                    .bookmarks = 1,
                    .replies = invention.likes / 23,
                    .quotes = 0,
                    .likes = invention.likes};
    for (int item = 0; item < invention.photos; ++item)
        post.media.append(makeMedia(pictures, number, item, MediaKind::photo));
    for (int item = 0; item < invention.videos; ++item)
        post.media.append(makeMedia(pictures, number, invention.photos + item, MediaKind::video));
    return post;
}

} // namespace

QList<SyncedBookmark> inventedPosts(const QUrl& pictures)
{
    // Seconds since 1970 of the youngest post, and hours between two of them.
    constexpr double newest = 1'795'000'000;
    constexpr double gap = 7.3 * 3600;
    QList<SyncedBookmark> posts;
    for (int number = 0; number < static_cast<int>(std::size(inventions)); ++number) {
        SyncedBookmark post = makeInvention(inventions[number], number, pictures);
        post.createdAt = Instant::fromSecondsSince1970(newest - number * gap);
        posts.append(post);
    }
    return posts;
}

} // namespace mirel::testing
