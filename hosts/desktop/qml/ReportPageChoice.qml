// A row that leads to a question: what is asked at the left, the present answer at the right.
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Chatsum

ItemDelegate {
    id: row

    property string detail: ""
    property bool isCurrent: false

    implicitHeight: Theme.control + 2 * Theme.space
    leftPadding: Theme.space + 4
    rightPadding: Theme.space + 4
    focusPolicy: Qt.NoFocus
    Accessible.role: Accessible.ListItem
    Accessible.name: text + ": " + detail
    Accessible.onPressAction: clicked()

    contentItem: RowLayout {
        spacing: Theme.space
        Words {
            Layout.fillWidth: true
            text: row.text
            elide: Text.ElideRight
            Accessible.ignored: true
        }
        Words {
            text: row.detail
            soft: true
            Accessible.ignored: true
        }
        Glyph {
            name: "forward"
            color: Theme.softText
            Layout.preferredWidth: Theme.fontSize
            Layout.preferredHeight: Theme.fontSize
        }
    }
    background: Rectangle {
        radius: Theme.radius
        color: row.down || row.hovered ? Theme.hover : Theme.pane
        FocusRing { shown: row.isCurrent; gap: -2 }
    }
}
