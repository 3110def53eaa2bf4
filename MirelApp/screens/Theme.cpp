#include "screens/Theme.h"

#include <algorithm>
#include <cmath>

namespace mirel {

namespace {

constexpr auto desktopProperty = "mirelDesktopSettings";

const ThemePalette* paletteNamed(const QString& name)
{
    const auto palettes = themePalettes();
    const auto found =
        std::find_if(palettes.begin(), palettes.end(), [&](const auto& each) { return each.name == name; });
    return found == palettes.end() ? nullptr : &*found;
}

} // namespace

Theme::Theme(DesktopSettings& desktop, QObject* parent)
    : QObject(parent)
    , m_desktop(desktop)
{
    choosePalette();
    connect(&m_desktop, &DesktopSettings::changed, this, &Theme::choosePalette);
}

void Theme::setDesktop(QQmlEngine& engine, DesktopSettings& desktop)
{
    engine.setProperty(desktopProperty, QVariant::fromValue<QObject*>(&desktop));
}

Theme* Theme::create(QQmlEngine* engine, QJSEngine*)
{
    auto* const desktop = qobject_cast<DesktopSettings*>(engine->property(desktopProperty).value<QObject*>());
    Q_ASSERT(desktop);
    return new Theme(*desktop, engine);
}

QColor Theme::avatarColor(double authorID) const
{
    // Steps of the golden ratio keep neighbouring ids apart on the colour wheel.
    constexpr double goldenRatio = 0.618033988749895;
    const auto hue = static_cast<float>(std::fmod(std::abs(authorID) * goldenRatio, 1.0));
    float lightness = isDark() ? 0.36F : 0.42F;
    QColor color = QColor::fromHslF(hue, 0.42F, lightness);
    while (contrastRatio(readableTextOn(color), color) < leastReadableContrast) {
        lightness -= 0.02F;
        color = QColor::fromHslF(hue, 0.42F, lightness);
    }
    return color;
}

QColor Theme::readableOn(const QColor& surface) const
{
    return readableTextOn(surface);
}

QColor Theme::labelColor(const QString& hex) const
{
    const QColor color(hex);
    return color.isValid() ? color : tertiary();
}

void Theme::setAppearance(const QString& appearance)
{
    if (appearance != QStringLiteral("system") && !paletteNamed(appearance))
        return;
    m_appearance = appearance;
    choosePalette();
}

void Theme::choosePalette()
{
    const bool followsDesktop = m_appearance == QStringLiteral("system");
    const auto palettes = themePalettes();
    m_palette = followsDesktop ? &palettes[m_desktop.values().isDark ? 1 : 0] : paletteNamed(m_appearance);
    Q_EMIT changed();
}

} // namespace mirel
