// The line around what has the keyboard. It stands outside of what it surrounds.
import QtQuick
import Chatsum

Rectangle {
    property bool shown: false
    property real gap: 2

    anchors.fill: parent
    anchors.margins: -gap
    radius: Theme.radius + gap
    color: "transparent"
    border.width: 2
    border.color: Theme.focus
    visible: shown
    z: 1
}
