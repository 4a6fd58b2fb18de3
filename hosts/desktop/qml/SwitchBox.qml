// A switch that is on or off.
import QtQuick
import QtQuick.Controls.Basic
import Chatsum

Switch {
    id: box

    padding: 0
    implicitWidth: 46
    implicitHeight: Theme.control
    Accessible.name: text
    Accessible.onPressAction: flip()
    Accessible.onToggleAction: flip()

    function flip() {
        toggle()
        toggled()
    }

    indicator: Rectangle {
        anchors.verticalCenter: parent.verticalCenter
        width: 46
        height: 26
        radius: 13
        color: box.checked ? Theme.bubbleMine : Theme.hover
        border.width: box.checked ? 0 : 1
        border.color: Theme.softText
        Rectangle {
            x: box.visualPosition * (parent.width - width - 6) + 3
            anchors.verticalCenter: parent.verticalCenter
            width: 20
            height: 20
            radius: 10
            color: box.checked ? Theme.textOnAccent : Theme.softText
            Behavior on x { enabled: Theme.moment > 0; NumberAnimation { duration: Theme.moment } }
        }
        FocusRing { shown: box.visualFocus; radius: 15 }
    }
    contentItem: Item {}
}
