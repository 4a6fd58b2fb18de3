import QtQuick
import QtTest
import Chatsum
import "qrc:/chatsum/qml" as Ui

Item {
    width: 600
    height: 500

    Ui.EmptyView { id: empty; anchors.fill: parent }
    Ui.OpeningView { id: opening; anchors.fill: parent; visible: Library.state === Library.Opening }
    SignalSpy { id: folders; target: empty; signalName: "folderWanted" }

    TestCase {
        name: "Views"
        when: windowShown

        function texts(item) {
            let found = []
            for (let i = 0; i < item.children.length; ++i) {
                const child = item.children[i]
                if (!child.visible) continue
                if (typeof child.text === "string" && child.text !== "") found.push(child.text)
                found = found.concat(texts(child))
            }
            return found
        }
        function init() {
            Library.reset()
            Conversations.fill()
            folders.clear()
        }

        function test_the_beginning_offers_to_open_something() {
            verify(texts(empty).includes("See and keep your conversations"))
            mouseClick(findChild(empty, "emptyOpen"))
            compare(folders.count, 1)
        }
        function test_a_failure_says_why() {
            Library.error = "There is no Messages store there; choose another folder."
            Library.state = Library.Failed
            verify(texts(empty).includes("This could not be opened"))
            verify(texts(empty).includes(Library.error))
            verify(findChild(empty, "emptyOpen").visible)
        }
        function test_an_open_device_tells_what_is_odd_about_it() {
            Library.notes = ["The backup was not finished."]
            Library.beOpen()
            const shown = texts(empty)
            verify(shown.includes("Alex's iPhone"))
            verify(shown.includes("The backup was not finished."))
            verify(!findChild(empty, "emptyOpen").visible)
        }
        function test_an_open_device_tells_what_to_do_next_with_what_it_has() {
            Library.beOpen()
            verify(texts(empty).includes("Choose a conversation to read it and to make a report of it."))
            Conversations.clear()
            verify(texts(empty).includes("There are no conversations and no calls here."))
            Library.hasFaceTime = true
            verify(texts(empty).includes("There are no conversations here; see the calls."))
        }
        function test_opening_shows_how_far_it_is_and_can_be_cancelled() {
            Library.what = "Unlocking…"
            Library.progress = 0.25
            Library.state = Library.Opening
            verify(texts(opening).includes("Unlocking…"))
            verify(opening.isKnown)
            Library.progress = -1
            verify(!opening.isKnown)
            mouseClick(findChild(opening, "cancelOpening"))
            compare(Library.asked, ["cancel"])
        }
    }
}
