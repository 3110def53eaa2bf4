#include "records/AppPreferences.h"

namespace mirel {

AppPreferences::AppPreferences(Appearance newAppearance, bool newAutomaticLabels, bool newAIInsights,
                               bool newDeleteFromX, bool newIgnoreXFolders,
                               ThreadEnrichment newThreadEnrichment, qint64 newPageSize,
                               LibraryLayout newLibraryLayout,
                               ReaderSupplementLayout newReaderSupplementLayout, bool newAutomaticSync,
                               qint64 newAutomaticSyncIntervalHours, AIProviderKind newAIProvider,
                               QString newAIModel, QString newAIBaseURL, AIPromptPreferences newAIPrompts)
    : appearance(newAppearance)
    , automaticLabels(newAutomaticLabels)
    , aiInsights(newAIInsights)
    , deleteFromX(newDeleteFromX)
    , ignoreXFolders(newIgnoreXFolders)
    , threadEnrichment(newThreadEnrichment)
    , pageSize(std::clamp<qint64>(newPageSize, 10, 200))
    , libraryLayout(newLibraryLayout)
    , readerSupplementLayout(newReaderSupplementLayout)
    , automaticSync(newAutomaticSync)
    , automaticSyncIntervalHours(std::clamp<qint64>(newAutomaticSyncIntervalHours, 1, 24))
    , aiProvider(newAIProvider)
    , aiModel(std::move(newAIModel))
    , aiBaseURL(std::move(newAIBaseURL))
    , aiPrompts(std::move(newAIPrompts))
{
}

AppPreferences AppPreferences::fromJSON(const QJsonValue& json)
{
    const QJsonObject object = detail::objectFromJSON(json);
    const AppPreferences defaults;
    const auto provider = valueOr(object, "aiProvider", defaults.aiProvider);
    auto baseURL = valueOr(object, "aiBaseURL", defaults.aiBaseURL);
    auto model = valueOr(object, "aiModel", defaults.aiModel);
    if (provider == AIProviderKind::nousResearchAPI) {
        baseURL = suggestedBaseURL(provider);
        model = resolvedModel(provider, model);
    }
    return {
        valueOr(object, "appearance", defaults.appearance),
        valueOr(object, "automaticLabels", defaults.automaticLabels),
        valueOr(object, "aiInsights", defaults.aiInsights),
        valueOr(object, "deleteFromX", defaults.deleteFromX),
        valueOr(object, "ignoreXFolders", defaults.ignoreXFolders),
        valueOr(object, "threadEnrichment", defaults.threadEnrichment),
        valueOr(object, "pageSize", defaults.pageSize),
        valueOr(object, "libraryLayout", defaults.libraryLayout),
        valueOr(object, "readerSupplementLayout", defaults.readerSupplementLayout),
        valueOr(object, "automaticSync", defaults.automaticSync),
        valueOr(object, "automaticSyncIntervalHours", defaults.automaticSyncIntervalHours),
        provider,
        model,
        baseURL,
        valueOr(object, "aiPrompts", defaults.aiPrompts),
    };
}

QJsonValue AppPreferences::toJSON() const
{
    return QJsonObject{
        {QStringLiteral("appearance"), rawValue(appearance)},
        {QStringLiteral("automaticLabels"), automaticLabels},
        {QStringLiteral("aiInsights"), aiInsights},
        {QStringLiteral("deleteFromX"), deleteFromX},
        {QStringLiteral("ignoreXFolders"), ignoreXFolders},
        {QStringLiteral("threadEnrichment"), rawValue(threadEnrichment)},
        {QStringLiteral("pageSize"), pageSize},
        {QStringLiteral("libraryLayout"), rawValue(libraryLayout)},
        {QStringLiteral("readerSupplementLayout"), rawValue(readerSupplementLayout)},
        {QStringLiteral("automaticSync"), automaticSync},
        {QStringLiteral("automaticSyncIntervalHours"), automaticSyncIntervalHours},
        {QStringLiteral("aiProvider"), rawValue(aiProvider)},
        {QStringLiteral("aiModel"), aiModel},
        {QStringLiteral("aiBaseURL"), aiBaseURL},
        {QStringLiteral("aiPrompts"), mirel::toJSON(aiPrompts)},
    };
}

} // namespace mirel
