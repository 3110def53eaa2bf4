#include "mirelctl/SyncCommand.h"

#include "mirelctl/InterruptibleCommand.h"
#include "mirelctl/Library.h"

namespace mirel {

namespace {

// One line that is rewritten with every page, and is gone when the sync ends.
class ProgressLine
{
public:
    ProgressLine(MirelAppModel& model, std::function<void(const QByteArray&)> show)
        : m_show(std::move(show))
    {
        if (!m_show)
            return;
        m_connection = QObject::connect(&model, &MirelAppModel::syncChanged, &model, [this, source = &model] {
            if (source->syncProgress())
                rewrite(*source->syncProgress());
        });
    }
    ~ProgressLine()
    {
        QObject::disconnect(m_connection);
        if (m_show)
            m_show("\r\x1b[K");
    }
    Q_DISABLE_COPY_MOVE(ProgressLine)

private:
    void rewrite(const BookmarkSyncProgress& progress)
    {
        const QString line = progress.pages == 0 ? QStringLiteral("Asking X for the first page...")
                                                 : QStringLiteral("Page %1: %2 received, %3 new")
                                                       .arg(progress.pages)
                                                       .arg(progress.fetched)
                                                       .arg(progress.created);
        m_show("\r" + line.toUtf8() + "\x1b[K");
    }

    std::function<void(const QByteArray&)> m_show;
    QMetaObject::Connection m_connection;
};

// Runs the sync until it has ended. Returns whether it was interrupted.
bool runSync(MirelAppModel& model, const SyncCommand& command, const CommandSurroundings& surroundings)
{
    const ProgressLine progressLine(model, surroundings.showProgress);
    return runInterruptibly(model, [&] { return model.syncNow({}, command.full); });
}

} // namespace

QByteArray SyncCommand::run(MirelAppModel& model, const CommandSurroundings& surroundings) const
{
    requireLibrary(model);
    // The number of bookmarks decides the kind of the run.
    blockOn(model.refreshLibrary());
    requireNoFailure(model);
    const bool isInterrupted = runSync(model, *this, surroundings);
    if (isInterrupted && !model.lastSyncSummary())
        throw CommandError(
            QStringLiteral("The sync was interrupted; all that had arrived is in the library."));
    requireNoFailure(model);
    if (!model.lastSyncSummary())
        throw CommandError(QStringLiteral("The sync is unavailable."));
    if (surroundings.json)
        return encodeJSON(*model.lastSyncSummary()) + '\n';
    return model.statusMessage().value_or(QString()).toUtf8() + '\n';
}

} // namespace mirel
