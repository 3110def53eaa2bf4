#include "screens/WindowLinks.h"

#include "support/WebURL.h"

namespace mirel {

WindowLinks::WindowLinks(std::unique_ptr<LinkReceiver> receiver, MirelAppModel& model, Screens& screens,
                         QString libraryPath, std::chrono::milliseconds interval)
    : m_receiver(std::move(receiver))
    , m_model(model)
    , m_screens(screens)
    , m_libraryPath(std::move(libraryPath))
{
    m_receiver->receive([this](const HandedLink& handed) { return take(handed); });
    m_claiming.setInterval(interval);
    QObject::connect(&m_claiming, &QTimer::timeout, &m_claiming, [this] { claim(); });
    QObject::connect(&m_model, &MirelAppModel::isAuthorizingXChanged, &m_claiming, [this] {
        if (m_model.isAuthorizingX())
            claim();
    });
    m_claiming.start();
    claim();
}

void WindowLinks::claim()
{
    if (m_receiver->claim())
        m_claiming.stop();
}

bool WindowLinks::take(const HandedLink& handed)
{
    if (!handed.url && handed.libraryPath != m_libraryPath)
        return false;
    m_screens.bringToFront();
    if (handed.url)
        m_model.handleOpenURL(parseURL(*handed.url).value_or(QUrl()));
    return true;
}

} // namespace mirel
