// Asks for the password of an encrypted backup.
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Chatsum

Dialog {
    id: dialog

    function unlock() {
        if (entry.text === "") return
        Library.givePassword(entry.text)
        entry.clear()
    }

    anchors.centerIn: parent
    width: Math.min(420, parent ? parent.width - 2 * Theme.wide : 420)
    modal: true
    focus: true
    padding: Theme.wide + Theme.space
    closePolicy: Popup.CloseOnEscape
    readonly property bool wanted: Library.state === Library.NeedsPassword

    onWantedChanged: wanted ? open() : close()
    Component.onCompleted: if (wanted) open()
    onOpened: entry.forceActiveFocus()
    // Escape closes the popup itself; nobody is left to wait for the password then.
    onClosed: {
        entry.clear()
        if (Library.state === Library.NeedsPassword) Library.cancel()
    }
    background: Rectangle {
        radius: Theme.radius * 2
        color: Theme.window
        border.width: 1
        border.color: Theme.line
    }

    contentItem: ColumnLayout {
        spacing: Theme.space + 4
        Accessible.role: Accessible.Dialog
        Accessible.name: heading.text
        Words {
            id: heading
            Layout.fillWidth: true
            text: qsTr("This backup is encrypted")
            font.pixelSize: Theme.largeSize
            font.weight: Font.DemiBold
            Accessible.role: Accessible.Heading
        }
        Words {
            Layout.fillWidth: true
            wrapMode: Text.Wrap
            soft: true
            text: qsTr("Give the password that was set for backups of this device. It is used to read the backup and is not kept.")
        }
        TextEntry {
            id: entry
            objectName: "password"
            Layout.fillWidth: true
            focus: true
            glyph: "lock"
            echoMode: TextInput.Password
            inputMethodHints: Qt.ImhSensitiveData | Qt.ImhHiddenText | Qt.ImhNoPredictiveText
            placeholderText: qsTr("Password")
            wrong: Library.error !== ""
            onAccepted: dialog.unlock()
        }
        NoteLine {
            Layout.fillWidth: true
            isProblem: true
            text: Library.error
        }
        RowLayout {
            Layout.topMargin: Theme.space
            spacing: Theme.space
            Item { Layout.fillWidth: true }
            ActionButton {
                text: qsTr("Cancel")
                onClicked: Library.cancel()
            }
            ActionButton {
                objectName: "unlock"
                kind: ActionButton.Main
                text: qsTr("Unlock")
                enabled: entry.text !== ""
                onClicked: dialog.unlock()
            }
        }
    }
}
