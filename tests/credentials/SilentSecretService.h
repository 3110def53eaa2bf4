#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QThread>

namespace mirel {

// A secret service on the session bus that takes every call and answers none, as one that waits for a
// password.
class SilentSecretService : public QDBusVirtualObject
{
public:
    SilentSecretService()
        : m_connection(QDBusConnection::connectToBus(QDBusConnection::SessionBus, name()))
    {
        m_connection.registerVirtualObject(QStringLiteral("/"), this, QDBusConnection::SubPath);
        m_connection.registerService(QStringLiteral("org.freedesktop.secrets"));
    }
    ~SilentSecretService() override { QDBusConnection::disconnectFromBus(name()); }
    Q_DISABLE_COPY_MOVE(SilentSecretService)

    [[nodiscard]] QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection&) override
    {
        message.setDelayedReply(true);
        return true;
    }

private:
    [[nodiscard]] static QString name() { return QStringLiteral("silent-secret-service"); }

    QDBusConnection m_connection;
};

} // namespace mirel
