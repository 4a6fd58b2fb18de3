// The report screen: what the report shall be like, and the reports that were made before.
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Chatsum

FocusScope {
    id: page

    /// Does what the row is there for.
    function use(row) {
        if (!row) return
        list.currentIndex = row.index
        if (row.kind === "name") return row.edit()
        list.forceActiveFocus(Qt.MouseFocusReason)
        Report.activate(row.index)
    }
    function askFor(row, item, x, y) {
        if (!row || !row.editable) return
        list.currentIndex = row.index
        menu.row = row.index
        menu.popup(item, x, y)
    }

    Accessible.role: Accessible.Pane
    Accessible.name: Report.title

    Rectangle {
        anchors.fill: parent
        color: Theme.window
    }
    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        PaneHeader {
            Layout.fillWidth: true
            hasAvatar: false
            title: Report.title
            ActionButton {
                objectName: "generate"
                kind: ActionButton.Main
                text: Report.reportTitle
                enabled: Report.canReport
                onClicked: Report.generate()
            }
            GlyphButton {
                objectName: "closeReport"
                glyph: "close"
                text: qsTr("Close")
                keys: qsTr("Esc")
                onClicked: Report.close()
            }
        }
        RowLayout {
            objectName: "failure"
            Layout.fillWidth: true
            Layout.margins: Theme.wide
            Layout.bottomMargin: 0
            visible: Report.failure !== ""
            spacing: Theme.space
            NoteLine {
                Layout.fillWidth: true
                isProblem: true
                text: Report.failure
            }
            GlyphButton {
                Layout.alignment: Qt.AlignTop
                glyph: "close"
                text: qsTr("Close")
                onClicked: Report.forgetFailure()
            }
        }
        RowLayout {
            objectName: "notes"
            Layout.fillWidth: true
            Layout.margins: Theme.wide
            Layout.bottomMargin: 0
            visible: Report.notes.length > 0
            spacing: Theme.space
            ColumnLayout {
                Layout.fillWidth: true
                spacing: Theme.space
                Repeater {
                    model: Report.notes
                    NoteLine {
                        required property string modelData
                        Layout.fillWidth: true
                        text: modelData
                    }
                }
            }
            GlyphButton {
                objectName: "closeNotes"
                Layout.alignment: Qt.AlignTop
                glyph: "close"
                text: qsTr("Close")
                onClicked: Report.forgetNotes()
            }
        }
        ListView {
            id: list
            objectName: "reportList"
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.leftMargin: Theme.wide
            Layout.rightMargin: Theme.wide
            bottomMargin: Theme.wide
            focus: true
            activeFocusOnTab: true
            clip: true
            spacing: 2
            boundsBehavior: Flickable.StopAtBounds
            keyNavigationEnabled: true
            model: Report.table
            delegate: ReportPageRow {
                id: row
                onUsed: page.use(row)
                onMenuWanted: (item, x, y) => page.askFor(row, item, x, y)
            }
            ScrollBar.vertical: ThinScrollBar { }
            Accessible.role: Accessible.List
            Accessible.name: Report.title

            Keys.onReturnPressed: page.use(currentItem)
            Keys.onEnterPressed: page.use(currentItem)
            Keys.onSpacePressed: page.use(currentItem)
            Keys.onDeletePressed: if (currentItem && currentItem.editable) Report.askToRemove(currentIndex)
            Keys.onMenuPressed: page.askFor(currentItem, currentItem, currentItem.width / 2, currentItem.height / 2)

            displaced: Transition { NumberAnimation { properties: "y"; duration: Theme.moment } }
            remove: Transition { NumberAnimation { property: "opacity"; to: 0; duration: Theme.moment } }
        }
    }
    ReportPageMenu { id: menu }
    Connections {
        target: Report
        function onFinished() {
            list.positionViewAtBeginning()
        }
    }
}
