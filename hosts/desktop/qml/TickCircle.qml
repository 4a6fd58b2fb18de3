// Whether a row is ticked.
import QtQuick
import Chatsum

Rectangle {
    id: circle

    property bool ticked: false

    width: Theme.fontSize + 6
    height: width
    radius: width / 2
    color: ticked ? Theme.bubbleMine : "transparent"
    border.width: ticked ? 0 : 1.5
    border.color: Theme.softText
    Accessible.ignored: true

    Glyph {
        anchors.fill: parent
        anchors.margins: 3
        visible: circle.ticked
        name: "check"
        color: Theme.textOnAccent
    }
}
