// The initials of a person, or the sign of a group, in a circle whose colour stays with the name.
import QtQuick
import Chatsum

Rectangle {
    id: avatar

    property string initials: ""
    property string name: ""
    property bool isGroup: false
    property int side: 42

    readonly property real hue: {
        let sum = 0
        for (let i = 0; i < name.length; ++i) sum = (sum * 31 + name.charCodeAt(i)) % 360
        return sum / 360
    }

    implicitWidth: side
    implicitHeight: side
    radius: side / 2
    color: Theme.dark ? Qt.hsla(hue, 0.32, 0.34, 1) : Qt.hsla(hue, 0.42, 0.86, 1)
    Accessible.ignored: true

    readonly property color ink: Theme.dark ? Qt.hsla(hue, 0.5, 0.9, 1) : Qt.hsla(hue, 0.55, 0.25, 1)

    Text {
        anchors.centerIn: parent
        visible: !sign.visible
        text: avatar.initials
        textFormat: Text.PlainText
        color: avatar.ink
        font.pixelSize: Math.round(avatar.side * 0.36)
        font.weight: Font.DemiBold
    }
    Glyph {
        id: sign
        anchors.centerIn: parent
        visible: avatar.isGroup || avatar.initials === ""
        width: Math.round(avatar.side * 0.58)
        height: width
        name: avatar.isGroup ? "people" : "messages"
        color: avatar.ink
    }
}
