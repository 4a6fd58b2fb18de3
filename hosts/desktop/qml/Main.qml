// The window: sources and conversations at the left, the messages in the middle, the report at the right of them or,
// where there is no room for both, in their place.
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Chatsum

ApplicationWindow {
    id: window

    readonly property bool isOpen: Library.state === Library.Open
    readonly property bool isOpening: Library.state === Library.Opening || Library.state === Library.NeedsPassword
    property bool showsSettings: false
    readonly property int reportWidth: 400
    /// Whether the report stands beside the messages.
    readonly property bool isRoomy: middle.width >= reportWidth + 420

    /// For pictures: nothing moves or waits any more.
    readonly property bool isSettled: !isOpening && Messages.state !== Messages.Reading && !Report.busy && !Program.isPreparing && side.width > 0

    function openFolder() { dialogs.ask("FolderQuestion.qml") }
    function openFile() { dialogs.ask("FileQuestion.qml") }
    function openReport() {
        if (!isOpen || showsSettings || Report.isOpen) return
        if (device.app === "messages" && Messages.state !== Messages.Ready) return
        Program.openReport()
    }
    function back() {
        if (Report.busy) return
        if (showsSettings) showsSettings = false
        else if (Preview.path !== "") Preview.close()
        else if (Report.isOpen) Report.close()
        else if (device.finding) device.endFinding()
        else if (side.choosing) side.choosing = false
        else side.forceActiveFocus(Qt.OtherFocusReason)
    }

    readonly property string previewed: Preview.path

    function holds(page, item) {
        for (let at = item; at; at = at.parent) if (at === page) return true
        return false
    }
    /// When a page has gone the keyboard goes to the one in front now, unless it is somewhere already.
    function focusFront() {
        if (showsSettings) return
        const at = activeFocusItem
        const isGoing = previewed === "" && holds(preview, at) || !Report.isOpen && holds(report, at)
        if (at && at.activeFocusOnTab && at.visible && !isGoing) return
        const page = previewed !== "" ? preview.item : Report.isOpen ? report.item : isOpen ? main : side
        if (page) page.forceActiveFocus(Qt.OtherFocusReason)
    }
    onShowsSettingsChanged: Qt.callLater(focusFront)
    onPreviewedChanged: Qt.callLater(focusFront)

    // A report is written to its end before the window goes; when it fails, the window stays and tells why.
    property bool closesLater: false
    function closeNow() {
        closesLater = false
        if (Report.failure === "") close()
    }
    onClosing: close => {
        close.accepted = !Report.busy
        closesLater = Report.busy
    }
    Connections {
        target: Report
        function onIsOpenChanged() { if (!Report.isOpen) Qt.callLater(window.focusFront) }
        function onBusyChanged() { if (!Report.busy && window.closesLater) Qt.callLater(window.closeNow) }
    }

    width: 1180
    height: 760
    minimumWidth: 720
    minimumHeight: 480
    title: isOpen && Library.title !== "" ? Library.title + " – Chatsum" : "Chatsum"
    color: Theme.window
    palette {
        window: Theme.window
        windowText: Theme.text
        base: Theme.raised
        text: Theme.text
        button: Theme.pane
        buttonText: Theme.text
        highlight: Theme.bubbleMine
        highlightedText: Theme.text
        toolTipBase: Theme.raised
        toolTipText: Theme.text
        mid: Theme.line
        dark: Theme.softText
        light: Theme.hover
        midlight: Theme.hover
        placeholderText: Theme.softText
    }
    font.pixelSize: Theme.fontSize

    FocusScope {
        id: root
        anchors.fill: parent
        focus: true
        Keys.onEscapePressed: window.back()

        SideBar {
            id: side
            width: Math.min(WindowState.paneWidth, window.width - 400)
            height: parent.height
            focus: !window.showsSettings
            enabled: !Report.busy
            onFolderWanted: window.openFolder()
            onFileWanted: window.openFile()
            onSettingsWanted: window.showsSettings = true
            onConversationChosen: device.showTab(0)
        }
        Rectangle {
            x: side.width
            width: 1
            height: parent.height
            color: Theme.line
            MouseArea {
                anchors.fill: parent
                anchors.leftMargin: -4
                anchors.rightMargin: -4
                cursorShape: Qt.SplitHCursor
                onPositionChanged: mouse => WindowState.paneWidth = mapToItem(window.contentItem, mouse.x, 0).x
            }
        }

        Item {
            id: middle
            anchors.left: side.right
            anchors.leftMargin: 1
            anchors.right: parent.right
            anchors.top: parent.top
            anchors.bottom: parent.bottom
            clip: true

            property real reportShare: Report.isOpen ? 1 : 0
            Behavior on reportShare {
                enabled: Theme.moment > 0
                NumberAnimation { duration: Theme.moment; easing.type: Easing.OutCubic }
            }

            FocusScope {
                id: main
                anchors.fill: parent
                anchors.rightMargin: window.isRoomy ? (window.reportWidth + 1) * middle.reportShare : 0
                visible: !window.showsSettings && (window.isRoomy || middle.reportShare < 1)
                enabled: !Report.busy

                EmptyView {
                    anchors.fill: parent
                    visible: !window.isOpen && !window.isOpening
                    focus: visible
                    onFolderWanted: window.openFolder()
                }
                OpeningView {
                    anchors.fill: parent
                    visible: window.isOpening
                    focus: visible
                }
                DevicePane {
                    id: device
                    anchors.fill: parent
                    visible: window.isOpen
                    focus: visible
                    onFolderWanted: window.openFolder()
                    onReportWanted: window.openReport()
                }
            }
            Item {
                id: reportSide
                visible: middle.reportShare > 0 && !window.showsSettings
                width: window.isRoomy ? window.reportWidth + 1 : middle.width
                height: parent.height
                x: parent.width - width * middle.reportShare
                Rectangle {
                    anchors.fill: parent
                    color: Theme.window
                }
                Rectangle {
                    width: window.isRoomy ? 1 : 0
                    height: parent.height
                    color: Theme.line
                }
                Loader {
                    id: report
                    anchors.fill: parent
                    anchors.leftMargin: window.isRoomy ? 1 : 0
                    active: Report.isOpen || middle.reportShare > 0
                    source: "ReportPage.qml"
                    onLoaded: item.forceActiveFocus(Qt.OtherFocusReason)
                }
            }
            Loader {
                id: preview
                anchors.fill: parent
                active: Preview.path !== ""
                visible: active && !window.showsSettings
                source: "PreviewPage.qml"
                onLoaded: item.forceActiveFocus(Qt.OtherFocusReason)
            }
            Loader {
                anchors.fill: parent
                active: window.showsSettings
                sourceComponent: SettingsPage { onClosed: window.showsSettings = false }
                onLoaded: item.forceActiveFocus(Qt.OtherFocusReason)
            }
        }
    }

    PasswordDialog {}
    Loader {
        active: !!Report.alert
        sourceComponent: AlertDialog {
            alert: Report.alert
            onChosen: index => Report.choose(index)
        }
    }
    Loader {
        anchors.fill: parent
        active: Report.busy
        source: "BusyOverlay.qml"
    }

    DropArea {
        id: drop
        anchors.fill: parent
        enabled: !Report.busy
        keys: ["text/uri-list"]
        onDropped: event => { if (event.hasUrls) Sources.openUrl(event.urls[0]) }
        Rectangle {
            anchors.fill: parent
            anchors.margins: Theme.space
            visible: drop.containsDrag
            radius: Theme.radius * 2
            color: Theme.accentSoft
            opacity: 0.95
            border.width: 2
            border.color: Theme.focus
            Words {
                anchors.centerIn: parent
                width: parent.width - 2 * Theme.wide
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
                text: qsTr("Drop a backup, a folder or a store to open it")
                font.pixelSize: Theme.titleSize
            }
        }
    }

    // Made when it is asked for: a dialog for files takes longer to load than all the rest.
    Loader {
        id: dialogs
        function ask(page) {
            if (source.toString().endsWith(page)) item.open()
            else setSource(page)
        }
        onLoaded: item.open()
    }

    Shortcut { sequences: [StandardKey.Open]; enabled: !Report.busy; onActivated: window.openFolder() }
    Shortcut { sequence: "Ctrl+Shift+O"; enabled: !Report.busy; onActivated: window.openFile() }
    Shortcut { sequences: [StandardKey.Find]; enabled: !Report.busy && window.isOpen && !window.showsSettings; onActivated: device.find() }
    Shortcut { sequence: "Ctrl+L"; enabled: !Report.busy && window.isOpen && !window.showsSettings; onActivated: side.focusFind() }
    Shortcut { sequence: "Ctrl+R"; enabled: !Report.busy; onActivated: window.openReport() }
    Shortcut { sequence: "Ctrl+,"; enabled: !Report.busy; onActivated: window.showsSettings = !window.showsSettings }
    Shortcut { sequence: "Ctrl+1"; enabled: !Report.busy && window.isOpen; onActivated: device.showTab(0) }
    Shortcut { sequence: "Ctrl+2"; enabled: !Report.busy && window.isOpen; onActivated: device.showTab(1) }
    Shortcut { sequence: "Ctrl+3"; enabled: !Report.busy && window.isOpen; onActivated: device.showTab(2) }
    // Named as it is: not every platform has a standard key for it, and the same key twice is none.
    Shortcut { sequence: "Ctrl+Q"; onActivated: window.close() }
}
