#pragma once

#include "records/AIInsightPurpose.h"

namespace mirel {

// The texts of the prompts, which the user can edit.
struct AIPromptPreferences
{
    static const QString defaultSharedGuardrails;
    static const QString defaultAutomaticLabel;
    static const QString defaultSummary;
    static const QString defaultAskSystem;

    QString sharedGuardrails = defaultSharedGuardrails;
    QString automaticLabel = defaultAutomaticLabel;
    QString summary = defaultSummary;
    QString askSystem = defaultAskSystem;

    // What an insight of that purpose is told: the texts that are not blank, each trimmed, with an empty
    // line between them. Empty when all are blank.
    [[nodiscard]] QString insightInstructions(AIInsightPurpose purpose) const;
    // What a question is told, in the same form.
    [[nodiscard]] QString askInstructions() const;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("sharedGuardrails", &AIPromptPreferences::sharedGuardrails),
            jsonField("automaticLabel", &AIPromptPreferences::automaticLabel),
            jsonField("summary", &AIPromptPreferences::summary),
            jsonField("askSystem", &AIPromptPreferences::askSystem),
        };
    }

    friend bool operator==(const AIPromptPreferences&, const AIPromptPreferences&) = default;
};

} // namespace mirel
