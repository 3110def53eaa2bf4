#pragma once

#include <QObject>

#include <memory>

namespace mirel {

// What the user chose for the whole desktop, as far as Mirel's looks follow it. Lives on the main thread.
class DesktopSettings : public QObject
{
    Q_OBJECT

public:
    struct Values
    {
        bool isDark = false;
        // How much larger than usual text shall be.
        double textScale = 1;
        bool reducesMotion = false;

        friend bool operator==(const Values&, const Values&) = default;
    };

    explicit DesktopSettings(Values values);

    // The settings of this system, which follow its changes. Needs a QGuiApplication.
    [[nodiscard]] static std::unique_ptr<DesktopSettings> ofThisSystem();

    [[nodiscard]] const Values& values() const { return m_values; }
    void setValues(Values values);

Q_SIGNALS:
    void changed();

private:
    Values m_values;
};

} // namespace mirel
