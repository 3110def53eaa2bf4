#pragma once

#include <QByteArray>

#include <functional>

namespace mirel {

// A source of bytes that nobody can guess: as many as it is asked for. Injected wherever secrets are made.
using SecureRandom = std::function<QByteArray(qsizetype count)>;

// `count` bytes from the system's secure random source.
[[nodiscard]] QByteArray secureRandomBytes(qsizetype count);

} // namespace mirel
