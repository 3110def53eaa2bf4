#pragma once

#include "records/AIPromptPreferences.h"
#include "records/AIProviderKind.h"

namespace mirel {

// All settings of the user that are no secrets.
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

    friend bool operator==(const AppPreferences&, const AppPreferences&) = default;
};

} // namespace mirel
