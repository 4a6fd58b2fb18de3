// Keeps the window from being used while a report is being written, and says so.
import QtQuick
import QtQuick.Layouts
import Chatsum

Rectangle {
    id: overlay

    /// What ends soon needs no words.
    property bool showsWords: Theme.moment === 0

    objectName: "busyOverlay"
    color: showsWords ? "#66000000" : "transparent"
    Accessible.role: Accessible.AlertMessage
    Accessible.name: [Report.busyTitle, Report.busyText].filter(part => part !== "").join(". ")

    MouseArea {
        anchors.fill: parent
        hoverEnabled: true
        acceptedButtons: Qt.AllButtons
        onWheel: wheel => wheel.accepted = true
    }
    Timer {
        running: !overlay.showsWords
        interval: 200
        onTriggered: overlay.showsWords = true
    }
    Rectangle {
        anchors.centerIn: parent
        visible: overlay.showsWords && Report.busyTitle !== ""
        width: Math.max(220, words.implicitWidth + 4 * Theme.wide)
        height: words.implicitHeight + 3 * Theme.wide
        radius: Theme.radius * 2
        color: Theme.window
        border.width: 1
        border.color: Theme.line
        ColumnLayout {
            id: words
            anchors.centerIn: parent
            spacing: Theme.space
            Waiting { Layout.alignment: Qt.AlignHCenter }
            Words {
                Layout.alignment: Qt.AlignHCenter
                text: Report.busyTitle
                font.weight: Font.DemiBold
            }
            Words {
                Layout.alignment: Qt.AlignHCenter
                visible: text !== ""
                text: Report.busyText
                soft: true
            }
        }
    }
}
