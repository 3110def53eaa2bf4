#pragma once

#include "records/AIPromptPreferences.h"
#include "records/AIProviderKind.h"

namespace mirel {

// All settings of the user that are no secrets.
//
// In JSON every key may be missing or null, and the field then has its default; a value of the wrong type and
// an unknown text are errors. Numbers out of bounds are clamped. Nous Research has but one address, and a
// model of that provider is resolved.
struct AppPreferences
{
    enum class Appearance {
        system,
        light,
        dark,
        codex,
        midnight,
        sepia,
        dracula,
        solarized,
        catppuccin,
        nightOwl,
        monokai
    };
    enum class ThreadEnrichment { automatic, onDemand };
    enum class LibraryLayout { list, grid };
    enum class ReaderSupplementLayout { sidebar, inlined };

    AppPreferences() = default;
    // Clamps `pageSize` and `automaticSyncIntervalHours` into their bounds.
    AppPreferences(Appearance newAppearance, bool newAutomaticLabels, bool newAIInsights, bool newDeleteFromX,
                   bool newIgnoreXFolders, ThreadEnrichment newThreadEnrichment, qint64 newPageSize,
                   LibraryLayout newLibraryLayout, ReaderSupplementLayout newReaderSupplementLayout,
                   bool newAutomaticSync, qint64 newAutomaticSyncIntervalHours, AIProviderKind newAIProvider,
                   QString newAIModel, QString newAIBaseURL, AIPromptPreferences newAIPrompts);

    Appearance appearance = Appearance::system;
    bool automaticLabels = true;
    bool aiInsights = false;
    bool deleteFromX = true;
    bool ignoreXFolders = false;
    ThreadEnrichment threadEnrichment = ThreadEnrichment::onDemand;
    // Bookmarks on a page, 10 to 200.
    qint64 pageSize = 50;
    LibraryLayout libraryLayout = LibraryLayout::list;
    ReaderSupplementLayout readerSupplementLayout = ReaderSupplementLayout::sidebar;
    bool automaticSync = true;
    // 1 to 24.
    qint64 automaticSyncIntervalHours = 24;
    AIProviderKind aiProvider = AIProviderKind::openAI;
    QString aiModel = suggestedModel(AIProviderKind::openAI);
    QString aiBaseURL = suggestedBaseURL(AIProviderKind::openAI);
    AIPromptPreferences aiPrompts;

    // Throws JSONCodingError.
    [[nodiscard]] static AppPreferences fromJSON(const QJsonValue& json);
    // With every key.
    [[nodiscard]] QJsonValue toJSON() const;

    friend bool operator==(const AppPreferences&, const AppPreferences&) = default;
};

// In the order of the cases.
[[nodiscard]] constexpr auto rawValues(AppPreferences::Appearance)
{
    using enum AppPreferences::Appearance;
    return std::array{
        RawValue{system, QLatin1StringView("system")},
        RawValue{light, QLatin1StringView("light")},
        RawValue{dark, QLatin1StringView("dark")},
        RawValue{codex, QLatin1StringView("codex")},
        RawValue{midnight, QLatin1StringView("midnight")},
        RawValue{sepia, QLatin1StringView("sepia")},
        RawValue{dracula, QLatin1StringView("dracula")},
        RawValue{solarized, QLatin1StringView("solarized")},
        RawValue{catppuccin, QLatin1StringView("catppuccin")},
        RawValue{nightOwl, QLatin1StringView("night_owl")},
        RawValue{monokai, QLatin1StringView("monokai")},
    };
}

[[nodiscard]] constexpr auto rawValues(AppPreferences::ThreadEnrichment)
{
    using enum AppPreferences::ThreadEnrichment;
    return std::array{
        RawValue{automatic, QLatin1StringView("automatic")},
        RawValue{onDemand, QLatin1StringView("on_demand")},
    };
}

[[nodiscard]] constexpr auto rawValues(AppPreferences::LibraryLayout)
{
    using enum AppPreferences::LibraryLayout;
    return std::array{
        RawValue{list, QLatin1StringView("list")},
        RawValue{grid, QLatin1StringView("grid")},
    };
}

[[nodiscard]] constexpr auto rawValues(AppPreferences::ReaderSupplementLayout)
{
    using enum AppPreferences::ReaderSupplementLayout;
    return std::array{
        RawValue{sidebar, QLatin1StringView("sidebar")},
        RawValue{inlined, QLatin1StringView("inline")},
    };
}

} // namespace mirel
