// One device, backup or store that can be opened.
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Chatsum

ItemDelegate {
    id: row

    required property int index
    required property string path
    required property string kind
    required property string device
    required property string dateText
    required property string holds
    required property bool encrypted
    required property bool isRecent

    signal opened()
    signal forgotten()

    readonly property string kindText: kind === "backup" ? qsTr("Backup") : kind === "mac" ? qsTr("Mac")
        : kind === "device" ? qsTr("Device") : qsTr("Store")
    readonly property string name: device !== "" ? device : path
    readonly property string details: {
        const parts = [kindText]
        if (dateText !== "") parts.push(dateText)
        if (holds !== "") parts.push(holds)
        if (encrypted) parts.push(qsTr("encrypted"))
        return parts.join(" · ")
    }

    leftPadding: Theme.wide - 4
    rightPadding: Theme.space
    topPadding: Theme.space + 2
    bottomPadding: Theme.space + 2
    hoverEnabled: true
    focusPolicy: Qt.NoFocus  // the list has the keyboard
    onClicked: opened()
    Accessible.role: Accessible.ListItem
    Accessible.name: name + ", " + details
    Accessible.description: path
    Accessible.onPressAction: opened()
    Tip {
        objectName: "sourceTip"
        visible: row.hovered && !forget.hovered
        delay: 900
        text: row.path
    }

    contentItem: RowLayout {
        spacing: Theme.space + 4
        Glyph {
            name: row.kind === "backup" || row.kind === "mac" || row.kind === "device" ? row.kind : "file"
            color: Theme.accent
            Layout.preferredWidth: Theme.fontSize + 12
            Layout.preferredHeight: Theme.fontSize + 12
        }
        ColumnLayout {
            spacing: 2
            Words {
                text: row.name
                elide: row.device !== "" ? Text.ElideRight : Text.ElideMiddle
                maximumLineCount: 1
                font.weight: Font.DemiBold
                Layout.fillWidth: true
                Accessible.ignored: true
            }
            Words {
                text: row.details
                soft: true
                font.pixelSize: Theme.smallSize
                elide: Text.ElideRight
                maximumLineCount: 1
                Layout.fillWidth: true
                Accessible.ignored: true
            }
        }
        Glyph {
            visible: row.encrypted
            name: "lock"
            color: Theme.softText
            Layout.preferredWidth: Theme.fontSize + 2
            Layout.preferredHeight: Theme.fontSize + 2
        }
        GlyphButton {
            id: forget
            visible: row.isRecent && (row.hovered || row.ListView.isCurrentItem && row.ListView.view.activeFocus)
            glyph: "close"
            side: Theme.control - 8
            text: qsTr("Remove from the list")
            activeFocusOnTab: false
            onClicked: row.forgotten()
        }
    }
    background: Rectangle {
        radius: Theme.radius
        color: row.down || row.hovered ? Theme.hover : "transparent"
        FocusRing { shown: row.ListView.isCurrentItem && row.ListView.view.activeFocus; gap: -2 }
    }
}
