pragma Singleton
import QtQuick

ListModel {
    property bool searching: false
    property bool sampleAvailable: true
    property var notes: []
    property var asked: []

    function search() { asked = asked.concat("search") }
    function openUrl(url) { asked = asked.concat("openUrl " + url) }
    function forget(path) { asked = asked.concat("forget " + path) }
    function fill() {
        clear()
        asked = []
        append({ path: "/backups/alex", kind: "backup", device: "Alex's iPhone", dateText: "Yesterday", holds: "",
                 encrypted: true, isRecent: true })
        append({ path: "/backups/robin", kind: "backup", device: "Robin's iPad", dateText: "3 Jan 2024",
                 holds: "12 conversations", encrypted: false, isRecent: false })
        append({ path: "/home/sam", kind: "mac", device: "", dateText: "", holds: "", encrypted: false, isRecent: false })
    }
}
