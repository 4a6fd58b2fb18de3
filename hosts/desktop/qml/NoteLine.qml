// One sentence that a person should know, with a sign before it.
import QtQuick
import QtQuick.Layouts
import Chatsum

RowLayout {
    id: note

    property string text: ""
    property bool isProblem: false

    spacing: Theme.space
    visible: text !== ""

    Glyph {
        name: note.isProblem ? "warning" : "info"
        color: note.isProblem ? Theme.danger : Theme.softText
        Layout.alignment: Qt.AlignTop
        Layout.preferredWidth: Theme.fontSize + 4
        Layout.preferredHeight: Theme.fontSize + 4
    }
    Words {
        text: note.text
        soft: !note.isProblem
        color: note.isProblem ? Theme.danger : Theme.softText
        wrapMode: Text.Wrap
        Layout.fillWidth: true
        Accessible.role: note.isProblem ? Accessible.AlertMessage : Accessible.StaticText
    }
}
