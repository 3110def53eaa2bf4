#include "model/HandedLink.h"

#include "model/LinkReceiver.h"

#include <QDeadlineTimer>
#include <QLocalSocket>

namespace mirel {

Handing handOver(const HandedLink& link, const QString& directory, std::chrono::milliseconds patience)
{
    const QByteArray message = encodeJSON(link) + '\n';
    if (message.size() > LinkReceiver::longestMessage)
        return Handing::refused;
    const QDeadlineTimer deadline(patience);
    const auto left = [&deadline] { return static_cast<int>(deadline.remainingTime()); };
    QLocalSocket socket;
    socket.connectToServer(LinkReceiver::socketPath(directory));
    if (!socket.waitForConnected(left()))
        return Handing::nobodyThere;
    socket.write(message);
    while (!socket.canReadLine()) {
        if (!socket.waitForReadyRead(left()))
            return Handing::refused;
    }
    return socket.readLine() == LinkReceiver::taken ? Handing::taken : Handing::refused;
}

} // namespace mirel
