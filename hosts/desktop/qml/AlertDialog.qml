// What is asked or told: a message with its buttons, or a choice. Made for one that is there.
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import QtQuick.Templates as T
import Chatsum

Popup {
    id: dialog

    /// A DesktopAlert.
    property var alert: null
    readonly property string title: alert ? alert.title : ""
    readonly property string message: alert ? alert.message : ""
    readonly property var choices: alert ? alert.buttons : []
    readonly property int cancelIndex: alert ? alert.cancelIndex : -1
    /// Answers that are many or long stand one below the other.
    readonly property bool isTall: alert ? alert.isSheet || choices.length > 2 : false
    /// Enter shall do no harm: the keyboard begins at what changes nothing, where something would be lost.
    readonly property int firstIndex: choices.some(choice => choice.style === "destructive") ? cancelIndex : 0

    signal chosen(int index)

    function cancel() { if (cancelIndex >= 0) chosen(cancelIndex) }
    function focusOn(index) {
        if (index < 0 || index >= buttons.count) return
        buttons.itemAt(index).forceActiveFocus(Qt.TabFocusReason)
    }
    function move(by) {
        for (let i = 0; i < buttons.count; ++i) {
            if (buttons.itemAt(i).activeFocus) return focusOn((i + by + buttons.count) % buttons.count)
        }
        focusOn(0)
    }

    objectName: "alertDialog"
    parent: T.Overlay.overlay
    anchors.centerIn: parent
    width: Math.min(380, parent ? parent.width - 2 * Theme.wide : 380)
    modal: true
    focus: true
    padding: Theme.wide + Theme.space
    closePolicy: Popup.NoAutoClose
    onOpened: focusOn(Math.max(0, firstIndex))
    Component.onCompleted: open()

    background: Rectangle {
        radius: Theme.radius * 2
        color: Theme.window
        border.width: 1
        border.color: Theme.line
    }

    contentItem: FocusScope {
        implicitHeight: column.implicitHeight
        focus: true
        Accessible.role: dialog.alert && dialog.alert.isSheet ? Accessible.Dialog : Accessible.AlertMessage
        Accessible.name: [dialog.title, dialog.message].filter(part => part !== "").join(". ")
        Keys.onEscapePressed: dialog.cancel()
        Keys.onUpPressed: dialog.move(-1)
        Keys.onLeftPressed: dialog.move(-1)
        Keys.onDownPressed: dialog.move(1)
        Keys.onRightPressed: dialog.move(1)

        ColumnLayout {
            id: column
            width: parent.width
            spacing: Theme.space + 4
            Words {
                Layout.fillWidth: true
                visible: text !== ""
                text: dialog.title
                wrapMode: Text.Wrap
                font.weight: Font.DemiBold
                Accessible.role: Accessible.Heading
            }
            Words {
                Layout.fillWidth: true
                visible: text !== ""
                text: dialog.message
                wrapMode: Text.Wrap
            }
            GridLayout {
                Layout.fillWidth: true
                Layout.topMargin: dialog.title === "" && dialog.message === "" ? 0 : Theme.space
                columns: dialog.isTall ? 1 : Math.max(1, buttons.count)
                columnSpacing: Theme.space
                rowSpacing: Theme.space
                Repeater {
                    id: buttons
                    model: dialog.choices
                    ActionButton {
                        required property int index
                        required property var modelData
                        objectName: "choice" + index
                        Layout.fillWidth: true
                        text: modelData.title
                        kind: modelData.style === "destructive" ? ActionButton.Danger : ActionButton.Plain
                        font.weight: modelData.style === "cancel" ? Font.Normal : Font.DemiBold
                        onClicked: dialog.chosen(index)
                    }
                }
            }
        }
    }
}
