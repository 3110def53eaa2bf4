#include "model/MirelAppModel.h"

#include "model/RunningCommand.h"

namespace mirel {

QCoro::Task<> MirelAppModel::refreshCredentialState()
{
    const RunningCommand running(*this);
    const QUuid generation = QUuid::createUuid();
    m_connectionValidationGeneration = generation;
    bool isConfigured = false;
    if (m_services.vault && m_services.x) {
        try {
            const auto credentials = co_await m_services.vault->call(
                [](CredentialVault& vault) { return vault.loadXCredentials(); });
            if (credentials) {
                co_await m_services.x->call([](XDirectAPI& x) { return x.currentUser(); });
                isConfigured = true;
            }
        } catch (const std::exception&) {
            // Shows as not connected: at start-up a missing connection is no error.
        }
    }
    if (m_connectionValidationGeneration == generation)
        setXConfigured(isConfigured);
}

void MirelAppModel::setXConfigured(bool isConfigured)
{
    m_xConfigured = isConfigured;
    Q_EMIT xConfiguredChanged();
}

} // namespace mirel
