#pragma once

#include "simulator/x/Account.h"

#include <QString>

namespace mirel::simulator {

// The bookmark folders of the account. Which posts a folder holds follows from the seed.
class Folders
{
public:
    struct Folder
    {
        QString id;
        QString name;
    };

    explicit Folders(quint64 seed)
        : m_seed(seed)
    {
    }

    [[nodiscard]] static const QList<Folder>& all();
    // Position of the folder with that identifier, or absent.
    [[nodiscard]] static std::optional<int> find(const QString& id);

    // The bookmarks of a folder, newest first.
    [[nodiscard]] QList<int> serials(int folder, const Account& account) const;

private:
    quint64 m_seed;
};

} // namespace mirel::simulator
