// A circle that turns while something is being done.
import QtQuick
import Chatsum

Item {
    id: waiting

    property bool running: visible

    implicitWidth: 28
    implicitHeight: 28
    Accessible.role: Accessible.Indicator
    Accessible.name: qsTr("Please wait")

    Repeater {
        model: 8
        Rectangle {
            required property int index
            readonly property real angle: index * Math.PI / 4
            width: waiting.width / 6
            height: width
            radius: width / 2
            color: Theme.softText
            opacity: 0.2 + 0.8 * ((index - turn.step + 8) % 8) / 7
            x: waiting.width / 2 + Math.sin(angle) * (waiting.width / 2 - width / 2) - width / 2
            y: waiting.height / 2 - Math.cos(angle) * (waiting.height / 2 - width / 2) - width / 2
        }
    }
    Timer {
        id: turn
        property int step: 0
        interval: 110
        repeat: true
        running: waiting.running && Theme.moment > 0
        onTriggered: step = (step + 7) % 8
    }
}
