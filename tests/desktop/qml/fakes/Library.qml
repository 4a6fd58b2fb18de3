pragma Singleton
import QtQuick

QtObject {
    enum State { Closed, Opening, NeedsPassword, Open, Failed }

    property int state: 0
    property real progress: -1
    property string what: ""
    property string error: ""
    property string path: ""
    property string title: ""
    property string subtitle: ""
    property var notes: []
    property bool hasMessages: true
    property bool hasPhone: false
    property bool hasFaceTime: false
    property bool isSample: false
    property var asked: []

    function open(path) { asked = asked.concat("open " + path) }
    function openSample() { asked = asked.concat("sample") }
    function givePassword(text) { asked = asked.concat("password " + text) }
    function cancel() { asked = asked.concat("cancel"); state = 0 }
    function close() { asked = asked.concat("close"); state = 0 }

    function beOpen() {
        title = "Alex's iPhone"
        subtitle = "Backup of 12 Mar 2024, 09:41"
        state = 3
    }
    function reset() {
        state = 0
        progress = -1
        what = error = title = subtitle = ""
        notes = []
        hasMessages = true
        hasPhone = hasFaceTime = false
        asked = []
    }
}
