// Opens the report screen with what is selected.
import QtQuick
import Chatsum

ActionButton {
    objectName: "openReport"
    kind: ActionButton.Main
    glyph: "report"
    text: qsTr("Report…")
    visible: !Report.isOpen
}
