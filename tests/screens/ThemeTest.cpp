#include "testing/Printing.h"

#include "screens/Theme.h"

#include <gtest/gtest.h>

namespace mirel {

namespace {

constexpr double leastContrast = 4.5;

void expectReadable(const ThemePalette& palette, const char* role, const QColor& text, const char* place,
                    const QColor& surface)
{
    EXPECT_GE(contrastRatio(text, surface), leastContrast)
        << palette.name.data() << ": " << role << " on " << place;
}

} // namespace

TEST(Contrast, IsTwentyOneForBlackOnWhiteAndOneForTheSameColor)
{
    EXPECT_NEAR(contrastRatio(Qt::black, Qt::white), 21, 0.001);
    EXPECT_NEAR(contrastRatio(Qt::white, Qt::black), 21, 0.001);
    EXPECT_NEAR(contrastRatio(Qt::red, Qt::red), 1, 0.001);
}

TEST(Contrast, TextOnTheTintIsWhiteOnlyWhereThatIsReadable)
{
    EXPECT_EQ(readableTextOn(QColor(0x25, 0x63, 0xEB)), QColor(0xFF, 0xFF, 0xFF));
    EXPECT_EQ(readableTextOn(QColor(0x5B, 0x8C, 0xFF)), QColor(0x10, 0x12, 0x16));
}

TEST(ThemePalette, TextIsReadableOnEverySurfaceOfEveryTheme)
{
    ASSERT_EQ(themePalettes().size(), 10U);
    for (const ThemePalette& palette : themePalettes()) {
        const std::pair<const char*, QColor> plain[] = {
            {"background", palette.background}, {"surface", palette.surface}, {"raised", palette.raised}};
        for (const auto& [place, surface] : plain) {
            expectReadable(palette, "text", palette.text, place, surface);
            expectReadable(palette, "secondary", palette.secondary, place, surface);
            expectReadable(palette, "warning", palette.warning(), place, surface);
            expectReadable(palette, "failure", palette.failure(), place, surface);
            expectReadable(palette, "success", palette.success(), place, surface);
        }
        expectReadable(palette, "tertiary", palette.tertiary, "background", palette.background);
        expectReadable(palette, "tertiary", palette.tertiary, "surface", palette.surface);
        expectReadable(palette, "onTint", palette.onTint(), "tint", palette.tint);
    }
}

TEST(ThemePalette, TextIsReadableOnHoveredAndCurrentRows)
{
    for (const ThemePalette& palette : themePalettes()) {
        const std::pair<const char*, QColor> rows[] = {{"hovered", palette.hovered()},
                                                       {"current", palette.current()}};
        for (const auto& [place, surface] : rows) {
            expectReadable(palette, "text", palette.text, place, surface);
            expectReadable(palette, "secondary", palette.secondary, place, surface);
        }
    }
}

TEST(Theme, FollowsTheDesktopWhileItIsTheSystemTheme)
{
    DesktopSettings desktop{DesktopSettings::Values{}};
    Theme theme(desktop);
    int changes = 0;
    QObject::connect(&theme, &Theme::changed, &theme, [&changes] { ++changes; });
    EXPECT_EQ(theme.background(), QColor(0xF6, 0xF7, 0xF9));
    desktop.setValues({.isDark = true});
    EXPECT_TRUE(theme.isDark());
    EXPECT_EQ(theme.background(), QColor(0x15, 0x17, 0x1B));
    EXPECT_EQ(changes, 1);
}

TEST(Theme, StaysWhereTheUserPutIt)
{
    DesktopSettings desktop{DesktopSettings::Values{}};
    Theme theme(desktop);
    theme.setAppearance(QStringLiteral("sepia"));
    desktop.setValues({.isDark = true});
    EXPECT_EQ(theme.tint(), QColor(0x9A, 0x67, 0x00));
    theme.setAppearance(QStringLiteral("no such theme"));
    EXPECT_EQ(theme.appearance(), QStringLiteral("sepia"));
    theme.setAppearance(QStringLiteral("system"));
    EXPECT_TRUE(theme.isDark());
}

TEST(Theme, MovesNothingWhenTheDesktopAsksForReducedMotion)
{
    DesktopSettings desktop{DesktopSettings::Values{}};
    const Theme theme(desktop);
    EXPECT_EQ(theme.motion(), 150);
    desktop.setValues({.reducesMotion = true});
    EXPECT_EQ(theme.motion(), 0);
}

TEST(Theme, GivesEveryAuthorReadableInitials)
{
    DesktopSettings desktop{DesktopSettings::Values{}};
    const Theme theme(desktop);
    for (int authorID = 0; authorID < 200; ++authorID) {
        const QColor disc = theme.avatarColor(authorID);
        EXPECT_GE(contrastRatio(theme.readableOn(disc), disc), leastContrast) << authorID;
    }
    EXPECT_EQ(theme.avatarColor(7), theme.avatarColor(7));
    EXPECT_NE(theme.avatarColor(7), theme.avatarColor(8));
}

} // namespace mirel
