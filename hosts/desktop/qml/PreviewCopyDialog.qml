// Asks where a copy of the report shall go.
import QtQuick.Dialogs
import Chatsum

FileDialog {
    title: qsTr("Export a copy")
    fileMode: FileDialog.SaveFile
    acceptLabel: qsTr("Save")
    selectedFile: Preview.suggestedCopy
    onAccepted: Preview.exportTo(selectedFile)
}
