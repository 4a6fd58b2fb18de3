// The left pane: what is open and the way to the other sources, then the conversations.
import QtQuick
import QtQuick.Layouts
import Chatsum

FocusScope {
    id: side

    property bool choosing: false
    readonly property bool isOpen: Library.state === Library.Open
    readonly property bool showsSources: !isOpen || choosing

    signal folderWanted()
    signal fileWanted()
    signal settingsWanted()
    signal conversationChosen()

    function focusFind() {
        if (showsSources) return
        conversations.focusFind()
    }

    // Whatever opened it: this pane, a dialog, a drop.
    Connections {
        target: Library
        function onStateChanged() { if (Library.state === Library.Open) side.choosing = false }
    }
    Rectangle {
        anchors.fill: parent
        color: Theme.pane
    }
    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        RowLayout {
            Layout.fillWidth: true
            Layout.preferredHeight: 56
            Layout.leftMargin: Theme.wide
            Layout.rightMargin: Theme.space
            spacing: Theme.space
            ColumnLayout {
                spacing: 2
                Words {
                    Layout.fillWidth: true
                    text: side.isOpen ? Library.title : "Chatsum"
                    elide: Text.ElideRight
                    maximumLineCount: 1
                    font.pixelSize: Theme.largeSize
                    font.weight: Font.DemiBold
                    Accessible.role: Accessible.Heading
                }
                Words {
                    Layout.fillWidth: true
                    visible: text !== ""
                    text: side.isOpen ? Library.subtitle : ""
                    elide: Text.ElideRight
                    maximumLineCount: 1
                    soft: true
                    font.pixelSize: Theme.smallSize
                }
            }
            BalanceButton {
                objectName: "sourceNotes"
                text: qsTr("About this source")
                notes: side.isOpen ? Library.notes : []
            }
            GlyphButton {
                objectName: "otherSources"
                visible: side.isOpen
                glyph: side.choosing ? "messages" : "device"
                checked: side.choosing
                text: side.choosing ? qsTr("Back to the conversations") : qsTr("Other sources")
                onClicked: side.choosing = !side.choosing
            }
            GlyphButton {
                objectName: "openSettings"
                glyph: "settings"
                text: qsTr("Settings")
                keys: qsTr("Ctrl+,")
                onClicked: side.settingsWanted()
            }
        }
        Rectangle {
            Layout.fillWidth: true
            Layout.preferredHeight: 1
            color: Theme.line
        }
        SourcePane {
            Layout.fillWidth: true
            Layout.fillHeight: true
            visible: side.showsSources
            focus: side.showsSources
            onFolderWanted: side.folderWanted()
            onFileWanted: side.fileWanted()
            onChosen: side.choosing = false
        }
        ConversationPane {
            id: conversations
            Layout.fillWidth: true
            Layout.fillHeight: true
            visible: !side.showsSources
            focus: !side.showsSources
            onChosen: side.conversationChosen()
        }
    }
}
