#include "model/MirelAppModel.h"

#include "model/RunningCommand.h"
#include "model/SettingsValidationError.h"
#include "support/Text.h"

namespace mirel {

namespace {

// What the user entered, each blank field as it is stored. Throws SettingsValidationError.
XCredentials merged(const std::optional<XCredentials>& stored, const XCredentials& entered)
{
    XCredentials result = stored.value_or(XCredentials());
    result.clientID = nilIfBlank(QStringView(entered.clientID)).value_or(result.clientID);
    result.accessToken = nilIfBlank(QStringView(entered.accessToken)).value_or(result.accessToken);
    result.userID = nilIfBlank(QStringView(entered.userID)).value_or(result.userID);
    for (const auto field :
         {&XCredentials::clientSecret, &XCredentials::refreshToken, &XCredentials::username}) {
        if (const auto text = nilIfBlank(entered.*field))
            result.*field = text;
    }
    // Nobody has said when another token expires.
    if (stored && stored->accessToken != result.accessToken)
        result.expiresAt.reset();
    if (result.clientID.isEmpty() || result.accessToken.isEmpty() || result.userID.isEmpty())
        throw SettingsValidationError(SettingsValidationError::Case::incompleteXCredentials);
    return result;
}

} // namespace

QCoro::Task<> MirelAppModel::refreshCredentialState()
{
    const RunningCommand running(*this);
    const QUuid generation = QUuid::createUuid();
    m_connectionValidationGeneration = generation;
    bool isConnected = false;
    try {
        isConnected = co_await isXConnected();
    } catch (const std::exception&) {
        // Shows as not connected: at start-up a missing connection is no error.
    }
    if (m_connectionValidationGeneration == generation)
        setXConfigured(isConnected);
}

// X answers to the stored credentials. Throws what keeps it from being found out.
QCoro::Task<bool> MirelAppModel::isXConnected()
{
    if (!m_services.vault || !m_services.x)
        co_return false;
    const auto credentials =
        co_await m_services.vault->call([](CredentialVault& vault) { return vault.loadXCredentials(); });
    if (!credentials)
        co_return false;
    co_await m_services.x->call([](XDirectAPI& x) { return x.currentUser(); });
    co_return true;
}

QCoro::Task<> MirelAppModel::savePreferences(AppPreferences preferences)
{
    if (!m_services.store)
        co_return;
    const RunningCommand running(*this);
    // At once, so that the control that was touched does not wait for the library.
    m_preferences = preferences;
    Q_EMIT libraryChanged();
    try {
        const auto save = [preferences](LocalLibraryStore& library) { library.savePreferences(preferences); };
        co_await m_services.store->call(save);
        co_await refreshCredentialState();
    } catch (...) {
        fail(std::current_exception());
    }
}

QCoro::Task<> MirelAppModel::persistXCredentials(QString clientID, QString clientSecret, QString accessToken,
                                                 QString refreshToken, QString userID, QString username)
{
    if (!m_services.vault || !m_services.x)
        co_return;
    const RunningCommand running(*this);
    bool isSaved = false;
    try {
        const XCredentials entered{clientID,     clientSecret, accessToken, refreshToken,
                                   std::nullopt, userID,       username};
        const ChangeXCredentials change = [entered](const std::optional<XCredentials>& stored) {
            return merged(stored, entered);
        };
        co_await changeXCredentials(change);
        isSaved = true;
        const XUser user = co_await m_services.x->call([](XDirectAPI& x) { return x.currentUser(); });
        co_await saveXUsername(user.username);
    } catch (...) {
        fail(std::current_exception());
    }
    // Tokens that X refuses are stored all the same, so that what was known of the old ones is out of date.
    if (isSaved)
        co_await refreshCredentialState();
}

// The tokens may have been refreshed, or removed, since they were saved.
QCoro::Task<> MirelAppModel::saveXUsername(QString username)
{
    const ChangeXCredentials withUsername = [username](std::optional<XCredentials> stored) {
        if (stored)
            stored->username = username;
        return stored;
    };
    co_await changeXCredentials(withUsername);
}

// Saves what `change` makes of the stored credentials, if anything. What it throws passes through.
QCoro::Task<> MirelAppModel::changeXCredentials(ChangeXCredentials change)
{
    const auto save = [change](CredentialVault& vault) -> QCoro::Task<> {
        for (;;) {
            const qint64 changes = vault.changes();
            const std::optional<XCredentials> stored = co_await vault.loadXCredentials();
            const std::optional<XCredentials> changed = change(stored);
            // Otherwise somebody else saved or removed them while they were read.
            if (changes != vault.changes())
                continue;
            if (changed)
                co_await vault.saveXCredentials(*changed);
            co_return;
        }
    };
    co_await m_services.vault->call(save);
}

QCoro::Task<> MirelAppModel::validateConnections()
{
    if (!m_xConfigured || !m_services.x)
        co_return;
    const RunningCommand running(*this);
    const QUuid generation = m_connectionValidationGeneration;
    const auto isStale = [this, generation] { return m_connectionValidationGeneration != generation; };
    setWorking(true);
    try {
        co_await m_services.x->call([](XDirectAPI& x) { return x.currentUser(); });
        if (!isStale())
            setStatusMessage(QStringLiteral("Validated X directly."));
        setWorking(false);
    } catch (...) {
        if (isStale())
            setWorking(false);
        else
            fail(std::current_exception());
    }
}

QCoro::Task<> MirelAppModel::clearCredentials()
{
    if (!m_services.vault)
        co_return;
    const RunningCommand running(*this);
    try {
        co_await abandonXAuthorization();
        co_await m_services.vault->call([](CredentialVault& vault) { return vault.clearAll(); });
        setStatusMessage(QStringLiteral("Provider credentials removed."));
    } catch (...) {
        fail(std::current_exception());
    }
    // Some may be gone also when others could not be removed.
    co_await refreshCredentialState();
}

void MirelAppModel::setXConfigured(bool isConfigured)
{
    m_xConfigured = isConfigured;
    Q_EMIT xConfiguredChanged();
}

} // namespace mirel
