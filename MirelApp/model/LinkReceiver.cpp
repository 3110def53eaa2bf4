#include "model/LinkReceiver.h"

#include <QDir>
#include <QTimer>

namespace mirel {

namespace {

// More senders at once than these wait for their turn.
constexpr int mostSenders = 16;

} // namespace

QString LinkReceiver::socketPath(const QString& directory)
{
    return QDir(directory).filePath(QStringLiteral("mirel.sock"));
}

LinkReceiver::LinkReceiver(const QString& directory, std::chrono::milliseconds patience)
    : m_path(socketPath(directory))
    , m_patience(patience)
    , m_lock(QDir(directory).filePath(QStringLiteral("mirel.lock")))
{
    m_lock.setStaleLockTime(0);
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    m_server.setMaxPendingConnections(mostSenders);
    QObject::connect(&m_server, &QLocalServer::newConnection, &m_server, [this] { accept(); });
}

LinkReceiver::~LinkReceiver()
{
    // Before the lock is let go: the socket of the next one must not be removed.
    m_server.close();
}

bool LinkReceiver::claim()
{
    if (m_server.isListening())
        return true;
    if (!m_lock.tryLock(0))
        return false;
    // Whoever left a socket here is dead, or it would hold the lock.
    QLocalServer::removeServer(m_path);
    if (m_server.listen(m_path) && QFile::setPermissions(m_path, QFile::ReadOwner | QFile::WriteOwner))
        return true;
    m_server.close();
    m_lock.unlock();
    return false;
}

void LinkReceiver::receive(Take take)
{
    m_take = std::move(take);
    accept();
}

void LinkReceiver::accept()
{
    if (!m_take)
        return;
    while (QLocalSocket* const sender = m_server.nextPendingConnection()) {
        sender->setReadBufferSize(longestMessage);
        QObject::connect(sender, &QLocalSocket::disconnected, sender, &QObject::deleteLater);
        QObject::connect(sender, &QLocalSocket::readyRead, sender, [this, sender] { read(sender); });
        QTimer::singleShot(m_patience, sender, [sender] { sender->abort(); });
        if (sender->bytesAvailable() > 0)
            read(sender);
    }
}

void LinkReceiver::read(QLocalSocket* sender)
{
    if (sender->canReadLine()) {
        QObject::disconnect(sender, &QLocalSocket::readyRead, nullptr, nullptr);
        const QByteArray answer = isTaken(sender->readLine()) ? taken.toByteArray() : "refused\n";
        sender->write(answer);
        sender->disconnectFromServer();
    } else if (sender->bytesAvailable() >= longestMessage) {
        sender->abort();
    }
}

bool LinkReceiver::isTaken(const QByteArray& message) const
{
    try {
        return m_take(decodeJSON<HandedLink>(message.chopped(1)));
    } catch (const Error&) {
        // The message of some other program that found the socket, or a link that is of no use here.
        return false;
    }
}

} // namespace mirel
