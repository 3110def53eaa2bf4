#pragma once

#include "simulator/RecordedRequest.h"
#include "simulator/Scenario.h"
#include "simulator/SimulatorOptions.h"

#include <QThread>
#include <QUrl>

#include <functional>
#include <memory>

namespace mirel {

namespace simulator {
class HTTPServer;
class SimulatedX;
} // namespace simulator

// X, played on the loopback address for one account. It runs on a thread of its own, so that a client may
// block the caller's thread. All its functions may be called from any one thread and take effect at once.
//
//     Simulator simulator({.posts = 120, .seed = 7});
//     simulator.listen();
//     client.setRoot(simulator.apiURL());
//     simulator.setScenario(Scenario::fromJSON(R"({"faults":[{"action":"stall","requests":2}]})"));
class Simulator
{
public:
    // Throws SimulatorError when the options make no sense.
    explicit Simulator(SimulatorOptions options = {});
    // Ends all connections.
    ~Simulator();

    Simulator(const Simulator&) = delete;
    Simulator& operator=(const Simulator&) = delete;

    // Begins to answer. Call once, before anything below. Throws SimulatorError when the port is taken.
    void listen();

    // "http://127.0.0.1:PORT/2"
    [[nodiscard]] QUrl apiURL() const;
    // "http://127.0.0.1:PORT/i/oauth2/authorize"
    [[nodiscard]] QUrl authorizeURL() const;
    [[nodiscard]] SimulatedIdentity identity() const { return {}; }

    // Replaces the scenario and begins to count requests anew.
    void setScenario(const Scenario& scenario);
    // Makes all access tokens useless that were given out so far, the first one too.
    void expireAccessTokens();
    void addPosts(int count);
    void removeNewestPosts(int count);

    // The identifiers of the posts that are bookmarked now, newest bookmark first.
    [[nodiscard]] QStringList accountIDs() const;
    // All requests since the start or the last clearRequests(), in the order of arrival.
    [[nodiscard]] QList<RecordedRequest> requests() const;
    // One sentence for each request that should not have come: unknown, unauthorized or malformed.
    [[nodiscard]] QStringList problems() const;
    // Forgets requests and problems.
    void clearRequests();

private:
    // Runs `action` on the thread of the server and waits for it. Passes exceptions through.
    void onServerThread(const std::function<void()>& action) const;

    SimulatorOptions m_options;
    QThread m_thread;
    // Lives on m_thread; the context of everything that runs there.
    std::unique_ptr<QObject> m_context;
    std::unique_ptr<simulator::SimulatedX> m_x;
    std::unique_ptr<simulator::HTTPServer> m_server;
    quint16 m_port = 0;
};

} // namespace mirel
