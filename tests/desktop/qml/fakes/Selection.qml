pragma Singleton
import QtQuick

QtObject {
    enum Mode { All, Ticked, Range, Hits }

    property int mode: 0
    property string since: ""
    property string until: ""
    property bool sinceValid: true
    property bool untilValid: true
    property bool rangeValid: sinceValid && untilValid
    property int count: 0
    property int total: 0
    property string app: "messages"
    property bool hasAttachments: false
    property bool hasMultiMediaAttachments: false
    property var asked: []

    function tick(row, on) { asked = asked.concat("tick " + row + " " + on) }
    function tickRange(first, last) { asked = asked.concat("range " + first + " " + last) }
    function clear() { asked = asked.concat("clear") }
    function reset() {
        mode = 0
        since = until = ""
        sinceValid = untilValid = true
        count = total = 0
        app = "messages"
        asked = []
    }
}
