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

    Folders(quint64 seed, int count);

    [[nodiscard]] const QList<Folder>& all() const { return m_all; }
    // Position of the folder with that identifier, or absent.
    [[nodiscard]] std::optional<int> find(const QString& id) const;

    // The bookmarks of a folder, newest first.
    [[nodiscard]] QList<int> serials(int folder, const Account& account) const;

private:
    quint64 m_seed;
    QList<Folder> m_all;
};

} // namespace mirel::simulator
