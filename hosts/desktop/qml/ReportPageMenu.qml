// What can be done with an earlier report.
import QtQuick
import QtQuick.Controls.Basic
import Chatsum

Menu {
    id: menu

    property int row: -1

    objectName: "reportMenu"
    padding: 4
    background: Rectangle {
        implicitWidth: 180
        radius: Theme.radius
        color: Theme.raised
        border.width: 1
        border.color: Theme.line
    }
    ReportPageMenuItem {
        glyph: "report"
        text: qsTr("Preview")
        onTriggered: Report.activate(menu.row)
    }
    ReportPageMenuItem {
        glyph: "trash"
        text: qsTr("Delete")
        ink: Theme.danger
        onTriggered: Report.askToRemove(menu.row)
    }
}
