#include "simulator/x/PageToken.h"

#include <QCryptographicHash>

namespace mirel::simulator {

QString PageToken::encoded(const QByteArray& list) const
{
    const QByteArray place = QByteArray::number(before, 16).rightJustified(8, '0') +
                             QByteArray::number(variant, 16).rightJustified(4, '0');
    const QByteArray check = QCryptographicHash::hash(list + place, QCryptographicHash::Sha256).toHex();
    return QStringLiteral("zl") + QString::fromLatin1(place + check.left(30));
}

std::optional<PageToken> PageToken::decoded(const QString& text, const QByteArray& list)
{
    if (text.size() != 44)
        return std::nullopt;
    const PageToken token{text.mid(2, 8).toInt(nullptr, 16), text.mid(10, 4).toInt(nullptr, 16)};
    if (token.encoded(list) != text)
        return std::nullopt;
    return token;
}

} // namespace mirel::simulator
