// A row of choices of which one is taken. Arrow keys move the choice, as in a group of radio buttons.
import QtQuick
import QtQuick.Controls.Basic
import Chatsum

FocusScope {
    id: segments

    /// Maps with `text`, and where wanted `glyph` and `enabled`.
    property var choices: []
    property int current: 0
    property string title: ""
    /// Where there is little room, only the one that is chosen shows its text; the others need a glyph.
    property bool compact: false

    signal chosen(int index)

    function choose(index) {
        if (index < 0 || index >= choices.length || choices[index].enabled === false) return
        if (row.children[index] && segments.activeFocus) row.children[index].forceActiveFocus(Qt.TabFocusReason)
        if (index !== current) chosen(index)
    }
    function step(from, by) {
        for (let index = from + by; index >= 0 && index < choices.length; index += by) {
            if (choices[index].enabled !== false) return choose(index)
        }
    }

    implicitWidth: row.implicitWidth + 6
    implicitHeight: Theme.control
    Accessible.role: Accessible.Grouping
    Accessible.name: title

    Rectangle {
        anchors.fill: parent
        radius: Theme.radius
        color: Theme.hover
    }
    Row {
        id: row
        x: 3
        y: 3
        height: parent.height - 6
        Repeater {
            model: segments.choices.length  // and not the choices: a change of one of them keeps the buttons, and the focus
            RadioButton {
                id: segment
                required property int index
                readonly property var choice: segments.choices[index] || ({})

                height: row.height
                leftPadding: Theme.space + 4
                rightPadding: Theme.space + 4
                topPadding: 0
                bottomPadding: 0
                text: choice.text || ""
                enabled: choice.enabled !== false
                checked: index === segments.current
                focus: checked
                activeFocusOnTab: checked
                font.pixelSize: Theme.fontSize
                Accessible.role: Accessible.RadioButton
                Accessible.name: text
                Accessible.checkable: true
                Accessible.checked: checked
                Accessible.onPressAction: clicked()
                indicator: null
                contentItem: Row {
                    opacity: segment.enabled ? 1 : 0.45
                    spacing: 6
                    Glyph {
                        visible: (segment.choice.glyph || "") !== ""
                        name: segment.choice.glyph || ""
                        color: words.color
                        width: Theme.fontSize + 2
                        height: width
                        anchors.verticalCenter: parent.verticalCenter
                    }
                    Text {
                        id: words
                        text: segment.text
                        visible: !segments.compact || segment.checked
                        textFormat: Text.PlainText
                        font.pixelSize: Theme.fontSize
                        font.weight: segment.checked ? Font.DemiBold : Font.Normal
                        color: segment.checked ? Theme.text : Theme.softText
                        anchors.verticalCenter: parent.verticalCenter
                    }
                }
                background: Rectangle {
                    radius: Theme.radius - 2
                    color: segment.checked ? (Theme.dark ? Theme.accentSoft : Theme.window) : "transparent"
                    border.width: segment.checked ? 1 : 0
                    border.color: Theme.line
                    FocusRing { shown: segment.visualFocus; gap: 0 }
                }
                // What is checked follows `current`, whoever changes it.
                onClicked: {
                    checked = Qt.binding(() => segment.index === segments.current)
                    segments.choose(index)
                }
                Keys.onLeftPressed: segments.step(index, -1)
                Keys.onRightPressed: segments.step(index, 1)
            }
        }
    }
}
