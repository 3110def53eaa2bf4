#include "model/SyncChecks.h"

namespace mirel {

SyncChecks::SyncChecks(MirelAppModel& model, Pause& pause)
    : m_model(model)
    , m_pause(pause)
{
}

QCoro::Task<> SyncChecks::run()
{
    while (!m_hasEnded) {
        co_await m_pause.lastFor(period);
        co_await m_model.syncIfDue();
    }
}

void SyncChecks::end()
{
    m_hasEnded = true;
    m_pause.interrupt();
}

} // namespace mirel
