#include "model/HandedLink.h"

#include "model/LinkReceiver.h"

#include <QDeadlineTimer>
#include <QLocalSocket>

namespace mirel {

Handing handOver(const HandedLink& link, const QString& directory, const HandingPatience& patience)
{
    const QByteArray message = encodeJSON(link) + '\n';
    if (message.size() > LinkReceiver::longestMessage)
        return Handing::refused;
    QLocalSocket socket;
    socket.connectToServer(LinkReceiver::socketPath(directory));
    if (!socket.waitForConnected(static_cast<int>(patience.forConnection.count())))
        return Handing::nobodyThere;
    socket.write(message);
    const QDeadlineTimer deadline(patience.forAnswer);
    while (!socket.canReadLine()) {
        if (!socket.waitForReadyRead(static_cast<int>(deadline.remainingTime())))
            return Handing::refused;
    }
    return socket.readLine() == LinkReceiver::taken ? Handing::taken : Handing::refused;
}

} // namespace mirel
