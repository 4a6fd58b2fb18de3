// A field for one line of text.
import QtQuick
import QtQuick.Controls.Basic
import Chatsum

TextField {
    id: field

    property string glyph: ""
    property bool wrong: false
    property bool clearable: false

    implicitHeight: Theme.control
    leftPadding: glyph === "" ? Theme.space + 4 : Theme.control
    rightPadding: clear.visible ? Theme.control : Theme.space + 4
    topPadding: 0
    bottomPadding: 0
    verticalAlignment: TextInput.AlignVCenter
    font.pixelSize: Theme.fontSize
    color: Theme.text
    placeholderTextColor: Theme.softText
    selectionColor: Theme.bubbleMine
    selectedTextColor: Theme.textOnAccent
    selectByMouse: true
    maximumLength: 2000  // of a text that was pasted by mistake; laying it out takes long
    activeFocusOnTab: true
    Accessible.name: placeholderText

    background: Rectangle {
        radius: Theme.radius
        color: Theme.raised
        border.width: field.activeFocus ? 2 : 1
        border.color: field.wrong ? Theme.danger : field.activeFocus ? Theme.focus : Theme.line
        Glyph {
            visible: field.glyph !== ""
            name: field.glyph
            color: Theme.softText
            width: Theme.fontSize + 2
            height: width
            anchors.verticalCenter: parent.verticalCenter
            x: (Theme.control - width) / 2
        }
    }
    GlyphButton {
        id: clear
        anchors.right: parent.right
        anchors.rightMargin: 3
        anchors.verticalCenter: parent.verticalCenter
        side: Theme.control - 8
        visible: field.clearable && field.text !== ""
        glyph: "close"
        text: qsTr("Clear", "what was typed")
        activeFocusOnTab: false
        onClicked: {
            field.clear()
            field.textEdited()
            field.forceActiveFocus()
        }
    }
}
