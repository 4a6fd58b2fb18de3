// The line above what stands in the middle: whose it is at the left, what can be done with it at the right.
import QtQuick
import QtQuick.Layouts
import Chatsum

Rectangle {
    id: header

    property string title: ""
    property string subtitle: ""
    property string initials: ""
    property bool isGroup: false
    property bool hasAvatar: true
    default property alias buttons: actions.data

    implicitHeight: 64
    color: Theme.window

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: Theme.wide
        anchors.rightMargin: Theme.wide
        spacing: Theme.space + 4
        Avatar {
            visible: header.hasAvatar
            initials: header.initials
            name: header.title
            isGroup: header.isGroup
            side: 40
        }
        ColumnLayout {
            spacing: 2
            Words {
                Layout.fillWidth: true
                text: header.title
                elide: Text.ElideRight
                maximumLineCount: 1
                font.pixelSize: Theme.largeSize
                font.weight: Font.DemiBold
                Accessible.role: Accessible.Heading
            }
            Words {
                Layout.fillWidth: true
                visible: text !== ""
                text: header.subtitle
                elide: Text.ElideRight
                maximumLineCount: 1
                soft: true
                font.pixelSize: Theme.smallSize
            }
        }
        RowLayout {
            id: actions
            spacing: Theme.space
        }
    }
    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: 1
        color: Theme.line
    }
}
