#include "records/AIPromptPreferences.h"

#include "support/Text.h"

#include <QStringList>

namespace mirel {

namespace {

QString joined(const QStringList& texts)
{
    QStringList rest;
    for (const QString& text : texts) {
        if (const auto instruction = nilIfBlank(QStringView(text)))
            rest.append(*instruction);
    }
    return rest.join(QStringLiteral("\n\n"));
}

} // namespace

const QString AIPromptPreferences::defaultSharedGuardrails =
    QStringLiteral("Use only the supplied bookmark content and local context. Be accurate, concise, and "
                   "transparent when information is missing. Never invent facts.");
const QString AIPromptPreferences::defaultAutomaticLabel =
    QStringLiteral("Suggest a short list of useful, specific labels. Prefer exact names from the supplied "
                   "existing-label list when they fit, and propose concise new labels when needed.");
const QString AIPromptPreferences::defaultSummary = QStringLiteral(
    "Summarize the bookmark accurately and concisely, then identify its single most useful key idea.");
const QString AIPromptPreferences::defaultAskSystem = QStringLiteral(
    "Answer the question only from the supplied local sources. If the sources are insufficient, "
    "say so. Cite only source IDs that directly support the answer.");

QString AIPromptPreferences::insightInstructions(AIInsightPurpose purpose) const
{
    switch (purpose) {
    case AIInsightPurpose::summary:
        return joined({sharedGuardrails, summary});
    case AIInsightPurpose::automaticLabel:
        return joined({sharedGuardrails, automaticLabel});
    case AIInsightPurpose::combined:
        return joined({sharedGuardrails, summary, automaticLabel});
    }
    Q_UNREACHABLE();
}

QString AIPromptPreferences::askInstructions() const
{
    return joined({sharedGuardrails, askSystem});
}

} // namespace mirel
