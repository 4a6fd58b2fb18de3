// What stands beside a thing that the mouse rests on. Names and paths are shown as they are, whatever they look like.
import QtQuick
import QtQuick.Controls.Basic
import Chatsum

ToolTip {
    id: tip

    delay: 600
    padding: Theme.space
    width: Math.min(implicitWidth, 480)
    closePolicy: Popup.CloseOnPressOutsideParent | Popup.CloseOnReleaseOutsideParent
    font.pixelSize: Theme.smallSize
    contentItem: Text {
        text: tip.text
        textFormat: Text.PlainText
        font: tip.font
        color: Theme.text
        wrapMode: Text.Wrap
        maximumLineCount: 12
        elide: Text.ElideRight
    }
    background: Rectangle {
        radius: Theme.radius
        color: Theme.raised
        border.width: 1
        border.color: Theme.line
    }
}
