#include "simulator/x/Folders.h"

#include "simulator/posts/RandomSource.h"

namespace mirel::simulator {

namespace {

constexpr qint64 idBeforeFirst = 1'900'000'000'000'000'010;

QString nameOf(int folder)
{
    static const QStringList names{
        QStringLiteral("To read slowly"), QStringLiteral("Kitchen"), QStringLiteral("Code & craft"),
        QStringLiteral("旅 / Travel 🚲"),  QStringLiteral("Quotes"),  QStringLiteral("Empty for now"),
    };
    return folder < names.size() ? names[folder] : QStringLiteral("Shelf %1").arg(folder + 1);
}

} // namespace

Folders::Folders(quint64 seed, int count)
    : m_seed(seed)
{
    for (int folder = 0; folder < count; ++folder)
        m_all.append({QString::number(idBeforeFirst + folder + 1), nameOf(folder)});
}

std::optional<int> Folders::find(const QString& id) const
{
    for (int i = 0; i < m_all.size(); ++i) {
        if (m_all.at(i).id == id)
            return i;
    }
    return std::nullopt;
}

QList<int> Folders::serials(int folder, const Account& account) const
{
    QList<int> result;
    // The last folder stays empty; a post may be in none.
    if (folder == m_all.size() - 1)
        return result;
    const int places = 2 * static_cast<int>(m_all.size());
    for (const int serial : account.serials()) {
        RandomSource random(m_seed, 0xf01d, static_cast<quint64>(serial));
        if (random.below(places) == folder)
            result.append(serial);
    }
    return result;
}

} // namespace mirel::simulator
