// A button that is only a glyph; its text is what a screen reader and the tip say.
import QtQuick
import QtQuick.Controls.Basic
import Chatsum

Button {
    id: button

    property string glyph: ""
    property color ink: Theme.softText
    /// The keys that do the same, for the tip.
    property string keys: ""
    property int side: Theme.control - 2

    implicitWidth: side
    implicitHeight: side
    padding: 0
    activeFocusOnTab: true
    Accessible.name: text
    Accessible.onPressAction: clicked()

    contentItem: Item {
        Glyph {
            anchors.centerIn: parent
            width: Theme.fontSize + 5
            height: width
            name: button.glyph
            color: !button.enabled ? Theme.line : button.hovered || button.checked ? Theme.text : button.ink
        }
    }
    background: Rectangle {
        radius: Theme.radius
        color: button.down || button.hovered || button.checked ? Theme.hover : "transparent"
        FocusRing { shown: button.visualFocus; gap: 0 }
    }
    Tip {
        visible: button.hovered && button.text !== ""
        text: button.keys === "" ? button.text : button.text + "  " + button.keys
    }
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
}
