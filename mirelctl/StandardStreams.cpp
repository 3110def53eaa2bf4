#include "mirelctl/StandardStreams.h"

#include "mirelctl/CommandError.h"

#include <cerrno>
#include <sys/ioctl.h>
#include <system_error>
#include <unistd.h>

namespace mirel::standardStreams {

namespace {

// Returns 0 or the error number.
int writeAll(int descriptor, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const ssize_t written = write(descriptor, bytes.data(), static_cast<size_t>(bytes.size()));
        if (written == -1 && errno != EINTR)
            return errno;
        if (written > 0)
            bytes = bytes.sliced(written);
    }
    return 0;
}

} // namespace

std::optional<int> outputColumns()
{
    winsize size = {};
    if (isatty(STDOUT_FILENO) == 0 || ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0)
        return std::nullopt;
    return size.ws_col;
}

bool isErrorTerminal()
{
    return isatty(STDERR_FILENO) != 0;
}

void writeOutput(const QByteArray& bytes)
{
    const int error = writeAll(STDOUT_FILENO, bytes);
    if (error != 0 && error != EPIPE) {
        throw CommandError(QStringLiteral("The output could not be written: %1.")
                               .arg(QString::fromStdString(std::system_category().message(error))));
    }
}

void writeError(const QByteArray& bytes)
{
    writeAll(STDERR_FILENO, bytes);
}

} // namespace mirel::standardStreams
