// One conversation: its people, when it was last written in, and how much.
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Chatsum

ItemDelegate {
    id: row

    required property int index
    required property string guid
    required property string name
    required property string members
    required property string lastText
    required property string count
    required property bool isGroup
    required property string initials
    property bool selected: false

    readonly property string amount: qsTr("%Ln message(s)", "", Number(count))

    leftPadding: Theme.space + 4
    rightPadding: Theme.wide
    topPadding: Theme.space + 2
    bottomPadding: Theme.space + 2
    hoverEnabled: true
    focusPolicy: Qt.NoFocus  // the list has the keyboard
    Accessible.role: Accessible.ListItem
    Accessible.name: [name, amount, lastText].filter(part => part !== "").join(", ")
    Accessible.description: members
    Accessible.selectable: true
    Accessible.selected: selected
    Accessible.onPressAction: clicked()

    contentItem: RowLayout {
        spacing: Theme.space + 4
        Avatar {
            initials: row.initials
            name: row.name
            isGroup: row.isGroup
        }
        ColumnLayout {
            spacing: 3
            RowLayout {
                spacing: Theme.space
                Words {
                    text: row.name
                    font.weight: Font.DemiBold
                    elide: Text.ElideRight
                    maximumLineCount: 1
                    Layout.fillWidth: true
                    Accessible.ignored: true
                }
                Words {
                    text: row.lastText
                    soft: true
                    font.pixelSize: Theme.smallSize
                    Accessible.ignored: true
                }
            }
            Words {
                text: row.isGroup && row.members !== "" ? row.amount + " · " + row.members : row.amount
                soft: true
                font.pixelSize: Theme.smallSize
                elide: Text.ElideRight
                maximumLineCount: 1
                Layout.fillWidth: true
                Accessible.ignored: true
            }
        }
    }
    background: Rectangle {
        radius: Theme.radius
        color: row.selected ? Theme.accentSoft : row.down || row.hovered ? Theme.hover : "transparent"
        FocusRing { shown: row.ListView.isCurrentItem && row.ListView.view.activeFocus; gap: -2 }
    }
}
