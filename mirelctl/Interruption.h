#pragma once

#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace mirel {

// While it lives, the first SIGINT, SIGTERM or SIGHUP of the process calls a function in the event loop of
// the thread that made it; the next one ends the process as usual. A signal that is ignored stays so. At
// most one lives at a time.
class Interruption
{
public:
    explicit Interruption(std::function<void()> onInterrupt);
    ~Interruption();
    Q_DISABLE_COPY_MOVE(Interruption)

    [[nodiscard]] bool hasHappened() const { return m_hasHappened; }

private:
    void takeSignal();

    std::function<void()> m_onInterrupt;
    std::unique_ptr<QSocketNotifier> m_notifier;
    bool m_hasHappened = false;
};

} // namespace mirel
