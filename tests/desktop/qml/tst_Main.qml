import QtQuick
import QtTest
import Chatsum

Item {
    width: 100
    height: 100

    TestCase {
        name: "Main"
        when: windowShown

        property var window: null

        function init() {
            Library.reset()
            Report.isOpen = false
            Preview.path = ""
            Selection.reset()
            Messages.reset()
            Conversations.fill()
            Sources.fill()
            Program.asked = []
            const component = Qt.createComponent("qrc:/chatsum/qml/Main.qml")
            if (component.status !== Component.Ready) fail(component.errorString())
            window = createTemporaryObject(component, null, { visible: true })
            window.requestActivate()
            tryCompare(window, "active", true)
        }
        function openDevice() {
            Library.beOpen()
            waitForRendering(window.contentItem)
        }
        function openConversation() {
            openDevice()
            Messages.fill(40)
            Selection.count = Selection.total = 40
            Conversations.select("guid0")
            waitForRendering(window.contentItem)
        }
        function child(name) { return findChild(window.contentItem, name) }
        function key(code, modifiers) { keyClick(code, modifiers === undefined ? Qt.NoModifier : modifiers) }

        function test_it_begins_with_the_sources() {
            verify(child("sourceList").visible)
            verify(!child("conversationList").visible)
            verify(child("emptyOpen").visible)
            compare(window.title, "Chatsum")
        }
        function test_an_open_device_shows_its_conversations() {
            openDevice()
            verify(child("conversationList").visible)
            verify(!child("sourceList").visible)
            compare(window.title, "Alex's iPhone – Chatsum")
        }
        function test_a_window_that_is_closed_waits_for_its_report_and_stays_when_that_fails() {
            openDevice()
            Report.busy = true
            window.close()
            verify(window.visible)
            Report.busy = false
            Report.failure = "There is no room left."
            wait(50)
            verify(window.visible)
            Report.failure = ""
            Report.busy = true
            window.close()
            verify(window.visible)
            Report.busy = false
            tryCompare(window, "visible", false)
        }
        function test_the_usual_keys_close_the_window() {
            key(Qt.Key_Q, Qt.ControlModifier)
            tryCompare(window, "visible", false)
        }
        function test_other_sources_are_a_button_away() {
            openDevice()
            mouseClick(child("otherSources"))
            verify(child("sourceList").visible)
            key(Qt.Key_Escape)
            verify(child("conversationList").visible)
        }
        function test_tabs_are_there_for_what_the_source_has() {
            openDevice()
            verify(!child("tabs").visible)
            Library.hasPhone = true
            verify(child("tabs").visible)
            compare(child("tabs").choices.length, 2)
            key(Qt.Key_2, Qt.ControlModifier)
            compare(Selection.app, "phone")
            verify(child("callList").visible)
            mouseClick(child("conversationList").itemAtIndex(1))
            compare(Selection.app, "messages")
        }
        function test_ctrl_f_searches_the_conversation() {
            openConversation()
            key(Qt.Key_F, Qt.ControlModifier)
            verify(child("messageFind").activeFocus)
            key(Qt.Key_Escape)
            verify(!child("messageFind").visible)
        }
        function test_ctrl_r_asks_for_a_report() {
            key(Qt.Key_R, Qt.ControlModifier)
            compare(Program.asked, [])
            openConversation()
            key(Qt.Key_R, Qt.ControlModifier)
            compare(Program.asked, ["report"])
        }
        function test_the_report_stands_beside_the_messages_where_there_is_room() {
            openConversation()
            window.width = 1200
            Report.isOpen = true
            tryCompare(window, "isRoomy", true)
            verify(child("messageList").visible)
            verify(child("generate").visible)
            window.width = 800
            tryCompare(window, "isRoomy", false)
            verify(!child("messageList").visible)
            verify(child("generate").visible)
            key(Qt.Key_Escape)
            verify(!Report.isOpen)
            tryVerify(() => child("messageList").visible)
        }
        function test_settings_come_and_go() {
            key(Qt.Key_Comma, Qt.ControlModifier)
            verify(child("settingsDone").visible)
            verify(child("settingsDone").activeFocus)
            key(Qt.Key_Escape)
            tryCompare(window, "showsSettings", false)
        }
        function test_escape_goes_back_one_step_at_a_time() {
            openConversation()
            Report.isOpen = true
            key(Qt.Key_Comma, Qt.ControlModifier)
            verify(window.showsSettings)
            key(Qt.Key_Escape)
            verify(!window.showsSettings && Report.isOpen)
            key(Qt.Key_Escape)
            verify(!Report.isOpen)
        }

        /// Every item that can have the keyboard, in the order of the Tab key.
        function tabStops() {
            const stops = []
            for (let i = 0; i < 80; ++i) {
                keyClick(Qt.Key_Tab)
                const item = window.activeFocusItem
                if (stops.includes(item)) break
                stops.push(item)
            }
            return stops
        }
        function test_the_tab_key_reaches_everything_and_all_of_it_has_a_name_data() {
            return [{ tag: "sources" }, { tag: "messages" }, { tag: "calls" }, { tag: "settings" }]
        }
        function test_the_tab_key_reaches_everything_and_all_of_it_has_a_name(data) {
            if (data.tag !== "sources") openConversation()
            Library.hasPhone = Library.hasFaceTime = data.tag === "calls"
            if (data.tag === "calls") {
                Calls.fill()
                key(Qt.Key_2, Qt.ControlModifier)
            }
            if (data.tag === "settings") key(Qt.Key_Comma, Qt.ControlModifier)
            const wanted = { sources: ["sourceList", "searchAgain", "openFolder", "openFile", "openSample", "openSettings", "emptyOpen"],
                             messages: ["conversationFind", "conversationList", "otherSources", "openSettings", "messageList", "openReport"],
                             calls: ["callList", "openReport"], settings: ["settingsDone"] }[data.tag]
            const stops = tabStops()
            // In a list the row that is current has the keyboard.
            const isIn = (item, name) => item !== null && (item.objectName === name || isIn(item.parent, name))
            for (const name of wanted) verify(stops.some(item => isIn(item, name)), name)
            for (const item of stops) verify(item.Accessible.name !== "", item)
        }
    }
}
