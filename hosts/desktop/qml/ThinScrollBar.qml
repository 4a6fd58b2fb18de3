// A scroll bar that takes little room and can be grabbed.
import QtQuick
import QtQuick.Controls.Basic
import Chatsum

ScrollBar {
    id: bar

    minimumSize: 0.06
    padding: 2
    policy: ScrollBar.AsNeeded
    contentItem: Rectangle {
        implicitWidth: 8
        implicitHeight: 8
        radius: 4
        color: Theme.softText
        opacity: bar.size >= 1 ? 0 : bar.pressed ? 0.8 : bar.hovered ? 0.6 : 0.35
    }
    background: null
}
