import QtQuick
import QtTest
import Chatsum
import "qrc:/chatsum/qml" as Ui

Item {
    width: 320
    height: 400

    Ui.ConversationPane { id: pane; anchors.fill: parent }
    SignalSpy { id: chosen; target: pane; signalName: "chosen" }

    TestCase {
        name: "ConversationPane"
        when: windowShown

        readonly property var list: findChild(pane, "conversationList")
        readonly property var find: findChild(pane, "conversationFind")

        function init() {
            Conversations.fill()
            find.clear()
            list.currentIndex = 0
            list.forceActiveFocus()
            chosen.clear()
        }

        function test_each_conversation_tells_people_day_and_amount() {
            const row = list.itemAtIndex(0)
            compare(row.Accessible.name, "Maya Torres, 480 messages, Today")
            compare(list.itemAtIndex(2).Accessible.description, "Maya, Daniel, Theo")
        }
        function test_a_click_selects() {
            mouseClick(list.itemAtIndex(1))
            compare(Conversations.asked, ["guid1"])
            compare(chosen.count, 1)
            verify(list.itemAtIndex(1).selected)
            verify(list.itemAtIndex(1).Accessible.selected)
            verify(!list.itemAtIndex(0).selected)
        }
        function test_arrows_move_and_enter_selects() {
            keyClick(Qt.Key_Down)
            keyClick(Qt.Key_Down)
            compare(Conversations.asked, [])
            keyClick(Qt.Key_Return)
            compare(Conversations.asked, ["guid2"])
        }
        function test_home_and_end_go_to_the_ends() {
            keyClick(Qt.Key_End)
            compare(list.currentIndex, list.count - 1)
            keyClick(Qt.Key_Home)
            compare(list.currentIndex, 0)
            keyClick(Qt.Key_PageDown)
            verify(list.currentIndex > 1)
        }
        function test_typing_filters_and_down_goes_to_the_list() {
            pane.focusFind()
            verify(find.activeFocus)
            keyClick("m"); keyClick("a")
            compare(Conversations.filter, "ma")
            keyClick(Qt.Key_Down)
            verify(list.activeFocus)
        }
        function test_escape_takes_the_filter_away() {
            pane.focusFind()
            keyClick("m")
            keyClick(Qt.Key_Escape)
            compare(Conversations.filter, "")
            compare(find.text, "")
        }
        function test_a_device_that_is_closed_takes_the_filter_along() {
            pane.focusFind()
            keyClick("m")
            Conversations.filter = ""
            compare(find.text, "")
        }
        function test_a_device_without_readable_messages_says_why() {
            const hint = findChild(pane, "conversationHint")
            Conversations.clear()
            tryVerify(() => hint.visible)
            compare(hint.text, "There are no conversations.")
            Library.hasMessages = false
            Library.notes = ["'sms.db' is damaged; copy it again.", "There is no address book."]
            compare(hint.text, "'sms.db' is damaged; copy it again.\n\nThere is no address book.")
            Library.reset()
        }
        function test_a_reader_can_press_a_row() {
            list.itemAtIndex(1).Accessible.pressAction()
            compare(Conversations.asked, ["guid1"])
        }
    }
}
