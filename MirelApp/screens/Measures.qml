pragma Singleton

import QtQuick
import Mirel.Screens

// Sizes of type and of space. Type and what holds it follow the user's font scale.
QtObject {
    readonly property real scale: Theme.textScale

    readonly property int metaText: Math.round(11 * scale)
    readonly property int controlText: Math.round(13 * scale)
    readonly property int postText: Math.round(15 * scale)
    readonly property int readingText: Math.round(17 * scale)
    readonly property int titleText: Math.round(20 * scale)

    // The heights of lines, whatever the script: 1.35 times the size of the type in lists, 1.55 when reading.
    readonly property int controlLine: Math.ceil(controlText * 1.35)
    readonly property int postLine: Math.ceil(postText * 1.35)
    readonly property int titleLine: Math.ceil(titleText * 1.35)
    readonly property int readingLine: Math.ceil(readingText * 1.55)

    readonly property int emphasis: Font.Medium
    readonly property int strong: Font.DemiBold

    readonly property int tiny: 4
    readonly property int small: 8
    readonly property int medium: 12
    readonly property int large: 16
    readonly property int huge: 24

    readonly property int hairline: 1
    readonly property int controlRadius: 6
    readonly property int cardRadius: 10
    readonly property int focusRing: 2

    readonly property int smallIcon: Math.round(16 * scale)
    readonly property int icon: Math.round(20 * scale)
    readonly property int largeIcon: Math.round(40 * scale)

    readonly property int controlHeight: Math.round(32 * scale)
    readonly property int barHeight: Math.round(56 * scale)
    readonly property int avatar: Math.round(40 * scale)
    readonly property int thumbnailWidth: Math.round(112 * scale)
    readonly property int thumbnailHeight: Math.round(84 * scale)

    // In rows that are narrower than `roomyRow`.
    readonly property int roomyRow: Math.round(560 * scale)
    readonly property int smallThumbnailWidth: Math.round(80 * scale)
    readonly property int smallThumbnailHeight: Math.round(60 * scale)

    readonly property int sidebarWidth: Math.round(216 * scale)
    readonly property int foldedSidebarWidth: Math.round(56 * scale)
    // Below this width of the window the sidebar folds.
    readonly property int foldingWidth: Math.round(960 * scale)
    // Below this height the sidebar has no headings.
    readonly property int roomySidebar: Math.round(560 * scale)
    readonly property int widestList: Math.round(880 * scale)
    // Of the list beside a preview; without room for both there is no preview.
    readonly property int narrowestListColumn: Math.round(360 * scale)
    readonly property int listColumn: Math.round(440 * scale)
    readonly property int widestListColumn: Math.round(520 * scale)
    readonly property int narrowestPreview: Math.round(400 * scale)
    readonly property int headerTitle: Math.round(120 * scale)
    readonly property int searchWidth: Math.round(400 * scale)
    readonly property int narrowestSearch: Math.round(120 * scale)
    // Below this width of a header its controls are icons.
    readonly property int roomyHeader: Math.round(760 * scale)
    // Of what stands over the window. Below `roomySheet` its columns stand one below the other.
    readonly property int widestSheet: Math.round(880 * scale)
    readonly property int formWidth: Math.round(600 * scale)
    readonly property int questionWidth: Math.round(460 * scale)
    readonly property int roomySheet: Math.round(680 * scale)
    readonly property int runColumn: Math.round(272 * scale)
    readonly property int tallestPicture: Math.round(480 * scale)
    readonly property int readingWidth: Math.round(680 * scale)
}
