// Asks for the folder of a backup or a device.
import QtQuick.Dialogs
import Chatsum

FolderDialog {
    title: qsTr("Open a backup or a device's folder")
    onAccepted: Sources.openUrl(selectedFolder)
}
