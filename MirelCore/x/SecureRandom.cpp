#include "x/SecureRandom.h"

#include <QRandomGenerator>

namespace mirel {

QByteArray secureRandomBytes(qsizetype count)
{
    constexpr qsizetype wordSize = sizeof(quint32);
    std::vector<quint32> words(static_cast<size_t>((count + wordSize - 1) / wordSize));
    QRandomGenerator::system()->generate(words.begin(), words.end());
    return {reinterpret_cast<const char*>(words.data()), count};
}

} // namespace mirel
