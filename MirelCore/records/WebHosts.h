#pragma once

#include <QString>

// The hosts of the services that Mirel knows, as published. Constants of the build.
namespace mirel::webHosts {

inline const QString x = QStringLiteral("x.com");
// Where X was found before; old posts still link there.
inline const QString formerX = QStringLiteral("twitter.com");
inline const QString xLinkShortener = QStringLiteral("t.co");
inline const QString youtubeShort = QStringLiteral("youtu.be");
inline const QString youtubeMain = QStringLiteral("youtube.com");
inline const QString youtubeImage = QStringLiteral("i.ytimg.com");
inline const QString youtubeEmbed = QStringLiteral("www.youtube-nocookie.com");

} // namespace mirel::webHosts
