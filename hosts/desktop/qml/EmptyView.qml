// What stands in the middle when nothing is shown: what the program does, what went wrong, or what to do next.
import QtQuick
import QtQuick.Layouts
import Chatsum

FocusScope {
    id: view

    signal folderWanted()

    readonly property bool isOpen: Library.state === Library.Open
    readonly property bool hasFailed: Library.state === Library.Failed
    readonly property string next: Conversations.total > 0 ? qsTr("Choose a conversation to read it and to make a report of it.")
        : Library.hasPhone || Library.hasFaceTime ? qsTr("There are no conversations here; see the calls.")
        : qsTr("There are no conversations and no calls here.")

    ColumnLayout {
        id: column
        anchors.centerIn: parent
        width: Math.min(460, parent.width - 4 * Theme.wide)
        spacing: Theme.wide

        Rectangle {
            Layout.alignment: Qt.AlignHCenter
            Layout.preferredWidth: 72
            Layout.preferredHeight: 72
            radius: 36
            color: view.hasFailed ? Theme.hover : Theme.accentSoft
            Glyph {
                anchors.centerIn: parent
                width: 34
                height: 34
                name: view.hasFailed ? "warning" : "messages"
                color: view.hasFailed ? Theme.danger : Theme.accent
            }
        }
        Words {
            Layout.fillWidth: true
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            font.pixelSize: Theme.titleSize
            font.weight: Font.DemiBold
            text: view.hasFailed ? qsTr("This could not be opened") : view.isOpen ? Library.title : qsTr("See and keep your conversations")
            Accessible.role: Accessible.Heading
        }
        Words {
            Layout.fillWidth: true
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            lineHeight: 1.25
            soft: true
            text: view.hasFailed ? Library.error : view.isOpen ? view.next
                : qsTr("Open a backup of an iPhone, a Mac's home folder, or a single store. What you open is never changed, and nothing leaves this computer.")
            Accessible.role: view.hasFailed ? Accessible.AlertMessage : Accessible.StaticText
        }
        // One below the other where their words are longer than the line.
        GridLayout {
            id: ways
            visible: !view.isOpen
            Layout.alignment: Qt.AlignHCenter
            Layout.topMargin: Theme.space
            columns: openBackup.implicitWidth + columnSpacing + trySample.implicitWidth <= column.width ? 2 : 1
            columnSpacing: Theme.space + 4
            rowSpacing: Theme.space
            ActionButton {
                id: openBackup
                objectName: "emptyOpen"
                Layout.fillWidth: ways.columns === 1
                focus: true
                kind: ActionButton.Main
                glyph: "folder"
                text: qsTr("Open a backup…")
                onClicked: view.folderWanted()
            }
            ActionButton {
                id: trySample
                Layout.fillWidth: ways.columns === 1
                visible: Sources.sampleAvailable
                text: qsTr("Try the sample device")
                onClicked: Library.openSample()
            }
        }
        Repeater {
            model: view.isOpen ? Library.notes : []
            NoteLine {
                required property string modelData
                Layout.fillWidth: true
                text: modelData
            }
        }
    }
}
