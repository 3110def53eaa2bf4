#include "screens/WindowPlacement.h"

#include <QGuiApplication>
#include <QScreen>

namespace mirel {

namespace {

const QString geometryKey = QStringLiteral("window/geometry");
const QString maximizedKey = QStringLiteral("window/isMaximized");
const QString listWidthKey = QStringLiteral("window/listWidth");
constexpr auto listWidthProperty = "listWidth";

// Enough of the window lies on a screen to be taken hold of.
bool isReachable(const QRect& geometry)
{
    constexpr int leastVisible = 80;
    const QList<QScreen*> screens = QGuiApplication::screens();
    return std::any_of(screens.begin(), screens.end(), [&](const QScreen* screen) {
        const QRect visible = screen->availableGeometry().intersected(geometry);
        return visible.width() >= leastVisible && visible.height() >= leastVisible;
    });
}

} // namespace

WindowPlacement::WindowPlacement(QWindow& window, QSettings& settings)
    : m_window(window)
    , m_settings(settings)
    , m_normalGeometry(window.geometry())
{
    restore();
    const auto note = [this] {
        if (m_window.visibility() == QWindow::Windowed)
            m_normalGeometry = m_window.geometry();
    };
    connect(&window, &QWindow::widthChanged, this, note);
    connect(&window, &QWindow::heightChanged, this, note);
    connect(&window, &QWindow::xChanged, this, note);
    connect(&window, &QWindow::yChanged, this, note);
    connect(&window, &QWindow::visibilityChanged, this, [this](QWindow::Visibility visibility) {
        if (visibility == QWindow::Windowed || visibility == QWindow::Maximized)
            m_isMaximized = visibility == QWindow::Maximized;
        if (visibility != QWindow::Hidden)
            return;
        // The window system may have moved the window without a signal having come yet.
        if (!m_isMaximized)
            m_normalGeometry = m_window.geometry();
        save();
    });
}

void WindowPlacement::restore()
{
    const QRect geometry = m_settings.value(geometryKey).toRect();
    if (geometry.isValid() && isReachable(geometry)) {
        m_normalGeometry = geometry;
        m_window.setGeometry(geometry);
    }
    if (const double listWidth = m_settings.value(listWidthKey).toDouble(); listWidth > 0)
        m_window.setProperty(listWidthProperty, listWidth);
    m_isMaximized = m_settings.value(maximizedKey).toBool();
    if (m_isMaximized)
        m_window.setWindowState(Qt::WindowMaximized);
}

void WindowPlacement::save()
{
    m_settings.setValue(geometryKey, m_normalGeometry);
    m_settings.setValue(maximizedKey, m_isMaximized);
    if (const QVariant listWidth = m_window.property(listWidthProperty); listWidth.isValid())
        m_settings.setValue(listWidthKey, listWidth.toDouble());
}

} // namespace mirel
