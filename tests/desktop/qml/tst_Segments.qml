import QtQuick
import QtTest
import "qrc:/chatsum/qml" as Ui

Item {
    width: 400
    height: 60

    Ui.Segments {
        id: segments
        title: "Order"
        choices: [{ text: "All" }, { text: "Some", enabled: false }, { text: "None", glyph: "close" }]
        onChosen: index => current = index
    }
    SignalSpy { id: spy; target: segments; signalName: "chosen" }

    TestCase {
        name: "Segments"
        when: windowShown

        function segment(index) {
            const found = []
            const look = item => {
                for (let i = 0; i < item.children.length; ++i) {
                    const child = item.children[i]
                    if (child.index !== undefined && child.checked !== undefined) found.push(child)
                    look(child)
                }
            }
            look(segments)
            return found[index]
        }
        function init() {
            segments.choices = [{ text: "All" }, { text: "Some", enabled: false }, { text: "None", glyph: "close" }]
            segments.current = 0
            segment(0).forceActiveFocus()
            spy.clear()
        }

        function test_a_click_chooses() {
            mouseClick(segment(2))
            compare(segments.current, 2)
            verify(segment(2).checked)
            verify(!segment(0).checked)
        }
        function test_a_click_on_the_chosen_one_changes_nothing() {
            mouseClick(segment(0))
            compare(spy.count, 0)
            verify(segment(0).checked)
        }
        function test_arrow_keys_pass_over_what_cannot_be_chosen() {
            keyClick(Qt.Key_Right)
            compare(segments.current, 2)
            verify(segment(2).activeFocus)
            keyClick(Qt.Key_Right)
            compare(segments.current, 2)
            keyClick(Qt.Key_Left)
            compare(segments.current, 0)
        }
        function test_a_disabled_one_cannot_be_clicked() {
            mouseClick(segment(1))
            compare(segments.current, 0)
        }
        function test_another_owner_of_the_choice_is_followed() {
            segments.current = 2
            verify(segment(2).checked)
            verify(!segment(0).checked)
        }
        function test_a_choice_that_changes_keeps_the_keyboard() {
            segments.choices = [{ text: "All" }, { text: "Some" }, { text: "None" }]
            verify(segment(0).activeFocus)
            compare(segment(1).enabled, true)
        }
        function test_readers_press() {
            segment(2).Accessible.pressAction()
            compare(segments.current, 2)
        }
        function test_readers_hear_the_choices() {
            compare(segments.Accessible.name, "Order")
            compare(segment(2).Accessible.name, "None")
            compare(segment(2).Accessible.role, Accessible.RadioButton)
        }
    }
}
