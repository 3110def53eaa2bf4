#include "screens/ThemePalette.h"

#include <array>
#include <cmath>

namespace mirel {

namespace {

constexpr QColor color(QRgb value)
{
    return QColor(qRed(value), qGreen(value), qBlue(value));
}

constexpr std::array palettes{
    ThemePalette{QLatin1StringView("light"), false, color(0xF6F7F9), color(0xFFFFFF), color(0xFFFFFF),
                 color(0xE1E4EA), color(0x16181D), color(0x545B68), color(0x686F7E), color(0x2563EB)},
    ThemePalette{QLatin1StringView("dark"), true, color(0x15171B), color(0x1C1F24), color(0x24282F),
                 color(0x313640), color(0xE8EAEE), color(0xA6ADB9), color(0x828A98), color(0x5B8CFF)},
    ThemePalette{QLatin1StringView("codex"), true, color(0x0F1513), color(0x151D1A), color(0x1C2622),
                 color(0x2A3832), color(0xE6EDEA), color(0xA3B3AC), color(0x7E9088), color(0x2DBA8C)},
    ThemePalette{QLatin1StringView("midnight"), true, color(0x16161E), color(0x1A1B26), color(0x222436),
                 color(0x313654), color(0xC8D3F5), color(0xA0A9CF), color(0x7C86B3), color(0x7AA2F7)},
    ThemePalette{QLatin1StringView("sepia"), false, color(0xF7F0DF), color(0xFBF6EA), color(0xFFFCF4),
                 color(0xDFD2B4), color(0x3B2F1E), color(0x665640), color(0x76654B), color(0x9A6700)},
    ThemePalette{QLatin1StringView("dracula"), true, color(0x21222C), color(0x282A36), color(0x323544),
                 color(0x44475A), color(0xF8F8F2), color(0xC2C4D3), color(0x8E94B8), color(0xBD93F9)},
    ThemePalette{QLatin1StringView("solarized"), true, color(0x002B36), color(0x073642), color(0x0B3F4D),
                 color(0x17505F), color(0xE6E1CF), color(0xA9B8B8), color(0x8FA3A6), color(0x2AA198)},
    ThemePalette{QLatin1StringView("catppuccin"), true, color(0x181825), color(0x1E1E2E), color(0x27273A),
                 color(0x3A3B52), color(0xCDD6F4), color(0xA6ADC8), color(0x8389A6), color(0xCBA6F7)},
    ThemePalette{QLatin1StringView("nightOwl"), true, color(0x010E1A), color(0x011627), color(0x0B2239),
                 color(0x1D3B58), color(0xD6DEEB), color(0xA3B4CB), color(0x7389A5), color(0x82AAFF)},
    ThemePalette{QLatin1StringView("monokai"), true, color(0x272822), color(0x2E2F28), color(0x383930),
                 color(0x4A4B41), color(0xF8F8F2), color(0xC3C3B4), color(0x9C9C8B), color(0xA6E22E)},
};

double linear(double channel)
{
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double relativeLuminance(const QColor& color)
{
    return 0.2126 * linear(static_cast<double>(color.redF())) +
           0.7152 * linear(static_cast<double>(color.greenF())) +
           0.0722 * linear(static_cast<double>(color.blueF()));
}

QColor mixed(const QColor& base, const QColor& added, double share)
{
    const auto channel = [share](int from, int to) { return qRound(from + (to - from) * share); };
    return QColor(channel(base.red(), added.red()), channel(base.green(), added.green()),
                  channel(base.blue(), added.blue()));
}

} // namespace

std::span<const ThemePalette> themePalettes()
{
    return palettes;
}

QColor ThemePalette::onTint() const
{
    return readableTextOn(tint);
}

QColor ThemePalette::hovered() const
{
    return mixed(surface, text, 0.04);
}

QColor ThemePalette::current() const
{
    return mixed(surface, tint, 0.10);
}

QColor ThemePalette::warning() const
{
    return isDark ? color(0xF2B84B) : color(0x8A5300);
}

QColor ThemePalette::failure() const
{
    return isDark ? color(0xFF8F86) : color(0xB3261E);
}

QColor ThemePalette::success() const
{
    return isDark ? color(0x62CF93) : color(0x17693B);
}

double contrastRatio(const QColor& one, const QColor& other)
{
    const auto [darker, lighter] = std::minmax({relativeLuminance(one), relativeLuminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

QColor readableTextOn(const QColor& surface)
{
    constexpr QColor white = color(0xFFFFFF);
    constexpr QColor nearBlack = color(0x101216);
    return contrastRatio(white, surface) >= leastReadableContrast ? white : nearBlack;
}

} // namespace mirel
