#include "mirelctl/StatusCommand.h"

#include "mirelctl/Library.h"
#include "mirelctl/SyncRunText.h"
#include "mirelctl/TextOutput.h"

#include <QEventLoop>
#include <QTimer>

namespace mirel {

namespace {

constexpr int labelWidth = 12;

// Whether X works; absent when there was no answer in time.
std::optional<bool> xConfigured(MirelAppModel& model, std::chrono::milliseconds patience)
{
    QEventLoop loop;
    bool isAnswered = false;
    QObject::connect(&model, &MirelAppModel::xConfiguredChanged, &loop, [&] {
        isAnswered = true;
        loop.quit();
    });
    model.refreshCredentialState();
    if (!isAnswered) {
        QTimer::singleShot(patience, &loop, &QEventLoop::quit);
        loop.exec();
    }
    if (!isAnswered)
        return std::nullopt;
    return model.xConfigured();
}

QString runText(const SyncRun& run)
{
    return QStringLiteral("%1, %2: %3")
        .arg(timeText(run.completedAt.value_or(run.createdAt)), statusText(run), outcomeText(run));
}

QString countsText(const LibraryCounts& counts)
{
    return QStringLiteral("%1 (inbox %2, read %3, favorites %4, archive %5)")
        .arg(counts.all)
        .arg(counts.inbox)
        .arg(counts.read)
        .arg(counts.favorites)
        .arg(counts.archive);
}

QString xText(std::optional<bool> isConfigured, std::chrono::milliseconds patience)
{
    if (!isConfigured)
        return QStringLiteral("no answer within %1 seconds")
            .arg(std::chrono::duration<double>(patience).count());
    return *isConfigured ? QStringLiteral("connected")
                         : QStringLiteral("not connected, or not reachable at the moment");
}

QString line(const QString& label, const QString& text)
{
    return paddedToWidth(label, labelWidth) + oneLine(text) + u'\n';
}

} // namespace

QByteArray StatusCommand::run(MirelAppModel& model, const CommandSurroundings& surroundings) const
{
    requireLibrary(model);
    blockOn(model.refreshLibrary());
    requireNoFailure(model);
    blockOn(model.refreshSyncRuns());
    requireNoFailure(model);
    const auto isConfigured = xConfigured(model, surroundings.patience);
    const QList<SyncRun>& runs = model.syncRuns();
    if (surroundings.json) {
        return writeJSON(QJsonObject{
                   {QStringLiteral("counts"), toJSON(model.counts())},
                   {QStringLiteral("lastRun"), runs.isEmpty() ? QJsonValue() : toJSON(runs.first())},
                   {QStringLiteral("libraryPath"), surroundings.libraryPath},
                   {QStringLiteral("xConfigured"), isConfigured.value_or(false)},
               }) +
               '\n';
    }
    return (line(QStringLiteral("Library"), surroundings.libraryPath) +
            line(QStringLiteral("Bookmarks"), countsText(model.counts())) +
            line(QStringLiteral("Last sync"),
                 runs.isEmpty() ? QStringLiteral("never") : runText(runs.first())) +
            line(QStringLiteral("X"), xText(isConfigured, surroundings.patience)))
        .toUtf8();
}

} // namespace mirel
