#include "mirelctl/InputLines.h"

#include <array>
#include <cerrno>
#include <unistd.h>

namespace mirel {

InputLines::InputLines(int descriptor, std::function<void(const std::optional<QString>&)> take)
    : m_descriptor(descriptor)
    , m_take(std::move(take))
    , m_notifier(descriptor, QSocketNotifier::Read)
{
    QObject::connect(&m_notifier, &QSocketNotifier::activated, &m_notifier, [this] { read(); });
}

void InputLines::read()
{
    std::array<char, 4096> piece = {};
    const ssize_t size = ::read(m_descriptor, piece.data(), piece.size());
    if (size == -1 && (errno == EINTR || errno == EAGAIN))
        return;
    if (size > 0) {
        m_bytes.append(piece.data(), size);
        takeLines();
    }
    if (size <= 0 || m_bytes.size() > longestLine)
        end();
}

void InputLines::takeLines()
{
    for (qsizetype lineEnd = m_bytes.indexOf('\n'); lineEnd >= 0; lineEnd = m_bytes.indexOf('\n')) {
        const QString line = QString::fromUtf8(m_bytes.first(lineEnd));
        m_bytes.remove(0, lineEnd + 1);
        m_take(line);
    }
}

// The last line may have no end.
void InputLines::end()
{
    m_notifier.setEnabled(false);
    if (!m_bytes.isEmpty() && m_bytes.size() <= longestLine)
        m_take(QString::fromUtf8(m_bytes));
    m_bytes.clear();
    m_take(std::nullopt);
}

} // namespace mirel
