import QtQuick
import Mirel.Screens

// The public counters of a post, as far as somebody counted. Four items rather than a Repeater, which takes twice as
// long to make.
Row {
    id: counters

    required property var metrics
    property color color: Theme.secondary

    spacing: Measures.large

    Counter {
        symbol: "message-circle"
        count: counters.metrics.replies
        noun: "replies"
        color: counters.color
    }

    Counter {
        symbol: "repeat-2"
        count: counters.metrics.reposts
        noun: "reposts"
        color: counters.color
    }

    Counter {
        symbol: "heart"
        count: counters.metrics.likes
        noun: "likes"
        color: counters.color
    }

    Counter {
        symbol: "chart-no-axes-column"
        count: counters.metrics.views
        noun: "views"
        color: counters.color
    }
}
