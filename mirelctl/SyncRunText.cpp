#include "mirelctl/SyncRunText.h"

namespace mirel {

QString statusText(const SyncRun& run)
{
    return rawValue(run.status).replace(u'_', u' ');
}

QString outcomeText(const SyncRun& run)
{
    const QString counters =
        QStringLiteral("%1 pages, %2 received, %3 new").arg(run.pages).arg(run.fetched).arg(run.created);
    return run.errorMessage ? counters + QStringLiteral(". ") + *run.errorMessage : counters;
}

} // namespace mirel
