// One report, to be looked at and copied to where the user wants it.
import QtQuick
import QtQuick.Layouts
import Chatsum

FocusScope {
    id: page

    property string told: ""
    property bool isFailure: false

    function copy() {
        told = ""
        if (dialog.item) dialog.item.open()
        else dialog.source = "PreviewCopyDialog.qml"
    }
    function tell(sentence, isFailed) {
        isFailure = isFailed
        told = sentence
    }

    Accessible.role: Accessible.Pane
    Accessible.name: Preview.name

    Rectangle {
        anchors.fill: parent
        color: Theme.window
    }
    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        PaneHeader {
            Layout.fillWidth: true
            hasAvatar: false
            title: Preview.name
            ActionButton {
                objectName: "exportReport"
                glyph: "export"
                text: qsTr("Export…")
                enabled: Preview.problem === "" && !Preview.isExporting
                onClicked: page.copy()
            }
            GlyphButton {
                objectName: "closePreview"
                glyph: "close"
                text: qsTr("Close")
                keys: qsTr("Esc")
                onClicked: Preview.close()
            }
        }
        NoteLine {
            Layout.fillWidth: true
            Layout.margins: Theme.wide
            isProblem: true
            text: Preview.problem
        }
        NoteLine {
            objectName: "exportNote"
            Layout.fillWidth: true
            Layout.margins: Theme.wide
            isProblem: page.isFailure
            text: page.told
        }
        Loader {
            id: content
            objectName: "previewContent"
            Layout.fillWidth: true
            Layout.fillHeight: true
            focus: true
            source: Preview.problem !== "" ? "" : Preview.kind === "pdf" ? "PreviewPdf.qml"
                : Preview.kind === "csv" ? "PreviewTable.qml" : Preview.kind === "text" ? "PreviewText.qml" : ""
        }
    }
    // A dialog for files takes longer to load than all the rest.
    Loader {
        id: dialog
        onLoaded: item.open()
    }
    Loader {
        active: !!Preview.question
        sourceComponent: AlertDialog {
            alert: Preview.question
            onChosen: index => Preview.answer(index)
        }
    }
    Connections {
        target: Preview
        function onExported(path) { page.tell(qsTr("A copy is now at “%1”.").arg(path), false) }
        function onExportFailed(sentence) { page.tell(sentence, true) }
    }
    Shortcut {
        sequences: [StandardKey.SaveAs, StandardKey.Save]
        enabled: page.visible && Preview.problem === ""
        onActivated: page.copy()
    }
}
