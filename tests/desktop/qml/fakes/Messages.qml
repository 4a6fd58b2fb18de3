pragma Singleton
import QtQuick

ListModel {
    dynamicRoles: true

    enum State { Empty, Reading, Ready, Failed }

    property int state: 0
    property real progress: -1
    property string error: ""
    property string balance: ""
    property var notes: []
    property bool isSearching: false
    property int hits: 0
    property int currentHit: -1
    property int currentHitRow: -1
    property var asked: []

    property int askedFrom: -1

    function search(text, from) {
        asked = asked.concat("search " + text)
        if (from !== undefined) askedFrom = from
    }
    function nextHit() { asked = asked.concat("next") }
    function previousHit() { asked = asked.concat("previous") }

    function row(values) {
        const all = { text: "", name: "Me", timeText: "09:41", isFromMe: false, dateLine: "", isSystem: false,
                      isTicked: false, isHit: false, origin: "", attachment: { kind: "", name: "", url: "" } }
        append(Object.assign(all, values))
    }
    function fill(count) {
        reset()
        const words = ["Are you up for the ridge walk on Saturday?", "Yes! What time?",
                       "Train leaves at 8:12, so let's meet at the station at eight. I will bring coffee and the map, you bring the sandwiches.",
                       "👍", "Did you see the forecast? They say it might rain in the afternoon, but it should clear up by four.", "Fine by me"]
        for (let i = 0; i < count; ++i) {
            row({ text: words[i % words.length], name: i % 2 ? "Me" : "Maya Torres", isFromMe: i % 2 === 1,
                  timeText: "09:" + String(10 + i % 50), dateLine: i % 12 === 0 ? "Saturday, 9 March 2024" : "" })
        }
        state = 2
    }
    function reset() {
        clear()
        state = 0
        progress = -1
        error = ""
        hits = 0
        isSearching = false
        currentHit = currentHitRow = -1
        asked = []
    }
}
