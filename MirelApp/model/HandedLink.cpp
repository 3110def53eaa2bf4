#include "model/HandedLink.h"

#include "model/LinkReceiver.h"

#include <QDeadlineTimer>
#include <QLocalSocket>

namespace mirel {

bool handOver(const HandedLink& link, const QString& directory, std::chrono::milliseconds patience)
{
    const QByteArray message = encodeJSON(link) + '\n';
    if (message.size() > LinkReceiver::longestMessage)
        return false;
    const QDeadlineTimer deadline(patience);
    const auto left = [&deadline] { return static_cast<int>(deadline.remainingTime()); };
    QLocalSocket socket;
    socket.connectToServer(LinkReceiver::socketPath(directory));
    if (!socket.waitForConnected(left()))
        return false;
    socket.write(message);
    while (!socket.canReadLine()) {
        if (!socket.waitForReadyRead(left()))
            return false;
    }
    return socket.readLine() == LinkReceiver::taken;
}

} // namespace mirel
