// Asks for a store of messages or calls.
import QtQuick.Dialogs
import Chatsum

FileDialog {
    title: qsTr("Open a store of messages or calls")
    nameFilters: [qsTr("Stores") + " (*.db *.storedata *.sqlite)", qsTr("All files") + " (*)"]
    onAccepted: Sources.openUrl(selectedFile)
}
