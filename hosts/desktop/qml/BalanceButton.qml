// Tells how what is shown follows from what the store holds: every row of it is accounted for.
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Chatsum

GlyphButton {
    id: button

    property string balance: ""
    property var notes: []

    visible: balance !== "" || notes.length > 0
    glyph: "info"
    text: qsTr("What is shown, and what is not")
    checked: sentences.opened
    onClicked: sentences.opened ? sentences.close() : sentences.open()

    Popup {
        id: sentences
        y: button.height + Theme.space
        x: button.width - width
        margins: Theme.space  // from the window's edges, if need be farther to the right
        width: 380
        padding: Theme.wide
        focus: true
        closePolicy: Popup.CloseOnEscape | Popup.CloseOnPressOutside
        background: Rectangle {
            radius: Theme.radius + 4
            color: Theme.window
            border.width: 1
            border.color: Theme.line
        }
        contentItem: ColumnLayout {
            spacing: Theme.space
            Words {
                Layout.fillWidth: true
                visible: text !== ""
                text: button.balance
                wrapMode: Text.Wrap
            }
            Repeater {
                model: button.notes
                NoteLine {
                    required property string modelData
                    Layout.fillWidth: true
                    text: modelData
                }
            }
        }
    }
}
