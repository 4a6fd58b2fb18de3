// The calls of the phone or of FaceTime, and what of them goes into a report.
import QtQuick
import QtQuick.Layouts
import Chatsum

FocusScope {
    id: pane

    readonly property bool isFaceTime: Calls.app === "facetime"

    signal reportWanted()

    Accessible.role: Accessible.Pane
    Accessible.name: qsTr("Calls")

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        PaneHeader {
            Layout.fillWidth: true
            hasAvatar: false
            title: pane.isFaceTime ? qsTr("FaceTime calls") : qsTr("Phone calls")
            BalanceButton {
                balance: Calls.balance
                notes: Calls.notes
            }
            ReportButton {
                isReady: Selection.count > 0
                onClicked: pane.reportWanted()
            }
        }
        TickList {
            id: list
            objectName: "callList"
            Layout.fillWidth: true
            Layout.fillHeight: true
            focus: true
            model: Calls
            Accessible.name: qsTr("Calls")

            delegate: CallDelegate {
                width: ListView.view.width
                glyph: pane.isFaceTime ? "video" : "phone"
                ticking: list.ticking
                onClicked: {
                    list.forceActiveFocus(Qt.MouseFocusReason)
                    list.currentIndex = index
                }
                onTicked: (on, extend) => list.tick(index, on, extend)
            }
        }
        SelectionBar {
            Layout.fillWidth: true
            hasHits: false
        }
    }
    Connections {
        target: Calls
        function onAppChanged() {
            list.anchorRow = -1
            list.showBeginning()
        }
    }
}
