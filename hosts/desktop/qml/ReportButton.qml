// Opens the report screen with what is selected.
import QtQuick
import Chatsum

ActionButton {
    id: button

    /// Whether there is something to make a report of.
    property bool isReady: false

    objectName: "openReport"
    kind: ActionButton.Main
    glyph: "report"
    text: qsTr("Report…")
    visible: !Report.isOpen
    enabled: isReady && !Program.isPreparing

    Waiting {
        anchors.centerIn: parent
        width: 20
        height: 20
        visible: Program.isPreparing
    }
}
