#include "model/MirelAppModel.h"

#include "model/RunningCommand.h"

#include <QCoro/QCoroFuture>
#include <QCoro/QCoroTimer>

#include <chrono>

namespace mirel {

namespace {

constexpr std::chrono::milliseconds pauseBetweenRounds{20};
// Half a second for a keyring that is at work; one that waits for its user is not waited for.
constexpr int roundsForKeyring = 25;
// A second and a half for X to send a token.
constexpr int roundsForTokens = 75;

} // namespace

MirelAppModel::MirelAppModel(MirelServices services, std::optional<QString> lastError, Clock now)
    : m_services(std::move(services))
    , m_now(std::move(now))
    , m_lastError(std::move(lastError))
{
}

MirelAppModel::~MirelAppModel() = default;

QCoro::Task<> MirelAppModel::start()
{
    const RunningCommand running(*this);
    co_await load();
    // Not awaited: the library is on screen before the keyring, which may ask the user, is touched.
    connectAndSync();
}

QCoro::Task<> MirelAppModel::load()
{
    const RunningCommand running(*this);
    co_await readPreferences();
    co_await refreshLibrary();
    co_await refreshSyncRuns();
    co_await refreshOrganization();
}

QCoro::Task<> MirelAppModel::connectAndSync()
{
    const RunningCommand running(*this);
    co_await refreshCredentialState();
    co_await syncIfDue();
}

// Preferences that cannot be read are the defaults, without a message.
QCoro::Task<> MirelAppModel::readPreferences()
{
    if (!m_services.store)
        co_return;
    AppPreferences preferences;
    try {
        preferences =
            co_await m_services.store->call([](LocalLibraryStore& library) { return library.preferences(); });
    } catch (const std::exception&) {
        preferences = {};
    }
    m_preferences = preferences;
    Q_EMIT libraryChanged();
}

QCoro::Task<> MirelAppModel::shutDown()
{
    m_isShuttingDown = true;
    for (int round = 0; m_runningCommands > 0; ++round) {
        m_syncCancellation.abandon();
        // A command that was between two requests begins its next one after the others were ended.
        co_await endRequests(round);
        // A refreshed token on its way into the keyring is the only one that X still knows.
        if (round >= roundsForKeyring)
            co_await endVaultCalls();
        if (m_runningCommands > 0)
            co_await QCoro::sleepFor(pauseBetweenRounds);
    }
}

// A token that X has sent is the only one that it still knows, so its request is given some time.
QCoro::Task<> MirelAppModel::endRequests(int round)
{
    const RunningCommand running(*this);
    if (!m_services.transport)
        co_return;
    co_await m_services.transport->call([endsAll = round >= roundsForTokens](HTTPTransport& transport) {
        endsAll ? transport.cancelAll() : transport.cancelRepeatable();
    });
}

QCoro::Task<> MirelAppModel::endVaultCalls()
{
    const RunningCommand running(*this);
    if (m_services.vault)
        co_await m_services.vault->call([](CredentialVault& vault) { vault.cancelAll(); });
}

QCoro::Task<> MirelAppModel::endSyncEarly()
{
    const RunningCommand running(*this);
    m_syncCancellation.request();
    const QFuture<void> ended = m_syncEnded;
    co_await ended;
}

void MirelAppModel::setStatusMessage(const QString& message)
{
    m_statusMessage = message;
    Q_EMIT messagesChanged();
}

void MirelAppModel::setLastError(std::optional<QString> error)
{
    m_lastError = std::move(error);
    Q_EMIT messagesChanged();
}

void MirelAppModel::fail(const std::exception_ptr& failure)
{
    setLastError(describe(failure));
    setWorking(false);
}

void MirelAppModel::setWorking(bool isWorking)
{
    if (m_isWorking == isWorking)
        return;
    m_isWorking = isWorking;
    Q_EMIT isWorkingChanged();
}

void MirelAppModel::dismissError()
{
    setLastError({});
}

void MirelAppModel::dismissStatus()
{
    m_statusMessage.reset();
    Q_EMIT messagesChanged();
}

void MirelAppModel::cancelSync()
{
    if (m_isSyncing)
        endSyncEarly();
}

} // namespace mirel
