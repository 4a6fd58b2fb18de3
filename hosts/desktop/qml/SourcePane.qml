// The devices, backups and stores that were found or opened before.
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Chatsum

FocusScope {
    id: pane

    signal folderWanted()
    signal fileWanted()
    signal chosen()

    function open(path) {
        chosen()
        Library.open(path)
    }

    Accessible.role: Accessible.Pane
    Accessible.name: qsTr("Sources")

    ColumnLayout {
        anchors.fill: parent
        spacing: Theme.space

        RowLayout {
            Layout.leftMargin: Theme.wide
            Layout.rightMargin: Theme.space
            Layout.topMargin: Theme.space
            Words {
                text: qsTr("Sources")
                font.pixelSize: Theme.largeSize
                font.weight: Font.DemiBold
                Layout.fillWidth: true
                Accessible.role: Accessible.Heading
            }
            Waiting {
                visible: Sources.searching
                Layout.preferredWidth: 18
                Layout.preferredHeight: 18
            }
            GlyphButton {
                objectName: "searchAgain"
                glyph: "refresh"
                text: qsTr("Search again")
                enabled: !Sources.searching
                onClicked: Sources.search()
            }
        }

        ListView {
            id: list
            objectName: "sourceList"
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.leftMargin: Theme.space
            Layout.rightMargin: Theme.space
            clip: true
            focus: true
            activeFocusOnTab: true
            boundsBehavior: Flickable.StopAtBounds
            highlightMoveDuration: 0
            model: Sources
            ScrollBar.vertical: ThinScrollBar {}
            Accessible.role: Accessible.List
            Accessible.name: qsTr("Devices and backups")

            delegate: SourceDelegate {
                width: ListView.view.width
                onOpened: pane.open(path)
                onForgotten: Sources.forget(path)
            }
            Keys.onReturnPressed: if (currentItem) pane.open(currentItem.path)
            Keys.onEnterPressed: if (currentItem) pane.open(currentItem.path)
            Keys.onSpacePressed: if (currentItem) pane.open(currentItem.path)
            Keys.onDeletePressed: if (currentItem && currentItem.isRecent) Sources.forget(currentItem.path)

            Words {
                anchors.fill: parent
                anchors.margins: Theme.space
                objectName: "sourceHint"
                visible: list.count === 0
                soft: true
                wrapMode: Text.Wrap
                text: Sources.searching ? qsTr("Looking for backups…")
                                        : qsTr("No backup was found in the usual places. Open one, or drop its folder here.")
            }
        }

        // What could not be looked at.
        ListView {
            objectName: "sourceNotes"
            Layout.fillWidth: true
            Layout.leftMargin: Theme.wide
            Layout.rightMargin: Theme.wide
            Layout.preferredHeight: Math.min(contentHeight, pane.height / 4)
            visible: count > 0
            clip: true
            spacing: Theme.space
            boundsBehavior: Flickable.StopAtBounds
            model: Sources.searching ? [] : Sources.notes
            delegate: NoteLine {
                required property string modelData
                width: ListView.view.width
                text: modelData
            }
        }
        ColumnLayout {
            spacing: Theme.space
            Layout.margins: Theme.wide
            Layout.topMargin: 0
            ActionButton {
                Layout.fillWidth: true
                objectName: "openFolder"
                text: qsTr("Open folder…")
                glyph: "folder"
                onClicked: pane.folderWanted()
            }
            ActionButton {
                Layout.fillWidth: true
                objectName: "openFile"
                text: qsTr("Open file…")
                glyph: "file"
                onClicked: pane.fileWanted()
            }
            ActionButton {
                Layout.fillWidth: true
                objectName: "openSample"
                visible: Sources.sampleAvailable
                text: qsTr("Sample device")
                glyph: "device"
                onClicked: {
                    pane.chosen()
                    Library.openSample()
                }
            }
        }
    }
}
