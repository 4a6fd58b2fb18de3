// A button of words, with a glyph before them where one is given.
import QtQuick
import QtQuick.Controls.Basic
import Chatsum

Button {
    id: button

    enum Kind { Plain, Main, Danger, Quiet }

    property int kind: ActionButton.Plain
    property string glyph: ""
    /// What a screen reader says, where that is more than the text.
    property string spoken: text

    readonly property color ink: !enabled ? Theme.softText
        : kind === ActionButton.Main ? Theme.textOnAccent
        : kind === ActionButton.Danger ? Theme.danger
        : kind === ActionButton.Quiet ? Theme.accent : Theme.text

    implicitHeight: Theme.control
    leftPadding: Theme.wide - 2
    rightPadding: Theme.wide - 2
    topPadding: 0
    bottomPadding: 0
    font.pixelSize: Theme.fontSize
    font.weight: kind === ActionButton.Main ? Font.DemiBold : Font.Normal
    activeFocusOnTab: true
    Accessible.name: spoken
    Accessible.onPressAction: clicked()

    contentItem: Item {
        implicitWidth: line.implicitWidth
        implicitHeight: line.implicitHeight
        Row {
            id: line
            anchors.centerIn: parent
            spacing: Theme.space
            Glyph {
                name: button.glyph
                color: button.ink
                visible: button.glyph !== ""
                width: Theme.fontSize + 4
                height: width
                anchors.verticalCenter: parent.verticalCenter
            }
            Text {
                text: button.text
                textFormat: Text.PlainText
                font: button.font
                color: button.ink
                visible: text !== ""
                anchors.verticalCenter: parent.verticalCenter
            }
        }
    }
    background: Rectangle {
        radius: Theme.radius
        color: button.kind === ActionButton.Main
            ? (!button.enabled ? Theme.hover : button.down ? Qt.darker(Theme.bubbleMine, 1.15)
               : button.hovered ? Qt.darker(Theme.bubbleMine, 1.06) : Theme.bubbleMine)
            : button.down || button.hovered ? Theme.hover
            : button.kind === ActionButton.Quiet ? "transparent" : Theme.raised
        border.width: button.kind === ActionButton.Plain || button.kind === ActionButton.Danger ? 1 : 0
        border.color: Theme.line
        FocusRing { shown: button.visualFocus }
    }
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
}
