// A box that is ticked or not.
import QtQuick
import QtQuick.Controls.Basic
import Chatsum

CheckBox {
    id: box

    implicitHeight: Theme.control
    padding: 0
    spacing: Theme.space
    font.pixelSize: Theme.fontSize
    Accessible.name: text
    Accessible.onPressAction: flip()
    Accessible.onToggleAction: flip()

    function flip() {
        toggle()
        toggled()
    }

    indicator: Rectangle {
        anchors.verticalCenter: parent.verticalCenter
        width: Theme.fontSize + 5
        height: width
        radius: 5
        color: box.checked ? Theme.bubbleMine : Theme.raised
        border.width: box.checked ? 0 : 1.5
        border.color: box.hovered ? Theme.text : Theme.softText
        Glyph {
            anchors.fill: parent
            anchors.margins: 2
            visible: box.checked
            name: "check"
            color: Theme.textOnAccent
        }
        FocusRing { shown: box.visualFocus }
    }
    contentItem: Text {
        leftPadding: box.indicator.width + (text === "" ? 0 : box.spacing)
        text: box.text
        textFormat: Text.PlainText
        font: box.font
        color: Theme.text
        verticalAlignment: Text.AlignVCenter
    }
}
