// An earlier report. A click shows it; a swipe to the left and a click on what it uncovers deletes it, and so do the
// button that comes with the mouse, and the menu, after a question.
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Chatsum

SwipeDelegate {
    id: row

    property int index: -1
    property string fileName: ""
    property string detail: ""
    property string size: ""
    property string picture: ""
    property bool isCurrent: false
    property bool isOtherButton: false
    readonly property string about: [detail, size].filter(part => part !== "").join(" · ")

    signal used()
    signal menuWanted(real x, real y)

    function remove() {
        swipe.close()
        Report.remove(index)
    }

    implicitHeight: Math.max(Theme.control, lines.implicitHeight) + 2 * Theme.space
    leftPadding: Theme.space + 4
    rightPadding: Theme.space
    topPadding: 0
    bottomPadding: 0
    hoverEnabled: true
    focusPolicy: Qt.NoFocus
    clip: true
    Accessible.role: Accessible.ListItem
    Accessible.name: [fileName === "" ? text : fileName, detail, size].filter(part => part !== "").join(", ")
    Accessible.description: qsTr("Enter shows it, Delete deletes it")
    Accessible.onPressAction: used()
    // A row that can be swiped is clicked by any button of the mouse.
    onPressed: isOtherButton = menuTap.pressed
    onClicked: if (swipe.position === 0 && !isOtherButton) used()

    contentItem: RowLayout {
        spacing: Theme.space + 4
        Image {
            Layout.preferredWidth: 29
            Layout.preferredHeight: 29
            visible: row.picture !== ""
            source: row.picture
            sourceSize: Qt.size(29 * Screen.devicePixelRatio, 29 * Screen.devicePixelRatio)
            fillMode: Image.PreserveAspectFit
            Accessible.ignored: true
        }
        Glyph {
            Layout.preferredWidth: 29
            Layout.preferredHeight: 29
            visible: row.picture === ""
            name: "file"
            color: Theme.softText
        }
        ColumnLayout {
            id: lines
            Layout.fillWidth: true
            spacing: 2
            Words {
                Layout.fillWidth: true
                text: row.text
                elide: Text.ElideMiddle
                maximumLineCount: 1
                Accessible.ignored: true
            }
            Words {
                Layout.fillWidth: true
                visible: text !== ""
                text: row.about
                soft: true
                elide: Text.ElideRight
                maximumLineCount: 1
                font.pixelSize: Theme.smallSize
                Accessible.ignored: true
            }
        }
        GlyphButton {
            objectName: "deleteReport"
            glyph: "trash"
            text: qsTr("Delete")
            keys: qsTr("Del")
            opacity: row.hovered || hovered || row.isCurrent || activeFocus ? 1 : 0
            activeFocusOnTab: false
            focusPolicy: Qt.NoFocus
            onClicked: Report.askToRemove(row.index)
        }
    }
    swipe.right: Rectangle {
        width: Math.max(96, deleteWords.implicitWidth + 2 * Theme.wide)
        height: parent.height
        anchors.right: parent.right
        radius: Theme.radius
        color: Theme.danger
        Words {
            id: deleteWords
            anchors.centerIn: parent
            text: qsTr("Delete")
            color: Theme.window
            font.weight: Font.DemiBold
            Accessible.ignored: true
        }
        Accessible.role: Accessible.Button
        Accessible.name: deleteWords.text
        Accessible.onPressAction: row.remove()
        SwipeDelegate.onClicked: row.remove()
    }
    background: Rectangle {
        radius: Theme.radius
        color: row.down || row.hovered ? Theme.hover : Theme.pane
        FocusRing { shown: row.isCurrent; gap: -2 }
    }
    TapHandler {
        id: menuTap
        acceptedButtons: Qt.RightButton
        onTapped: point => row.menuWanted(point.position.x, point.position.y)
    }
    TapHandler {
        acceptedDevices: PointerDevice.TouchScreen
        onLongPressed: row.menuWanted(point.position.x, point.position.y)
    }
}
