// The search in the text of a conversation: what to look for, how often it is there, and the way from one to the next.
import QtQuick
import QtQuick.Layouts
import Chatsum

FocusScope {
    id: bar

    signal wanted(string words)
    signal closed()

    function end() {
        pause.stop()
        entry.clear()
    }
    function begin() {
        entry.forceActiveFocus(Qt.ShortcutFocusReason)
        entry.selectAll()
    }

    // It ends the search also where something else is open beside it.
    Keys.onEscapePressed: closed()

    implicitHeight: Theme.control + 2 * Theme.space
    Accessible.role: Accessible.Pane
    Accessible.name: qsTr("Search in this conversation")

    Rectangle {
        anchors.fill: parent
        color: Theme.pane
    }
    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: Theme.wide
        anchors.rightMargin: Theme.space
        spacing: 4
        TextEntry {
            id: entry
            objectName: "messageFind"
            focus: true
            Layout.fillWidth: true
            Layout.maximumWidth: 420
            glyph: "search"
            clearable: true
            placeholderText: qsTr("Search in this conversation")
            // A million messages are not searched again for every letter of a word.
            onTextEdited: pause.restart()
            onAccepted: {
                if (pause.running) {
                    pause.stop()
                    bar.wanted(text)
                } else {
                    Messages.nextHit()
                }
            }
            Keys.onUpPressed: Messages.previousHit()
            Keys.onDownPressed: Messages.nextHit()
            Timer {
                id: pause
                interval: 250
                onTriggered: bar.wanted(entry.text)
            }
        }
        Words {
            objectName: "hitsText"
            soft: true
            text: entry.text === "" || pause.running || Messages.isSearching ? "" : Messages.hits === 0 ? qsTr("Not found")
                : qsTr("%L1 of %L2").arg(Messages.currentHit + 1).arg(Messages.hits)
            Layout.leftMargin: Theme.space
            Accessible.role: Accessible.StatusBar
        }
        GlyphButton {
            glyph: "up"
            text: qsTr("Previous")
            keys: qsTr("Shift+F3")
            enabled: Messages.hits > 0
            onClicked: Messages.previousHit()
        }
        GlyphButton {
            glyph: "down"
            text: qsTr("Next")
            keys: "F3"
            enabled: Messages.hits > 0
            onClicked: Messages.nextHit()
        }
        Item { Layout.fillWidth: true }
        GlyphButton {
            glyph: "close"
            text: qsTr("Close the search")
            keys: qsTr("Esc")
            onClicked: bar.closed()
        }
    }
}
