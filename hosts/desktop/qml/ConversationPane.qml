// The conversations of the open device, with a search by name or number.
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Chatsum

FocusScope {
    id: pane

    signal chosen()

    function select(guid) {
        Conversations.select(guid)
        chosen()
    }
    function focusFind() {
        find.forceActiveFocus(Qt.ShortcutFocusReason)
        find.selectAll()
    }

    Accessible.role: Accessible.Pane
    Accessible.name: qsTr("Conversations")

    ColumnLayout {
        anchors.fill: parent
        spacing: Theme.space

        TextEntry {
            id: find
            objectName: "conversationFind"
            Layout.fillWidth: true
            Layout.leftMargin: Theme.wide
            Layout.rightMargin: Theme.wide
            Layout.topMargin: Theme.space
            glyph: "search"
            clearable: true
            placeholderText: qsTr("Name or number")
            Accessible.name: qsTr("Search conversations by name or number")
            onTextEdited: Conversations.filter = text
            // Another device begins without a filter.
            readonly property string filter: Conversations.filter
            onFilterChanged: if (filter !== text) text = filter
            Keys.onDownPressed: list.forceActiveFocus(Qt.TabFocusReason)
            Keys.onEscapePressed: event => {
                event.accepted = text !== ""
                clear()
                Conversations.filter = ""
            }
        }

        ListView {
            id: list
            objectName: "conversationList"
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.leftMargin: Theme.space
            Layout.rightMargin: Theme.space
            clip: true
            focus: true
            activeFocusOnTab: true
            boundsBehavior: Flickable.StopAtBounds
            reuseItems: true
            highlightMoveDuration: 0
            model: Conversations
            ScrollBar.vertical: ThinScrollBar {}
            Accessible.role: Accessible.List
            Accessible.name: qsTr("Conversations")

            delegate: ConversationDelegate {
                width: ListView.view.width
                selected: guid === Conversations.selectedGuid
                onClicked: {
                    list.currentIndex = index
                    pane.select(guid)
                }
            }
            Keys.onReturnPressed: if (currentItem) pane.select(currentItem.guid)
            Keys.onEnterPressed: if (currentItem) pane.select(currentItem.guid)
            Keys.onSpacePressed: if (currentItem) pane.select(currentItem.guid)
            Keys.onPressed: event => {
                const page = Math.max(1, Math.floor(height / Math.max(1, currentItem ? currentItem.height : 60)) - 1)
                if (event.key === Qt.Key_Home) currentIndex = 0
                else if (event.key === Qt.Key_End) currentIndex = count - 1
                else if (event.key === Qt.Key_PageUp) currentIndex = Math.max(0, currentIndex - page)
                else if (event.key === Qt.Key_PageDown) currentIndex = Math.min(count - 1, currentIndex + page)
                else return
                event.accepted = true
            }

            Words {
                anchors.fill: parent
                anchors.margins: Theme.space
                objectName: "conversationHint"
                visible: list.count === 0
                soft: true
                wrapMode: Text.Wrap
                text: find.text !== "" ? qsTr("Nobody here is called that.")
                    : !Library.hasMessages && Library.notes.length > 0 ? Library.notes.join("\n\n")
                    : qsTr("There are no conversations.")
            }
        }
    }
}
