import QtQuick
import QtTest
import Chatsum
import "qrc:/chatsum/qml" as Ui

Item {
    width: 320
    height: 600

    Ui.SourcePane { id: pane; anchors.fill: parent }
    SignalSpy { id: folders; target: pane; signalName: "folderWanted" }
    SignalSpy { id: files; target: pane; signalName: "fileWanted" }
    SignalSpy { id: chosen; target: pane; signalName: "chosen" }

    TestCase {
        name: "SourcePane"
        when: windowShown

        readonly property var list: findChild(pane, "sourceList")

        function init() {
            Library.reset()
            Sources.fill()
            Sources.searching = false
            Sources.sampleAvailable = true
            list.currentIndex = 0
            list.forceActiveFocus()
            folders.clear(); files.clear(); chosen.clear()
        }

        function test_each_source_says_what_it_is() {
            compare(list.count, 3)
            const row = list.itemAtIndex(0)
            compare(row.name, "Alex's iPhone")
            compare(row.details, "Backup · Yesterday · encrypted")
            compare(row.Accessible.name, "Alex's iPhone, Backup · Yesterday · encrypted")
            compare(list.itemAtIndex(1).details, "Backup · 3 Jan 2024 · 12 conversations")
        }
        function test_what_could_not_be_looked_at_is_told() {
            const notes = findChild(pane, "sourceNotes")
            verify(!notes.visible)
            Sources.notes = ["'/backups' cannot be read (Permission denied)."]
            tryCompare(notes, "count", 1)
            verify(notes.visible)
            compare(notes.itemAtIndex(0).text, "'/backups' cannot be read (Permission denied).")
            Sources.notes = []
        }
        function test_a_source_without_a_name_shows_its_path() {
            compare(list.itemAtIndex(2).name, "/home/sam")
            compare(list.itemAtIndex(2).details, "Mac")
        }
        function test_the_path_is_shown_beside_the_mouse_as_it_is() {
            const path = "/backups/<b>bold</b><img src='http://example.com/x.png'>"
            Sources.insert(0, { path: path, kind: "backup", device: "Odd", dateText: "", holds: "", encrypted: false, isRecent: false })
            tryVerify(() => list.itemAtIndex(0) !== null && list.itemAtIndex(0).name === "Odd")
            const row = list.itemAtIndex(0)
            const tip = Array.from(row.resources).find(thing => thing.objectName === "sourceTip")
            verify(tip && !tip.visible)
            mouseMove(row, 40, 10)
            tryVerify(() => tip.visible)
            compare(tip.contentItem.text, path)
            compare(tip.contentItem.textFormat, Text.PlainText)
            mouseMove(pane, 10, 590)
            tryVerify(() => !tip.visible)
        }
        function test_a_click_opens() {
            mouseClick(list.itemAtIndex(1))
            compare(Library.asked, ["open /backups/robin"])
            compare(chosen.count, 1)
        }
        function test_the_keyboard_opens() {
            keyClick(Qt.Key_Down)
            keyClick(Qt.Key_Return)
            compare(Library.asked, ["open /backups/robin"])
        }
        function test_only_recent_ones_are_forgotten_by_the_delete_key() {
            keyClick(Qt.Key_Delete)
            compare(Sources.asked, ["forget /backups/alex"])
            keyClick(Qt.Key_Down)
            keyClick(Qt.Key_Delete)
            compare(Sources.asked.length, 1)
        }
        function test_a_reader_can_press_a_row() {
            list.itemAtIndex(1).Accessible.pressAction()
            compare(Library.asked, ["open /backups/robin"])
        }
        function test_buttons_ask_for_folders_files_and_the_sample() {
            mouseClick(findChild(pane, "openFolder"))
            mouseClick(findChild(pane, "openFile"))
            mouseClick(findChild(pane, "openSample"))
            compare(folders.count, 1)
            compare(files.count, 1)
            compare(Library.asked, ["sample"])
        }
        function test_without_a_sample_there_is_no_button_for_it() {
            Sources.sampleAvailable = false
            verify(!findChild(pane, "openSample").visible)
        }
        function test_a_search_runs_once_at_a_time() {
            const button = findChild(pane, "searchAgain")
            mouseClick(button)
            compare(Sources.asked, ["search"])
            Sources.searching = true
            verify(!button.enabled)
        }
        function test_an_empty_list_says_what_to_do() {
            const hint = findChild(pane, "sourceHint")
            verify(!hint.visible)
            Sources.clear()
            tryVerify(() => hint.visible)
            verify(hint.text.startsWith("No backup was found"))
            Sources.searching = true
            compare(hint.text, "Looking for backups…")
        }
    }
}
