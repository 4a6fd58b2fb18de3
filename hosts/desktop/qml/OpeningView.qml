// While a source is being opened: what is done, how far it is, and a way out.
import QtQuick
import QtQuick.Layouts
import Chatsum

FocusScope {
    id: view

    readonly property bool isKnown: Library.progress >= 0

    ColumnLayout {
        anchors.centerIn: parent
        width: Math.min(400, parent.width - 4 * Theme.wide)
        spacing: Theme.wide

        Waiting {
            Layout.alignment: Qt.AlignHCenter
            Layout.preferredWidth: 40
            Layout.preferredHeight: 40
        }
        Words {
            Layout.fillWidth: true
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            font.pixelSize: Theme.largeSize
            text: Library.what !== "" ? Library.what : qsTr("Opening…")
        }
        Rectangle {
            Layout.fillWidth: true
            Layout.preferredHeight: 6
            radius: 3
            color: Theme.hover
            opacity: view.isKnown ? 1 : 0
            Accessible.role: Accessible.ProgressBar
            Accessible.name: Library.what
            Accessible.description: view.isKnown ? qsTr("%1%").arg(Math.round(Library.progress * 100)) : ""
            Rectangle {
                width: parent.width * Math.max(0, Math.min(1, Library.progress))
                height: parent.height
                radius: 3
                color: Theme.bubbleMine
            }
        }
        ActionButton {
            Layout.alignment: Qt.AlignHCenter
            objectName: "cancelOpening"
            focus: true
            text: qsTr("Cancel")
            onClicked: Library.cancel()
        }
    }
}
