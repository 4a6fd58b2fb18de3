import QtQuick
import QtTest
import Chatsum
import "qrc:/chatsum/qml" as Ui

Item {
    width: 800
    height: 700

    Ui.SettingsPage { id: page; anchors.fill: parent }
    SignalSpy { id: closed; target: page; signalName: "closed" }
    SignalSpy { id: written; target: Settings; signalName: "written" }

    TestCase {
        name: "SettingsPage"
        when: windowShown

        function init() {
            Theme.scheme = Theme.System
            tryCompare(Settings, "busy", false)
            closed.clear(); written.clear()
        }

        function test_colours_are_chosen() {
            const scheme = findChild(page, "scheme")
            scheme.choose(2)
            compare(Theme.scheme, Theme.Dark)
            verify(Theme.dark)
            compare(scheme.current, 2)
            scheme.choose(1)
            verify(!Theme.dark)
        }
        function test_all_five_settings_are_there() {
            for (let i = 0; i < 3; ++i) verify(findChild(page, "switch" + i).visible, i)
            for (let i = 3; i < 5; ++i) verify(findChild(page, "choice" + i).visible, i)
            compare(findChild(page, "switch5"), null)
        }
        function test_a_switch_is_written() {
            const box = findChild(page, "switch0")
            const before = box.checked
            mouseClick(box)
            tryCompare(written, "count", 1)
            compare(box.checked, !before)
            mouseClick(box)
            tryCompare(written, "count", 2)
            compare(box.checked, before)
        }
        function test_readers_flip_a_switch() {
            const box = findChild(page, "switch0")
            const before = box.checked
            box.Accessible.toggleAction()
            tryCompare(written, "count", 1)
            compare(box.checked, !before)
            box.Accessible.pressAction()
            tryCompare(written, "count", 2)
            compare(box.checked, before)
        }
        function test_a_choice_is_written() {
            const format = findChild(page, "choice3")
            format.choose(1)
            tryCompare(written, "count", 1)
            tryCompare(format, "current", 1)
            format.choose(2)
            tryCompare(format, "current", 2)
        }
        function test_done_closes() {
            mouseClick(findChild(page, "settingsDone"))
            compare(closed.count, 1)
        }
    }
}
