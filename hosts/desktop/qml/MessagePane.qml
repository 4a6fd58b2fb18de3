// A conversation: who it is with, its messages, the search in them, and what of it goes into a report.
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Chatsum

FocusScope {
    id: pane

    property bool finding: false

    signal reportWanted()

    function find() {
        if (Messages.state !== Messages.Ready) return
        finding = true
        bar.begin()
    }
    function endFinding() {
        finding = false
        bar.end()
        Messages.search("")
        list.forceActiveFocus(Qt.OtherFocusReason)
    }

    Accessible.role: Accessible.Pane
    Accessible.name: qsTr("Messages")

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        PaneHeader {
            Layout.fillWidth: true
            title: Conversations.selectedName
            subtitle: Conversations.selectedMembers
            initials: Conversations.selectedInitials
            isGroup: Conversations.selectedIsGroup
            GlyphButton {
                glyph: "search"
                text: qsTr("Search in this conversation")
                keys: qsTr("Ctrl+F")
                checked: pane.finding
                enabled: Messages.state === Messages.Ready
                onClicked: pane.finding ? pane.endFinding() : pane.find()
            }
            BalanceButton {
                balance: Messages.balance
                notes: Messages.notes
            }
            ReportButton {
                isReady: Messages.state === Messages.Ready && Selection.count > 0
                onClicked: pane.reportWanted()
            }
        }
        FindBar {
            id: bar
            Layout.fillWidth: true
            visible: pane.finding
            onWanted: words => Messages.search(words, list.searchRow())
            onClosed: pane.endFinding()
        }
        Item {
            Layout.fillWidth: true
            Layout.fillHeight: true
            MessageList {
                id: list
                anchors.fill: parent
                focus: true
                visible: Messages.state === Messages.Ready
                isGroup: Conversations.selectedIsGroup
            }
            ColumnLayout {
                anchors.centerIn: parent
                visible: Messages.state === Messages.Reading
                spacing: Theme.wide
                Waiting {
                    Layout.alignment: Qt.AlignHCenter
                    Layout.preferredWidth: 36
                    Layout.preferredHeight: 36
                }
                Words {
                    Layout.alignment: Qt.AlignHCenter
                    soft: true
                    text: Messages.progress > 0 ? qsTr("Reading… %1%").arg(Math.round(Messages.progress * 100)) : qsTr("Reading…")
                }
            }
            ColumnLayout {
                anchors.centerIn: parent
                width: Math.min(420, parent.width - 4 * Theme.wide)
                visible: Messages.state === Messages.Failed
                spacing: Theme.wide
                NoteLine {
                    objectName: "messagesFailed"
                    Layout.fillWidth: true
                    isProblem: true
                    text: Messages.error
                }
                ActionButton {
                    objectName: "readAgain"
                    Layout.alignment: Qt.AlignHCenter
                    glyph: "refresh"
                    text: qsTr("Try again")
                    onClicked: Conversations.readAgain()
                }
            }
            Words {
                anchors.centerIn: parent
                visible: Messages.state === Messages.Ready && Messages.count === 0
                soft: true
                text: qsTr("There are no messages in this conversation.")
            }
        }
        SelectionBar {
            Layout.fillWidth: true
            visible: Messages.state === Messages.Ready && Messages.count > 0
        }
    }

    Connections {
        target: Messages
        function onStateChanged() {
            list.anchorRow = -1
            if (Messages.state === Messages.Ready) Qt.callLater(list.showEnd)
            else if (pane.finding) {
                pane.finding = false
                bar.end()
            }
        }
        function onCurrentHitChanged() { list.show(Messages.currentHitRow) }
    }
    Shortcut {
        sequence: "F3"
        enabled: pane.finding
        onActivated: Messages.nextHit()
    }
    Shortcut {
        sequence: "Shift+F3"
        enabled: pane.finding
        onActivated: Messages.previousHit()
    }
}
