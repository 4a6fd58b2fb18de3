// What of the conversation goes into a report.
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Chatsum

FocusScope {
    id: bar

    /// Whether there is a search whose hits could be taken.
    property bool hasHits: true

    readonly property bool ranging: Selection.mode === Selection.Range
    readonly property string countText: qsTr("%1 of %2 rows in the report").arg(number(Selection.count)).arg(number(Selection.total))

    function number(value) { return Number(value).toLocaleString(Qt.locale(), "f", 0) }

    // An open report is made of what was selected when it was opened.
    enabled: !Report.isOpen

    implicitHeight: column.implicitHeight + 2 * Theme.space
    Accessible.role: Accessible.Pane
    Accessible.name: qsTr("What the report holds")

    Rectangle {
        anchors.fill: parent
        color: Theme.pane
    }
    Rectangle {
        width: parent.width
        height: 1
        color: Theme.line
    }
    ColumnLayout {
        id: column
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        anchors.leftMargin: Theme.wide
        anchors.rightMargin: Theme.wide
        spacing: Theme.space

        RowLayout {
            visible: bar.ranging
            spacing: Theme.space
            Words {
                text: qsTr("From", "a day")
                soft: true
            }
            TextEntry {
                Layout.fillWidth: true
                Layout.maximumWidth: 170
                objectName: "since"
                placeholderText: "2024-01-31"
                Accessible.name: qsTr("From this day or time on")
                text: Selection.since
                wrong: !Selection.sinceValid
                onTextEdited: Selection.since = text
            }
            Words {
                text: qsTr("to", "a day")
                soft: true
            }
            TextEntry {
                Layout.fillWidth: true
                Layout.maximumWidth: 170
                objectName: "until"
                placeholderText: "2024-12-31"
                Accessible.name: qsTr("Up to this day or time")
                text: Selection.until
                wrong: !Selection.untilValid
                onTextEdited: Selection.until = text
            }
            Item { Layout.fillWidth: true }
        }
        NoteLine {
            Layout.fillWidth: true
            visible: bar.ranging && !Selection.rangeValid
            isProblem: true
            text: Selection.sinceValid && Selection.untilValid
                    ? qsTr("The end lies before the beginning.")
                    : qsTr("Give days as 2024-01-31, with a time as 2024-01-31 18:30.")
        }
        Item {
            Layout.fillWidth: true
            implicitHeight: modes.implicitHeight
            Segments {
                id: modes
                objectName: "selectionModes"
                compact: bar.width < 600
                title: qsTr("What the report holds")
                current: Selection.mode
                choices: [
                    { text: qsTr("All"), glyph: "all" },
                    { text: qsTr("Ticked"), glyph: "tick-list" },
                    { text: qsTr("Dates"), glyph: "calendar" },
                    { text: qsTr("Hits"), glyph: "search", enabled: bar.hasHits && Messages.hits > 0 || Selection.mode === Selection.Hits }
                ]
                onChosen: index => Selection.mode = index
            }
            ActionButton {
                id: clear
                objectName: "clearTicks"
                anchors.left: modes.right
                anchors.leftMargin: Theme.space
                visible: Selection.mode === Selection.Ticked && Selection.count > 0
                kind: ActionButton.Quiet
                // Its word would leave no room for the count.
                glyph: modes.compact ? "close" : ""
                text: modes.compact ? "" : spoken
                spoken: qsTr("Clear", "ticks")
                leftPadding: modes.compact ? Theme.space : Theme.wide - 2
                rightPadding: leftPadding
                Tip {
                    visible: clear.hovered && modes.compact
                    text: clear.spoken
                }
                onClicked: Selection.clear()
            }
            TextMetrics {
                id: wholeCount
                text: bar.countText
                font: count.font
            }
            Words {
                id: count
                objectName: "selectionCount"
                anchors.left: clear.visible ? clear.right : modes.right
                anchors.leftMargin: Theme.space
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                horizontalAlignment: Text.AlignRight
                elide: Text.ElideRight
                soft: true
                text: Math.ceil(wholeCount.advanceWidth) <= width ? bar.countText
                    : qsTr("%L1 of %L2").arg(number(Selection.count)).arg(number(Selection.total))
                Accessible.role: Accessible.StatusBar
                Accessible.name: bar.countText
            }
        }
    }
}
