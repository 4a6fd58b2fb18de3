// A setting: what it is and what it is for at the left, its control at the right.
import QtQuick
import QtQuick.Layouts
import Chatsum

Rectangle {
    id: row

    property string title: ""
    property string about: ""
    default property alias control: holder.data

    Layout.fillWidth: true
    implicitHeight: Math.max(words.implicitHeight, holder.implicitHeight) + 2 * (Theme.space + 4)
    radius: Theme.radius
    color: Theme.pane

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: Theme.wide
        anchors.rightMargin: Theme.wide
        spacing: Theme.wide
        ColumnLayout {
            id: words
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
