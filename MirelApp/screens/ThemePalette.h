#pragma once

#include <QColor>
#include <QLatin1StringView>

#include <span>

namespace mirel {

// The colours of one theme by their roles. Every colour on the screen is one of these or derived from them.
struct ThemePalette
{
    QLatin1StringView name;
    bool isDark = false;
    QColor background;
    QColor surface;
    // Of menus, tooltips and other things that float.
    QColor raised;
    QColor border;
    QColor text;
    QColor secondary;
    QColor tertiary;
    QColor tint;

    // Text that stands on the tint.
    [[nodiscard]] QColor onTint() const;
    // The surface of a row under the pointer, and of the current row. `text` and `secondary` stand on them,
    // `tertiary` does not.
    [[nodiscard]] QColor hovered() const;
    [[nodiscard]] QColor current() const;
    // Status colours have one value for light themes and one for dark ones.
    [[nodiscard]] QColor warning() const;
    [[nodiscard]] QColor failure() const;
    [[nodiscard]] QColor success() const;
};

// All themes; the first is the light one, the second the dark one.
[[nodiscard]] std::span<const ThemePalette> themePalettes();

// What the contrast of a text has to reach.
inline constexpr double leastReadableContrast = 4.5;

// The WCAG contrast ratio of two opaque colours, 1 to 21.
[[nodiscard]] double contrastRatio(const QColor& one, const QColor& other);

// White where that has a contrast of at least 4.5 on `surface`, else near-black.
[[nodiscard]] QColor readableTextOn(const QColor& surface);

} // namespace mirel
