import QtQuick
import QtTest
import Chatsum
import "qrc:/chatsum/qml" as Ui

Item {
    width: 600
    height: 400

    Ui.PasswordDialog { id: dialog }

    TestCase {
        name: "PasswordDialog"
        when: windowShown

        readonly property var entry: findChild(dialog.contentItem, "password")

        function init() {
            Library.reset()
            tryCompare(dialog, "opened", false)
        }
        function ask(error) {
            Library.error = error
            Library.state = Library.NeedsPassword
            tryCompare(dialog, "opened", true)
            tryCompare(entry, "activeFocus", true)
        }

        function test_it_comes_and_goes_with_the_question() {
            ask("")
            Library.state = Library.Opening
            tryCompare(dialog, "opened", false)
            compare(Library.asked, [])
        }
        function test_what_is_typed_is_hidden_and_given() {
            ask("")
            verify(!findChild(dialog.contentItem, "unlock").enabled)
            for (const key of "pea") keyClick(key)
            compare(entry.text, "pea")
            verify(entry.displayText !== "pea")
            keyClick(Qt.Key_Return)
            compare(Library.asked, ["password pea"])
            compare(entry.text, "")
        }
        function test_an_empty_password_is_not_given() {
            ask("")
            keyClick(Qt.Key_Return)
            compare(Library.asked, [])
        }
        function test_a_wrong_password_is_told() {
            ask("That is not the password of this backup.")
            verify(entry.wrong)
        }
        function test_escape_gives_up() {
            ask("")
            keyClick(Qt.Key_Escape)
            tryCompare(dialog, "opened", false)
            compare(Library.asked, ["cancel"])
        }
    }
}
