#include "screens/Screens.h"

#include "screens/ScreensError.h"

#include <QDir>
#include <QQuickItem>

// Made by the build of the QML module; calling it keeps the linker from leaving the types out.
void qml_register_types_Mirel_Screens();

namespace mirel {

namespace {

bool isLoadingPicture(const QQuickItem& item)
{
    constexpr int loading = 2; // Image.Loading, which has no public C++ name
    if (!item.isVisible())
        return false;
    if (item.inherits("QQuickImageBase") && item.property("status").toInt() == loading)
        return true;
    const QList<QQuickItem*> children = item.childItems();
    return std::any_of(children.begin(), children.end(),
                       [](const QQuickItem* child) { return isLoadingPicture(*child); });
}

} // namespace

Screens::Screens(MirelAppModel& model, DesktopSettings& desktop, const QString& cacheDirectory)
    : m_pictureNetwork(QDir(cacheDirectory).filePath(QStringLiteral("pictures")))
{
    qml_register_types_Mirel_Screens();
    m_engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    m_engine.setNetworkAccessManagerFactory(&m_pictureNetwork);
    Theme::setDesktop(m_engine, desktop);
    QStringList warnings;
    QObject::connect(&m_engine, &QQmlEngine::warnings, [&warnings](const QList<QQmlError>& errors) {
        for (const QQmlError& error : errors)
            warnings.append(error.toString());
    });
    m_engine.setInitialProperties({{QStringLiteral("appModel"), QVariant::fromValue(&model)}});
    m_engine.load(QUrl(QStringLiteral("qrc:/qt/qml/Mirel/Screens/MainWindow.qml")));
    QObject::disconnect(&m_engine, &QQmlEngine::warnings, nullptr, nullptr);
    if (!m_engine.rootObjects().isEmpty())
        m_window = qobject_cast<QQuickWindow*>(m_engine.rootObjects().constFirst());
    if (!m_window)
        throw ScreensError(warnings.join(u'\n'));
    m_theme = m_engine.singletonInstance<Theme*>(qmlTypeId("Mirel.Screens", 1, 0, "Theme"));
}

void Screens::show()
{
    // QWindow::show() would end its being maximized.
    m_window->setVisible(true);
}

void Screens::bringToFront()
{
    m_window->setWindowStates(m_window->windowStates() & ~Qt::WindowMinimized);
    show();
    m_window->raise();
    m_window->requestActivate();
}

bool Screens::isLoadingPictures() const
{
    return isLoadingPicture(*m_window->contentItem());
}

} // namespace mirel
