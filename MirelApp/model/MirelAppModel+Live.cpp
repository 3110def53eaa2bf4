#include "model/MirelAppModel.h"

#include "credentials/KeychainCredentialVault.h"
#include "credentials/MirelKeychainConfiguration.h"
#include "model/DefaultBrowser.h"
#include "support/MirelPaths.h"
#include "transport/URLSessionHTTPTransport.h"
#include "x/Endpoints.h"
#include "x/XAPIClient.h"

namespace mirel {

namespace {

std::unique_ptr<Serial<LocalLibraryStore>> openStore(const LiveOptions& options)
{
    const QString path = MirelPaths::databasePath(options.environment);
    return std::make_unique<Serial<LocalLibraryStore>>(
        std::make_shared<ServiceThread>(QStringLiteral("library")),
        [path, preparation = options.searchPreparation] {
            return std::make_unique<LocalLibraryStore>(path, Instant::now, FileManager::standard(),
                                                       preparation);
        });
}

std::unique_ptr<CredentialVault> makeSystemVault()
{
    return std::make_unique<KeychainCredentialVault>(MirelKeychainConfiguration::currentService());
}

// The services that reach X share one thread, and so may refer to one another. Throws EndpointsError.
void connectX(MirelServices& services, const LiveOptions& options)
{
    const Endpoints endpoints = Endpoints::fromEnvironment(options.environment);
    const auto thread = std::make_shared<ServiceThread>(QStringLiteral("services"));
    services.vault = std::make_unique<Serial<CredentialVault>>(
        thread, [&] { return options.makeVault ? options.makeVault() : makeSystemVault(); });
    services.transport = std::make_unique<Serial<HTTPTransport>>(
        thread, [] { return std::make_unique<URLSessionHTTPTransport>(); });
    services.x = std::make_unique<Serial<XDirectAPI>>(thread, [&] {
        return std::make_unique<XAPIClient>(services.vault->unguarded(), services.transport->unguarded(),
                                            endpoints.xAPI, Instant::now);
    });
    services.syncService = std::make_unique<Serial<MirelSyncService>>(
        thread, [&] { return std::make_unique<MirelSyncService>(services.x->unguarded(), *services.store); });
    services.oauth = std::make_unique<Serial<XOAuthService>>(thread, [&] {
        return std::make_unique<XOAuthService>(services.vault->unguarded(), services.transport->unguarded(),
                                               endpoints.xAPI, endpoints.xAuthorize);
    });
}

std::function<std::unique_ptr<WebAuthenticationSession>()> sessionMaker(const LiveOptions& options)
{
    BrowserAuthenticationSession::OpenPage openPage = options.openPage;
    if (!openPage) {
        openPage = [environment = options.environment](const QUrl& page,
                                                       const std::function<void()>& failed) {
            return openInDefaultBrowser(page, environment, failed);
        };
    }
    return [openPage] { return std::make_unique<BrowserAuthenticationSession>(openPage); };
}

} // namespace

std::unique_ptr<MirelAppModel> MirelAppModel::live(const LiveOptions& options)
{
    MirelServices services;
    std::optional<QString> error;
    try {
        services.store = openStore(options);
        services.makeWebAuthenticationSession = sessionMaker(options);
        services.cacheDirectory = MirelPaths::cacheDirectory(options.environment);
        connectX(services, options);
    } catch (const std::exception& failure) {
        error = describe(failure);
    }
    return std::make_unique<MirelAppModel>(std::move(services), error);
}

} // namespace mirel
