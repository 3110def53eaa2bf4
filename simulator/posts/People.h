#pragma once

#include "simulator/posts/Content.h"
#include "simulator/posts/RandomSource.h"

#include <QUrl>

namespace mirel::simulator {

// The authors of the simulated world. An author is a number; everything else follows from it and the seed.
class People
{
public:
    // `origin` is where pictures are served.
    People(quint64 seed, QString origin);

    // Somebody who writes in English, a few of them far more often than the rest.
    [[nodiscard]] int englishAuthor(RandomSource& random) const;
    // Somebody who writes in that language of the table.
    [[nodiscard]] int nativeAuthor(int language, RandomSource& random) const;

    [[nodiscard]] qint64 id(int author) const;
    [[nodiscard]] QString username(int author) const;
    [[nodiscard]] const Topic& topic(int author) const;
    // The object that stands in the includes of a page.
    [[nodiscard]] QByteArray user(int author) const;

private:
    [[nodiscard]] QString name(int author) const;
    [[nodiscard]] RandomSource randomFor(int author, quint64 purpose) const;

    quint64 m_seed;
    QString m_origin;
    // Position in the table of languages and name, for those who do not write in English.
    QList<std::pair<int, QString>> m_natives;
};

} // namespace mirel::simulator
