#pragma once

#include <QJsonValue>
#include <QNetworkRequest>
#include <QProcess>
#include <QStringList>

namespace mirel::testing {

// A running mirel-simulator. Ends with this object.
class SimulatorProcess
{
public:
    // Throws std::runtime_error when it does not start.
    explicit SimulatorProcess(int posts);
    ~SimulatorProcess();
    Q_DISABLE_COPY_MOVE(SimulatorProcess)

    // The root of the X API that it plays.
    [[nodiscard]] const QString& apiURL() const { return m_apiURL; }
    // The page that asks the user.
    [[nodiscard]] QString authorizeURL() const;
    // Where the page sends the browser, which agrees at once.
    [[nodiscard]] QString callbackOf(const QString& page) const;

    // Replaces what goes wrong; the default is nothing.
    void setScenario(const QByteArray& json = "{}") const;
    void expireTokens() const;

    // The bookmarked posts, newest bookmark first.
    [[nodiscard]] QStringList accountIDs() const;
    // What X says to the owner of the account, for a path below the root of the API, and its query.
    [[nodiscard]] QJsonValue askX(const QString& path) const;
    // One object for each request since the start or forgetRequests().
    [[nodiscard]] QJsonArray requests() const;
    void forgetRequests() const;
    // What should not have been asked.
    [[nodiscard]] QJsonArray problems() const;

private:
    // Asks one of the simulator's own addresses. Throws std::runtime_error when it refuses.
    QJsonValue control(const QByteArray& method, const QString& path, const QByteArray& body = {}) const;
    static QJsonValue send(const QByteArray& method, const QNetworkRequest& request,
                           const QByteArray& body = {});

    QProcess m_process;
    QString m_apiURL;
};

} // namespace mirel::testing
