#pragma once

#include <QSocketNotifier>
#include <QString>

#include <functional>

namespace mirel {

// Reads lines from a file descriptor while the event loop of this thread runs.
class InputLines
{
public:
    // What is longer than a line may be ends the input.
    static constexpr qsizetype longestLine = 16'384;

    // Calls `take` with each line, without its end, and once with nothing when the input has ended.
    InputLines(int descriptor, std::function<void(const std::optional<QString>& line)> take);
    Q_DISABLE_COPY_MOVE(InputLines)

private:
    void read();
    void takeLines();
    void end();

    int m_descriptor;
    std::function<void(const std::optional<QString>&)> m_take;
    QSocketNotifier m_notifier;
    QByteArray m_bytes;
};

} // namespace mirel
