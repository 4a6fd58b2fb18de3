// The pages of a PDF report, one below the other. Page Up, Page Down, Home, End and the arrows move, Ctrl with plus,
// minus and 0 change the size.
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Chatsum

FocusScope {
    id: viewer

    readonly property bool isBroken: Preview.pages.isBroken
    /// Of the width; kept between a glance at the whole page and reading a word.
    property real zoom: 1

    function enlarge(by) { zoom = Math.min(4, Math.max(0.25, zoom * by)) }

    objectName: "previewPdf"
    focus: true
    Accessible.role: Accessible.Document
    Accessible.name: qsTr("Page %L1 of %L2").arg(list.page + 1).arg(list.count)

    Rectangle {
        anchors.fill: parent
        color: Theme.pane
    }
    NoteLine {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.margins: Theme.wide
        isProblem: true
        text: viewer.isBroken ? qsTr("This PDF cannot be shown; the file is damaged or not whole.") : ""
    }
    ListView {
        id: list
        objectName: "pdfPages"

        readonly property int page: Math.max(0, indexAt(contentWidth / 2, contentY + height / 3))
        readonly property real pageWidth: Math.min(900, viewer.width - 2 * Theme.wide) * viewer.zoom

        anchors.fill: parent
        focus: true
        clip: true
        visible: !viewer.isBroken
        boundsBehavior: Flickable.StopAtBounds
        flickableDirection: Flickable.AutoFlickIfNeeded
        contentWidth: Math.max(width, pageWidth + 2 * Theme.wide)
        spacing: Theme.wide
        topMargin: Theme.wide
        bottomMargin: Theme.wide
        cacheBuffer: height
        model: Preview.pages
        delegate: Item {
            id: leaf
            required property int index
            required property size pageSize
            required property string picture
            width: list.contentWidth
            height: pageSize.width > 0 ? list.pageWidth * pageSize.height / pageSize.width : 1
            Rectangle {
                anchors.centerIn: parent
                width: list.pageWidth
                height: leaf.height
                color: "white"
                border.width: 1
                border.color: Theme.line
                Image {
                    anchors.fill: parent
                    source: leaf.picture
                    cache: false
                    fillMode: Image.PreserveAspectFit
                    sourceSize.width: list.pageWidth * Screen.devicePixelRatio
                }
            }
            Accessible.role: Accessible.Graphic
            Accessible.name: qsTr("Page %L1").arg(index + 1)
        }
        ScrollBar.vertical: ThinScrollBar { }
        ScrollBar.horizontal: ThinScrollBar { }

        function move(by) {
            const most = Math.max(originY - topMargin, originY + contentHeight + bottomMargin - height)
            contentY = Math.min(most, Math.max(originY - topMargin, contentY + by))
        }
        Keys.onPressed: event => {
            event.accepted = true
            if (event.key === Qt.Key_Down) move(Theme.control)
            else if (event.key === Qt.Key_Up) move(-Theme.control)
            else if (event.key === Qt.Key_PageDown || event.key === Qt.Key_Space) move(height * 0.9)
            else if (event.key === Qt.Key_PageUp) move(-height * 0.9)
            else if (event.key === Qt.Key_Home) positionViewAtBeginning()
            else if (event.key === Qt.Key_End) positionViewAtEnd()
            else event.accepted = false
        }
    }
    Rectangle {
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: parent.bottom
        anchors.bottomMargin: Theme.wide
        visible: list.count > 0
        width: bar.implicitWidth + 2 * Theme.space
        height: bar.implicitHeight
        radius: Theme.radius
        color: Theme.raised
        border.width: 1
        border.color: Theme.line
        RowLayout {
            id: bar
            anchors.centerIn: parent
            Words {
                Layout.margins: Theme.space
                text: qsTr("Page %L1 of %L2").arg(list.page + 1).arg(list.count)
                soft: true
                font.pixelSize: Theme.smallSize
            }
        }
    }
    Shortcut { sequences: [StandardKey.ZoomIn]; enabled: viewer.visible; onActivated: viewer.enlarge(1.25) }
    Shortcut { sequences: [StandardKey.ZoomOut]; enabled: viewer.visible; onActivated: viewer.enlarge(0.8) }
    Shortcut { sequence: "Ctrl+0"; enabled: viewer.visible; onActivated: viewer.zoom = 1 }
}
