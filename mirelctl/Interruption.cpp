#include "mirelctl/Interruption.h"

#include <array>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace mirel {

namespace {

constexpr std::array interruptingSignals{SIGINT, SIGTERM, SIGHUP};

// A signal handler may only write to a pipe; the event loop reads the other end.
std::array<int, 2> signalPipe{-1, -1};

extern "C" void writeToSignalPipe(int)
{
    const char byte = 0;
    [[maybe_unused]] const ssize_t written = write(signalPipe[1], &byte, 1);
}

// A signal that is ignored stays so: whoever started the process wants it to outlive the terminal.
void setHandlers(void (*handler)(int))
{
    for (const int number : interruptingSignals) {
        struct sigaction action = {};
        sigaction(number, nullptr, &action);
        if (action.sa_handler == SIG_IGN)
            continue;
        action.sa_handler = handler;
        // The second signal finds the usual handler again.
        action.sa_flags = static_cast<int>(SA_RESETHAND) | SA_RESTART;
        sigaction(number, &action, nullptr);
    }
}

} // namespace

Interruption::Interruption(std::function<void()> onInterrupt)
    : m_onInterrupt(std::move(onInterrupt))
{
    // Without a pipe the signals keep their usual effect.
    if (pipe(signalPipe.data()) != 0)
        return;
    for (const int end : signalPipe)
        fcntl(end, F_SETFD, FD_CLOEXEC);
    m_notifier = std::make_unique<QSocketNotifier>(signalPipe[0], QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(),
                     [this] { takeSignal(); });
    setHandlers(writeToSignalPipe);
}

Interruption::~Interruption()
{
    if (!m_notifier)
        return;
    setHandlers(SIG_DFL);
    m_notifier.reset();
    for (int& end : signalPipe)
        close(std::exchange(end, -1));
}

void Interruption::takeSignal()
{
    m_notifier->setEnabled(false);
    setHandlers(SIG_DFL);
    m_hasHappened = true;
    m_onInterrupt();
}

} // namespace mirel
