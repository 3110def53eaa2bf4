import QtQuick
import Mirel.Screens

// What the status of a sync means to the user; "" is that of no sync.
QtObject {
    required property string status
    readonly property bool isTrouble: status === "failed" || status === "rate_limited"
    readonly property color color: {
        switch (status) {
        case "failed":
            return Theme.failure;
        case "rate_limited":
            return Theme.warning;
        case "completed":
            return Theme.success;
        }
        return Theme.secondary;
    }
}
