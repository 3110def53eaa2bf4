#include "PlantedSecret.h"

#include <QGenericPlugin>
#include <QGuiApplication>
#include <QTest>
#include <QTimer>
#include <QWindow>

// Loaded into the window program by Qt, in place of a user: opens the settings, enters a client and its
// secret, and begins to sign in.
class WindowDriver : public QObject
{
    Q_OBJECT

public:
    explicit WindowDriver(QObject* parent = nullptr)
        : QObject(parent)
    {
        m_pulse.callOnTimeout(this, [this] { tryStep(); });
        m_pulse.start(std::chrono::milliseconds(20));
    }

private:
    static QObject* find(const char* name)
    {
        for (const QWindow* const window : QGuiApplication::topLevelWindows()) {
            if (QObject* const found = window->findChild<QObject*>(QString::fromLatin1(name)))
                return found;
        }
        return nullptr;
    }

    static bool enter(const char* field, const QByteArray& text)
    {
        QObject* const input = find(field);
        return input && input->setProperty("text", QString::fromUtf8(text));
    }

    void tryStep()
    {
        QWindow* const window = QGuiApplication::focusWindow();
        if (!window || !window->isExposed())
            return;
        if (!m_hasOpenedSettings) {
            m_hasOpenedSettings = true;
            QTest::keyClick(window, Qt::Key_Comma, Qt::ControlModifier);
        }
        if (enter("clientIDInput", "simulated-client") &&
            enter("clientSecretInput", mirel::testing::plantedSecret)) {
            m_pulse.stop();
            QMetaObject::invokeMethod(find("clientSecretInput"), "forceActiveFocus");
            QTest::keyClick(window, Qt::Key_Return);
        }
    }

    QTimer m_pulse;
    bool m_hasOpenedSettings = false;
};

class WindowDriverPlugin : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "WindowDriver.json")

public:
    QObject* create(const QString&, const QString&) override { return new WindowDriver(qGuiApp); }
};

#include "WindowDriver.moc"
