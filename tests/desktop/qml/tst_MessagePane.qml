import QtQuick
import QtTest
import Chatsum
import "qrc:/chatsum/qml" as Ui

Item {
    id: around
    width: 700
    height: 600

    property int escapes: 0
    Keys.onEscapePressed: ++escapes

    Ui.MessagePane { id: pane; anchors.fill: parent }
    SignalSpy { id: reports; target: pane; signalName: "reportWanted" }

    TestCase {
        name: "MessagePane"
        when: windowShown

        readonly property var list: findChild(pane, "messageList")
        readonly property var entry: findChild(pane, "messageFind")

        function init() {
            Report.isOpen = false
            Selection.reset()
            Messages.reset()
            Conversations.fill()
            Conversations.select("guid0")
            pane.finding = false
        }
        function showMessages(count) {
            Messages.fill(count)
            Selection.count = Selection.total = count
            Messages.asked = []
            tryCompare(list, "currentIndex", count - 1)
            waitForRendering(list)
        }

        function test_while_reading_nothing_can_be_done() {
            Messages.state = Messages.Reading
            verify(!list.visible)
            verify(!findChild(pane, "openReport").enabled)
            pane.find()
            verify(!pane.finding)
        }
        function test_the_newest_message_is_shown_first() {
            showMessages(60)
            verify(list.atYEnd)
            verify(list.itemAtIndex(59) !== null)
            compare(list.itemAtIndex(0), null)
        }
        function test_what_is_out_of_sight_does_not_exist() {
            showMessages(5000)
            let made = 0
            for (let i = 0; i < 5000; ++i) if (list.itemAtIndex(i)) ++made
            verify(made < 60, made)
            list.showBeginning()
            waitForRendering(list)
            compare(list.currentIndex, 0)
            compare(list.itemAtIndex(4999), null)
        }
        function test_bubbles_stand_by_direction() {
            showMessages(12)
            const theirs = list.itemAtIndex(10), mine = list.itemAtIndex(11)
            verify(!theirs.isFromMe && mine.isFromMe)
            compare(theirs.Accessible.name, "Maya Torres, 09:20, Did you see the forecast? They say it might rain in the afternoon, but it should clear up by four.")
        }
        function test_names_stand_in_groups_only() {
            showMessages(12)
            verify(!list.isGroup)
            Conversations.select("guid2")
            verify(list.isGroup)
        }
        function test_the_way_of_a_message_stands_over_its_words() {
            showMessages(3)
            Messages.row({ text: "By text message", name: "Maya Torres", timeText: "10:00", origin: "+15550100142 · SMS" })
            tryVerify(() => list.itemAtIndex(3) !== null)
            const row = list.itemAtIndex(3)
            const way = findChild(row, "origin")
            verify(way.visible)
            compare(way.text, "+15550100142 · SMS")
            compare(row.Accessible.name, "Maya Torres, +15550100142 · SMS, 10:00, By text message")
            verify(!findChild(list.itemAtIndex(2), "origin").visible)
        }
        function test_an_attachment_is_named() {
            showMessages(3)
            Messages.row({ attachment: { kind: "pdf", name: "Tickets.pdf", url: "" }, name: "Maya Torres", timeText: "10:00" })
            tryVerify(() => list.itemAtIndex(3) !== null)
            const row = list.itemAtIndex(3)
            verify(row.hasAttachment && !row.hasPicture)
            compare(row.Accessible.name, "Maya Torres, 10:00, Tickets.pdf")
        }
        function test_a_picture_that_is_broken_shows_its_name() {
            showMessages(3)
            ignoreWarning(/Cannot open|Failed/)
            Messages.row({ attachment: { kind: "image", name: "IMG_1.jpg", url: "file:///nowhere/IMG_1.jpg" } })
            tryVerify(() => list.itemAtIndex(3) !== null)
            tryCompare(list.itemAtIndex(3), "hasPicture", false)
        }

        function test_ticks_by_mouse_and_shift() {
            showMessages(12)
            mouseClick(list.itemAtIndex(11))
            compare(Selection.asked, [])
            Selection.mode = Selection.Ticked
            waitForRendering(list)
            mouseClick(list.itemAtIndex(11))
            mouseClick(list.itemAtIndex(8), 20, list.itemAtIndex(8).height - 8, Qt.LeftButton, Qt.ShiftModifier)
            compare(Selection.asked, ["tick 11 true", "range 11 8"])
        }
        function test_ticks_by_keyboard() {
            showMessages(12)
            Selection.mode = Selection.Ticked
            list.forceActiveFocus()
            keyClick(Qt.Key_Up)
            keyClick(Qt.Key_Space)
            keyClick(Qt.Key_Up, Qt.ShiftModifier)
            compare(Selection.asked, ["tick 10 true", "range 10 9"])
        }
        function test_keys_move_through_the_messages() {
            showMessages(60)
            list.forceActiveFocus()
            keyClick(Qt.Key_Home)
            compare(list.currentIndex, 0)
            verify(list.atYBeginning)
            keyClick(Qt.Key_PageDown)
            verify(list.currentIndex > 3)
            keyClick(Qt.Key_End)
            compare(list.currentIndex, 59)
        }
        function test_an_open_report_keeps_its_messages() {
            showMessages(12)
            Selection.mode = Selection.Ticked
            Report.isOpen = true
            list.tick(3, true, false)
            compare(Selection.asked, [])
            verify(!findChild(pane, "selectionModes").enabled)
        }

        function test_a_search_waits_for_the_word_to_end() {
            showMessages(12)
            pane.find()
            verify(entry.activeFocus)
            keyClick("r"); keyClick("i")
            compare(Messages.asked, [])
            tryCompare(Messages, "asked", ["search ri"])
            keyClick("d")
            keyClick(Qt.Key_Return)
            compare(Messages.asked, ["search ri", "search rid"])
            keyClick(Qt.Key_Return)
            compare(Messages.asked[2], "next")
            keyClick(Qt.Key_Up)
            compare(Messages.asked[3], "previous")
        }
        function test_the_current_hit_is_brought_into_view() {
            showMessages(200)
            pane.find()
            keyClick("r")
            Messages.hits = 3
            Messages.currentHitRow = 20
            Messages.currentHit = 1
            tryCompare(list, "currentIndex", 20)
            verify(list.itemAtIndex(20) !== null)
            tryCompare(findChild(pane, "hitsText"), "text", "2 of 3")
        }
        function test_a_search_begins_at_what_is_shown() {
            showMessages(200)
            pane.find()
            keyClick("r")
            keyClick(Qt.Key_Return)
            compare(Messages.askedFrom, 199)
            // The hit it is at stays where it is while more is typed.
            Messages.hits = 3
            Messages.currentHitRow = 120
            Messages.currentHit = 1
            tryCompare(list, "currentIndex", 120)
            keyClick("i")
            keyClick(Qt.Key_Return)
            compare(Messages.askedFrom, 120)
            list.showBeginning()
            waitForRendering(list)
            keyClick("d")
            keyClick(Qt.Key_Return)
            verify(Messages.askedFrom >= 0 && Messages.askedFrom < 30, Messages.askedFrom)
            verify(list.itemAtIndex(Messages.askedFrom) !== null)
        }
        function test_escape_in_the_search_ends_it_and_nothing_else() {
            showMessages(12)
            pane.find()
            keyClick("r")
            around.escapes = 0
            keyClick(Qt.Key_Escape)
            verify(!pane.finding)
            compare(around.escapes, 0)
            keyClick(Qt.Key_Escape)
            compare(around.escapes, 1)
        }
        function test_a_text_that_was_pasted_by_mistake_is_cut() {
            showMessages(12)
            pane.find()
            entry.text = "x".repeat(100000)
            compare(entry.text.length, 2000)
        }
        function test_no_hit_is_said() {
            showMessages(12)
            pane.find()
            keyClick("x")
            tryCompare(findChild(pane, "hitsText"), "text", "Not found")
        }
        function test_the_end_of_a_search_forgets_it() {
            showMessages(12)
            pane.find()
            keyClick("r")
            pane.endFinding()
            verify(!pane.finding)
            compare(Messages.asked[Messages.asked.length - 1], "search ")
            compare(entry.text, "")
            verify(list.activeFocus)
        }

        function test_the_report_button_needs_messages() {
            showMessages(12)
            mouseClick(findChild(pane, "openReport"))
            compare(reports.count, 1)
            Selection.count = 0
            verify(!findChild(pane, "openReport").enabled)
        }
        function test_a_failure_is_told() {
            Messages.error = "The store changed while it was read; open it again."
            Messages.state = Messages.Failed
            verify(!list.visible)
            verify(findChild(pane, "messagesFailed").visible)
            compare(findChild(pane, "messagesFailed").text, Messages.error)
        }
        function test_what_failed_can_be_tried_again() {
            verify(!findChild(pane, "readAgain").visible)
            Messages.error = "The store changed while it was read; open it again."
            Messages.state = Messages.Failed
            waitForRendering(pane)
            Conversations.asked = []
            mouseClick(findChild(pane, "readAgain"))
            compare(Conversations.asked, ["again"])
        }
        function test_a_very_long_message_is_not_read_out_whole() {
            showMessages(3)
            Messages.row({ text: "word ".repeat(3000), name: "Maya Torres", timeText: "10:00" })
            tryVerify(() => list.itemAtIndex(3) !== null)
            const spoken = list.itemAtIndex(3).Accessible.name
            verify(spoken.startsWith("Maya Torres, 10:00, word word"))
            verify(spoken.endsWith("…") && spoken.length < 1100, spoken.length)
        }
        function test_a_name_takes_one_line() {
            Conversations.select("guid2")
            showMessages(3)
            Messages.row({ text: "Hello", name: "Maya\nTorres\nand\nmore" })
            tryVerify(() => list.itemAtIndex(3) !== null)
            verify(list.itemAtIndex(3).height < list.itemAtIndex(2).height + 60)
            compare(findChild(list.itemAtIndex(3), "sender").lineCount, 1)
        }
    }
}
