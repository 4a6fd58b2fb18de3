import QtQuick
import QtTest
import Chatsum
import "qrc:/chatsum/qml" as Ui

Item {
    width: 800
    height: 200

    Ui.SelectionBar { id: bar; width: parent.width }

    TestCase {
        name: "SelectionBar"
        when: windowShown

        readonly property var modes: findChild(bar, "selectionModes")

        function init() {
            Report.isOpen = false
            Selection.reset()
            Messages.reset()
            Selection.count = 12
            Selection.total = 480
        }

        function test_it_says_how_much_the_report_holds() {
            compare(findChild(bar, "selectionCount").text, "12 of 480 rows in the report")
            Selection.count = 480
            compare(findChild(bar, "selectionCount").text, "480 of 480 rows in the report")
        }
        function test_a_choice_sets_the_mode() {
            modes.choose(1)
            compare(Selection.mode, Selection.Ticked)
            modes.choose(0)
            compare(Selection.mode, Selection.All)
        }
        function test_hits_need_a_search() {
            modes.choose(3)
            compare(Selection.mode, Selection.All)
            Messages.hits = 4
            modes.choose(3)
            compare(Selection.mode, Selection.Hits)
        }
        function test_dates_are_asked_for_only_when_they_count() {
            const since = findChild(bar, "since")
            verify(!since.visible)
            modes.choose(2)
            compare(Selection.mode, Selection.Range)
            verify(since.visible)
            tryVerify(() => bar.height > 80)
        }
        function test_what_is_typed_becomes_the_range() {
            Selection.mode = Selection.Range
            waitForRendering(bar)
            findChild(bar, "since").forceActiveFocus()
            for (const key of "2024") keyClick(key)
            compare(Selection.since, "2024")
            findChild(bar, "until").forceActiveFocus()
            keyClick("3")
            compare(Selection.until, "3")
        }
        function test_a_date_that_is_none_is_shown_as_wrong() {
            Selection.mode = Selection.Range
            const since = findChild(bar, "since")
            verify(!since.wrong)
            Selection.sinceValid = false
            verify(since.wrong)
            verify(!findChild(bar, "until").wrong)
        }
        function test_an_open_report_locks_it() {
            Report.isOpen = true
            verify(!modes.enabled)
        }
    }
}
