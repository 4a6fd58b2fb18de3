// One row of the report screen, with the title of its section over it or the footer under it where it is the first or
// the last one.
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Chatsum

Item {
    id: row

    required property int index
    required property string kind
    required property string title
    required property string detail
    required property string fileName
    required property string size
    required property string icon
    required property bool editable
    required property string sectionTitle
    required property string sectionFooter
    /// Whether the keyboard is on it.
    readonly property bool isCurrent: ListView.isCurrentItem && ListView.view.activeFocus

    signal used()
    signal menuWanted(Item item, real x, real y)

    function edit() { if (kind === "name" && content.item) content.item.edit() }

    width: ListView.view ? ListView.view.width : implicitWidth
    implicitHeight: column.implicitHeight

    ColumnLayout {
        id: column
        width: parent.width
        spacing: Theme.space
        Words {
            Layout.fillWidth: true
            Layout.topMargin: Theme.wide
            Layout.leftMargin: 4
            visible: text !== ""
            text: row.sectionTitle
            soft: true
            font.pixelSize: Theme.smallSize
            font.weight: Font.DemiBold
            Accessible.role: Accessible.Heading
        }
        Loader {
            id: content
            Layout.fillWidth: true
            sourceComponent: row.kind === "name" ? nameRow : row.kind === "choice" ? choiceRow : fileRow
        }
        Words {
            Layout.fillWidth: true
            Layout.leftMargin: 4
            visible: text !== ""
            text: row.sectionFooter
            soft: true
            wrapMode: Text.Wrap
            font.pixelSize: Theme.smallSize
        }
    }
    Component {
        id: nameRow
        ReportPageName {
            title: row.title
            isCurrent: row.isCurrent
            onEnded: if (row.ListView.view) row.ListView.view.forceActiveFocus(Qt.OtherFocusReason)
        }
    }
    Component {
        id: choiceRow
        ReportPageChoice {
            text: row.title
            detail: row.detail
            isCurrent: row.isCurrent
            onClicked: row.used()
        }
    }
    Component {
        id: fileRow
        ReportPageFile {
            id: file
            index: row.index
            text: row.title
            fileName: row.fileName
            detail: row.detail
            size: row.size
            picture: row.icon
            isCurrent: row.isCurrent
            onUsed: row.used()
            onMenuWanted: (x, y) => row.menuWanted(file, x, y)
        }
    }
}
