// The lines of a text report.
import QtQuick
import QtQuick.Controls.Basic
import Chatsum

ListView {
    id: list

    function move(by) {
        const most = Math.max(originY - topMargin, originY + contentHeight + bottomMargin - height)
        contentY = Math.min(most, Math.max(originY - topMargin, contentY + by))
    }

    objectName: "previewText"
    focus: true
    clip: true
    reuseItems: true
    boundsBehavior: Flickable.StopAtBounds
    topMargin: Theme.space
    bottomMargin: Theme.wide
    model: Preview.textModel
    Accessible.role: Accessible.Document
    Accessible.name: Preview.name

    delegate: Words {
        required property string line
        x: Theme.wide
        width: list.width - 2 * Theme.wide
        topPadding: 3
        bottomPadding: 3
        text: line
        wrapMode: Text.Wrap
    }
    ScrollBar.vertical: ThinScrollBar { }
    Keys.onPressed: event => {
        event.accepted = true
        if (event.key === Qt.Key_Down) move(Theme.control)
        else if (event.key === Qt.Key_Up) move(-Theme.control)
        else if (event.key === Qt.Key_PageDown || event.key === Qt.Key_Space) move(height * 0.9)
        else if (event.key === Qt.Key_PageUp) move(-height * 0.9)
        else if (event.key === Qt.Key_Home) positionViewAtBeginning()
        else if (event.key === Qt.Key_End) positionViewAtEnd()
        else event.accepted = false
    }
}
