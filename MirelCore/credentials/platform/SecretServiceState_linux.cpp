#include "credentials/platform/SecretServiceState.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QMap>

namespace mirel {

namespace {

using Attributes = QMap<QString, QString>;

// A connection of its own to the session bus, for as long as it lives: Qt keeps the shared one also when the
// bus was not there at first.
class SessionBus
{
public:
    SessionBus()
        : m_connection(QDBusConnection::connectToBus(QDBusConnection::SessionBus, name()))
    {
    }
    ~SessionBus() { QDBusConnection::disconnectFromBus(name()); }
    Q_DISABLE_COPY_MOVE(SessionBus)

    [[nodiscard]] const QDBusConnection& connection() const { return m_connection; }

private:
    [[nodiscard]] static QString name() { return QStringLiteral("mirel-secret-service"); }

    QDBusConnection m_connection;
};

QDBusMessage searchFor(const QString& service, const QString& account)
{
    auto message = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.secrets"), QStringLiteral("/org/freedesktop/secrets"),
        QStringLiteral("org.freedesktop.Secret.Service"), QStringLiteral("SearchItems"));
    // The attributes that QtKeychain gives its items.
    const Attributes attributes{{QStringLiteral("server"), service}, {QStringLiteral("user"), account}};
    message.setArguments({QVariant::fromValue(attributes)});
    return message;
}

} // namespace

SecretServiceState secretServiceState(const QString& service, const QString& account)
{
    qDBusRegisterMetaType<Attributes>();
    const SessionBus bus;
    if (!bus.connection().isConnected())
        return SecretServiceState::absent;
    if (!bus.connection().interface()->isServiceRegistered(QStringLiteral("org.freedesktop.secrets")))
        return SecretServiceState::absent;
    constexpr int limitInMilliseconds = 5'000;
    const QDBusMessage found =
        bus.connection().call(searchFor(service, account), QDBus::Block, limitInMilliseconds);
    // Two lists: the items that are unlocked, and those that are locked.
    if (found.type() != QDBusMessage::ReplyMessage || found.arguments().size() != 2)
        return SecretServiceState::ready;
    const auto lockedItems = qdbus_cast<QList<QDBusObjectPath>>(found.arguments().at(1));
    return lockedItems.isEmpty() ? SecretServiceState::ready : SecretServiceState::locked;
}

} // namespace mirel
