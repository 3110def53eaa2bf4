#pragma once

#include "screens/DesktopSettings.h"

#include <QDBusConnection>
#include <QDBusVariant>

#include <optional>

namespace mirel {

// The settings that the desktop tells through its portal (org.freedesktop.portal.Settings). What it does not
// tell is taken from the application's palette and font.
class PortalDesktopSettings : public DesktopSettings
{
    Q_OBJECT

public:
    explicit PortalDesktopSettings(const QDBusConnection& bus);

    bool eventFilter(QObject* watched, QEvent* event) override;

private Q_SLOTS:
    void takeSetting(const QString& group, const QString& key, const QDBusVariant& value);

private:
    [[nodiscard]] bool readAtOnce(const QString& group, const QString& key);
    void read(const QString& group, const QString& key);
    void combine();

    QDBusConnection m_bus;
    std::optional<bool> m_isDark;
    std::optional<double> m_textScale;
    std::optional<bool> m_reducesMotion;
};

} // namespace mirel
