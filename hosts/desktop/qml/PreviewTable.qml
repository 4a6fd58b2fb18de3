// A CSV report as a table; the cell that the keyboard is on stands whole under it.
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Chatsum

FocusScope {
    id: viewer

    objectName: "previewTable"
    focus: true
    Accessible.role: Accessible.Table
    Accessible.name: Preview.name

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        HorizontalHeaderView {
            id: titles
            Layout.fillWidth: true
            syncView: table
            clip: true
            textRole: "display"
            delegate: Rectangle {
                required property string display
                implicitHeight: Theme.control
                color: Theme.pane
                Words {
                    anchors.fill: parent
                    anchors.leftMargin: Theme.space
                    anchors.rightMargin: Theme.space
                    verticalAlignment: Text.AlignVCenter
                    text: parent.display.slice(0, 200)
                    elide: Text.ElideRight
                    maximumLineCount: 1
                    font.weight: Font.DemiBold
                    Accessible.role: Accessible.ColumnHeader
                }
                Rectangle {
                    anchors.bottom: parent.bottom
                    width: parent.width
                    height: 1
                    color: Theme.line
                }
            }
        }
        TableView {
            id: table
            objectName: "csvTable"
            Layout.fillWidth: true
            Layout.fillHeight: true
            focus: true
            activeFocusOnTab: true
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            model: Preview.tableModel
            selectionModel: ItemSelectionModel { id: selection; model: Preview.tableModel }
            columnWidthProvider: column => Math.max(60, Preview.tableModel.charactersOf(column) * Theme.fontSize * 0.56
                                                        + 2 * Theme.space)
            rowHeightProvider: () => Theme.control
            delegate: Rectangle {
                id: cell
                required property string display
                required property bool current
                required property int row
                required property int column
                color: current ? Theme.accentSoft : "transparent"
                Words {
                    anchors.fill: parent
                    anchors.leftMargin: Theme.space
                    anchors.rightMargin: Theme.space
                    verticalAlignment: Text.AlignVCenter
                    // There is no room for more.
                    text: cell.display.slice(0, 200)
                    elide: Text.ElideRight
                    maximumLineCount: 1
                    Accessible.role: Accessible.Cell
                }
                Rectangle {
                    anchors.bottom: parent.bottom
                    width: parent.width
                    height: 1
                    color: Theme.line
                    opacity: 0.5
                }
                FocusRing { shown: cell.current && table.activeFocus; gap: -2 }
                TapHandler {
                    onTapped: {
                        table.forceActiveFocus()
                        selection.setCurrentIndex(table.model.index(cell.row, cell.column),
                                                  ItemSelectionModel.NoUpdate)
                    }
                }
            }
            ScrollBar.vertical: ThinScrollBar { }
            ScrollBar.horizontal: ThinScrollBar { }
            // A table without a current cell swallows every key.
            Keys.onEscapePressed: Preview.close()
            onActiveFocusChanged: beginAtFirst()
            onRowsChanged: beginAtFirst()
            function beginAtFirst() {
                if (activeFocus && !selection.currentIndex.valid && rows > 0)
                    selection.setCurrentIndex(model.index(0, 0), ItemSelectionModel.NoUpdate)
            }
            Connections {
                target: Preview.tableModel
                function onColumnsInserted() { table.forceLayout() }
            }
        }
        Rectangle {
            Layout.fillWidth: true
            Layout.preferredHeight: 1
            color: Theme.line
        }
        Flickable {
            Layout.fillWidth: true
            Layout.preferredHeight: Math.min(contentHeight, 5 * Theme.fontSize)
            visible: whole.text !== ""
            clip: true
            contentHeight: whole.height
            Words {
                id: whole
                objectName: "wholeCell"
                width: parent.width
                padding: Theme.space
                wrapMode: Text.Wrap
                text: {
                    const index = selection.currentIndex
                    return index.valid ? Preview.tableModel.data(index, Qt.DisplayRole) ?? "" : ""
                }
            }
        }
    }
}
