#include "simulator/x/Folders.h"

#include "simulator/posts/RandomSource.h"

namespace mirel::simulator {

const QList<Folders::Folder>& Folders::all()
{
    static const QList<Folder> folders{
        {QStringLiteral("1900000000000000011"), QStringLiteral("To read slowly")},
        {QStringLiteral("1900000000000000012"), QStringLiteral("Kitchen")},
        {QStringLiteral("1900000000000000013"), QStringLiteral("Code & craft")},
        {QStringLiteral("1900000000000000014"), QStringLiteral("旅 / Travel 🚲")},
        {QStringLiteral("1900000000000000015"), QStringLiteral("Quotes")},
        {QStringLiteral("1900000000000000016"), QStringLiteral("Empty for now")},
    };
    return folders;
}

std::optional<int> Folders::find(const QString& id)
{
    for (int i = 0; i < all().size(); ++i) {
        if (all().at(i).id == id)
            return i;
    }
    return std::nullopt;
}

QList<int> Folders::serials(int folder, const Account& account) const
{
    QList<int> result;
    // The last folder stays empty; a post may be in none.
    if (folder == all().size() - 1)
        return result;
    for (const int serial : account.serials()) {
        RandomSource random(m_seed, 0xf01d, static_cast<quint64>(serial));
        if (random.below(12) == folder)
            result.append(serial);
    }
    return result;
}

} // namespace mirel::simulator
