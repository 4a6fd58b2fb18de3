// A setting: what it is and what it is for at the left, its control at the right, or below where it is too wide.
import QtQuick
import QtQuick.Layouts
import Chatsum

Rectangle {
    id: row

    property string title: ""
    property string about: ""
    default property alias control: holder.data

    Layout.fillWidth: true
    implicitHeight: grid.implicitHeight + 2 * (Theme.space + 4)
    radius: Theme.radius
    color: Theme.pane

    GridLayout {
        id: grid
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        anchors.leftMargin: Theme.wide
        anchors.rightMargin: Theme.wide
        columns: holder.implicitWidth <= 0.6 * width ? 2 : 1
        columnSpacing: Theme.wide
        rowSpacing: Theme.space
        ColumnLayout {
            spacing: 2
            Words {
                Layout.fillWidth: true
                text: row.title
                wrapMode: Text.Wrap
            }
            Words {
                Layout.fillWidth: true
                visible: text !== ""
                text: row.about
                wrapMode: Text.Wrap
                soft: true
                font.pixelSize: Theme.smallSize
            }
        }
        RowLayout {
            id: holder
            spacing: 0
        }
    }
}
