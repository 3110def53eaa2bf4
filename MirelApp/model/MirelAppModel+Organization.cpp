#include "model/MirelAppModel.h"
#include "model/RunningCommand.h"

namespace mirel {

QCoro::Task<> MirelAppModel::refreshOrganization()
{
    if (!m_services.store)
        co_return;
    const RunningCommand running(*this);
    try {
        Organization organization = co_await m_services.store->call([](LocalLibraryStore& library) {
            return Organization{.tagSummaries = library.tagSummaries(),
                                .folderSummaries = library.folderSummaries(),
                                .rules = library.rules(),
                                .authorSummaries = library.authorSummaries()};
        });
        m_organization = std::move(organization);
        Q_EMIT organizationChanged();
    } catch (...) {
        fail(std::current_exception());
    }
}

} // namespace mirel
