// The row with the name that the next report gets.
import QtQuick
import QtQuick.Layouts
import Chatsum

Rectangle {
    id: row

    property string title: ""
    property bool isCurrent: false

    signal ended()

    function edit() {
        field.forceActiveFocus(Qt.ShortcutFocusReason)
        field.selectAll()
    }
    /// The keyboard goes back to the list.
    function leave() {
        field.focus = false
        row.ended()
    }

    implicitHeight: Theme.control + 2 * Theme.space
    radius: Theme.radius
    color: Theme.pane

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: Theme.space + 4
        anchors.rightMargin: Theme.space
        spacing: Theme.wide
        Words {
            id: label
            text: row.title
        }
        TextEntry {
            id: field
            objectName: "reportName"
            Layout.fillWidth: true
            text: Report.name
            enabled: !Report.busy
            clearable: activeFocus
            Accessible.name: row.title
            onTextEdited: Report.setName(text)
            onActiveFocusChanged: if (!activeFocus) Report.endName()
            Keys.onReturnPressed: row.leave()
            Keys.onEnterPressed: row.leave()
            Keys.onEscapePressed: row.leave()
            Keys.onDownPressed: row.leave()
            Keys.onUpPressed: row.leave()
        }
    }
    FocusRing {
        shown: row.isCurrent && !field.activeFocus
        gap: -2
    }
    // What the library put into the field stands there even after the user has typed.
    Connections {
        target: Report
        function onNameChanged() { if (field.text !== Report.name) field.text = Report.name }
    }
}
