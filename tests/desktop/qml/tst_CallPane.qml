import QtQuick
import QtTest
import Chatsum
import "qrc:/chatsum/qml" as Ui

Item {
    width: 700
    height: 400

    Ui.CallPane { id: pane; anchors.fill: parent }
    SignalSpy { id: reports; target: pane; signalName: "reportWanted" }

    TestCase {
        name: "CallPane"
        when: windowShown

        readonly property var list: findChild(pane, "callList")

        function init() {
            Report.isOpen = false
            Selection.reset()
            Calls.fill()
            Selection.count = Selection.total = 3
            waitForRendering(list)
            reports.clear()
        }

        function test_each_call_says_who_what_and_when() {
            compare(list.itemAtIndex(0).Accessible.name, "Maya Torres, Outgoing call, 3 min 12 s · answered · 0:03:12, Today, 09:41")
        }
        function test_a_missed_call_stands_out() {
            verify(list.itemAtIndex(1).isMissed)
            verify(!list.itemAtIndex(0).isMissed)
        }
        function test_calls_are_ticked_like_messages() {
            mouseClick(list.itemAtIndex(0))
            compare(Selection.asked, [])
            Selection.mode = Selection.Ticked
            waitForRendering(list)
            mouseClick(list.itemAtIndex(0))
            mouseClick(list.itemAtIndex(2), 10, 10, Qt.LeftButton, Qt.ShiftModifier)
            compare(Selection.asked, ["tick 0 true", "range 0 2"])
        }
        function test_there_are_no_hits_to_take() {
            Messages.hits = 5
            findChild(pane, "selectionModes").choose(3)
            compare(Selection.mode, Selection.All)
        }
        function test_the_report_button_asks_for_a_report() {
            mouseClick(findChild(pane, "openReport"))
            compare(reports.count, 1)
            Report.isOpen = true
            verify(!findChild(pane, "openReport").visible)
        }
    }
}
