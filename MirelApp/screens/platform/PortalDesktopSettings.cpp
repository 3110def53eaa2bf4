#include "screens/platform/PortalDesktopSettings.h"

#include "screens/platform/ToolkitSettings.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QEvent>
#include <QGuiApplication>

namespace mirel {

namespace {

const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
const QString interface = QStringLiteral("org.freedesktop.portal.Settings");

const QString appearance = QStringLiteral("org.freedesktop.appearance");
const QString colorScheme = QStringLiteral("color-scheme");
const QString gnomeInterface = QStringLiteral("org.gnome.desktop.interface");
const QString textScalingFactor = QStringLiteral("text-scaling-factor");
const QString enableAnimations = QStringLiteral("enable-animations");

// How long the first frame may wait for the colour scheme, so that it need not change at once.
constexpr int firstAnswerMilliseconds = 250;

QDBusMessage readMessage(const QString& group, const QString& key)
{
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("Read"));
    message.setArguments({group, key});
    return message;
}

// "Read" wraps its answer twice, the signal once.
QVariant unwrapped(QVariant value)
{
    while (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

} // namespace

PortalDesktopSettings::PortalDesktopSettings(const QDBusConnection& bus)
    : DesktopSettings(toolkitSettings())
    , m_bus(bus)
{
    qApp->installEventFilter(this);
    if (!m_bus.isConnected())
        return;
    m_bus.connect(service, path, interface, QStringLiteral("SettingChanged"), this,
                  SLOT(takeSetting(QString, QString, QDBusVariant)));
    if (!readAtOnce(appearance, colorScheme))
        read(appearance, colorScheme);
    read(gnomeInterface, textScalingFactor);
    read(gnomeInterface, enableAnimations);
}

bool PortalDesktopSettings::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::ApplicationPaletteChange || event->type() == QEvent::ApplicationFontChange)
        combine();
    return DesktopSettings::eventFilter(watched, event);
}

bool PortalDesktopSettings::readAtOnce(const QString& group, const QString& key)
{
    const QDBusMessage answer = m_bus.call(readMessage(group, key), QDBus::Block, firstAnswerMilliseconds);
    if (answer.type() != QDBusMessage::ReplyMessage || answer.arguments().isEmpty())
        return false;
    takeSetting(group, key, QDBusVariant(answer.arguments().constFirst()));
    return true;
}

void PortalDesktopSettings::read(const QString& group, const QString& key)
{
    auto* const watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(readMessage(group, key)), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, group, key] {
        watcher->deleteLater();
        // A desktop without this setting answers with an error: the toolkit's value stays.
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        if (reply.isValid())
            takeSetting(group, key, reply.value());
    });
}

void PortalDesktopSettings::takeSetting(const QString& group, const QString& key, const QDBusVariant& value)
{
    const QVariant plain = unwrapped(value.variant());
    if (group == appearance && key == colorScheme) {
        // 0 is "no preference", 1 dark, 2 light.
        const uint scheme = plain.toUInt();
        m_isDark = scheme == 1 || scheme == 2 ? std::optional(scheme == 1) : std::nullopt;
    } else if (group == gnomeInterface && key == textScalingFactor) {
        m_textScale = qBound(0.5, plain.toDouble(), 3.0);
    } else if (group == gnomeInterface && key == enableAnimations) {
        m_reducesMotion = !plain.toBool();
    } else {
        return;
    }
    combine();
}

void PortalDesktopSettings::combine()
{
    const Values toolkit = toolkitSettings();
    setValues({
        .isDark = m_isDark.value_or(toolkit.isDark),
        .textScale = m_textScale.value_or(toolkit.textScale),
        .reducesMotion = m_reducesMotion.value_or(toolkit.reducesMotion),
    });
}

} // namespace mirel
