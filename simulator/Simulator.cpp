#include "simulator/Simulator.h"

#include "simulator/SimulatorError.h"
#include "simulator/http/HTTPServer.h"
#include "simulator/x/SimulatedX.h"

namespace mirel {

Simulator::Simulator(SimulatorOptions options)
    : m_options(std::move(options))
    , m_context(std::make_unique<QObject>())
{
    if (m_options.posts < 0 || m_options.posts > SimulatorOptions::largestAccount) {
        throw SimulatorError(SimulatorError::Case::InvalidArgument,
                             QStringLiteral("The number of posts must be from 0 to %1.")
                                 .arg(SimulatorOptions::largestAccount));
    }
    if (m_options.folders < 0 || m_options.folders > SimulatorOptions::mostFolders) {
        throw SimulatorError(
            SimulatorError::Case::InvalidArgument,
            QStringLiteral("The number of folders must be from 0 to %1.").arg(SimulatorOptions::mostFolders));
    }
    m_thread.setObjectName(QStringLiteral("simulator"));
    m_context->moveToThread(&m_thread);
    m_thread.start();
}

Simulator::~Simulator()
{
    // Sockets must end on the thread they live on.
    onServerThread([this] {
        m_server.reset();
        m_x.reset();
    });
    m_thread.quit();
    m_thread.wait();
}

void Simulator::listen()
{
    onServerThread([this] {
        auto server = std::make_unique<simulator::HTTPServer>(
            [this](const simulator::HTTPRequest& request) { return m_x->answer(request); });
        m_port = server->listen(m_options.port);
        m_x = std::make_unique<simulator::SimulatedX>(m_options,
                                                      QStringLiteral("http://127.0.0.1:%1").arg(m_port));
        m_server = std::move(server);
    });
}

QUrl Simulator::apiURL() const
{
    return QUrl(QStringLiteral("http://127.0.0.1:%1/2").arg(m_port));
}

QUrl Simulator::authorizeURL() const
{
    return QUrl(QStringLiteral("http://127.0.0.1:%1/i/oauth2/authorize").arg(m_port));
}

void Simulator::setScenario(const Scenario& scenario)
{
    onServerThread([&] { m_x->setScenario(scenario); });
}

void Simulator::expireAccessTokens()
{
    onServerThread([this] { m_x->expireAccessTokens(); });
}

void Simulator::addPosts(int count)
{
    onServerThread([&] { m_x->account().add(count); });
}

void Simulator::removeNewestPosts(int count)
{
    onServerThread([&] { m_x->account().removeNewest(count); });
}

QStringList Simulator::accountIDs() const
{
    QStringList ids;
    onServerThread([&] { ids = m_x->accountIDs(); });
    return ids;
}

QList<RecordedRequest> Simulator::requests() const
{
    QList<RecordedRequest> requests;
    onServerThread([&] { requests = m_x->log().requests(); });
    return requests;
}

QStringList Simulator::problems() const
{
    QStringList problems;
    onServerThread([&] { problems = m_x->log().problems(); });
    return problems;
}

void Simulator::clearRequests()
{
    onServerThread([this] { m_x->log().clear(); });
}

void Simulator::onServerThread(const std::function<void()>& action) const
{
    std::exception_ptr failure;
    const auto guarded = [&] {
        try {
            action();
        } catch (...) {
            failure = std::current_exception();
        }
    };
    QMetaObject::invokeMethod(m_context.get(), guarded, Qt::BlockingQueuedConnection);
    if (failure)
        std::rethrow_exception(failure);
}

} // namespace mirel
