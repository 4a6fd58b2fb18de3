// The middle while a source is open: its messages and its calls, each behind a tab where there are several.
import QtQuick
import QtQuick.Layouts
import Chatsum

FocusScope {
    id: pane

    readonly property var tabs: {
        const all = []
        if (Library.hasMessages) all.push({ text: qsTr("Messages"), glyph: "messages", app: "messages" })
        if (Library.hasPhone) all.push({ text: qsTr("Phone"), glyph: "phone", app: "phone" })
        if (Library.hasFaceTime) all.push({ text: qsTr("FaceTime"), glyph: "video", app: "facetime" })
        return all
    }
    property int tab: 0
    readonly property string app: tabs.length > tab ? tabs[tab].app : "messages"

    signal folderWanted()
    signal reportWanted()

    readonly property bool finding: messages.visible && messages.finding

    function endFinding() { messages.endFinding() }
    function find() { if (messages.visible) messages.find() }
    function showTab(index) { if (index < tabs.length) tab = index }

    onTabsChanged: tab = 0
    onAppChanged: Selection.app = app

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        Rectangle {
            Layout.fillWidth: true
            Layout.preferredHeight: 56
            visible: pane.tabs.length > 1
            color: Theme.window
            Segments {
                objectName: "tabs"
                anchors.centerIn: parent
                title: qsTr("What is shown")
                current: pane.tab
                choices: pane.tabs
                onChosen: index => pane.tab = index
            }
        }
        Rectangle {
            Layout.fillWidth: true
            Layout.preferredHeight: 1
            visible: pane.tabs.length > 1
            color: Theme.line
        }
        Item {
            Layout.fillWidth: true
            Layout.fillHeight: true
            EmptyView {
                anchors.fill: parent
                visible: !messages.visible && !calls.visible
                onFolderWanted: pane.folderWanted()
            }
            MessagePane {
                id: messages
                anchors.fill: parent
                visible: pane.app === "messages" && Conversations.selectedGuid !== ""
                focus: visible
                onReportWanted: pane.reportWanted()
            }
            CallPane {
                id: calls
                anchors.fill: parent
                visible: pane.app !== "messages"
                focus: visible
                onReportWanted: pane.reportWanted()
            }
        }
    }
}
