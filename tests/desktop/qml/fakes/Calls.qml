pragma Singleton
import QtQuick

ListModel {
    property string app: "phone"
    property string balance: ""
    property var notes: []

    function fill() {
        clear()
        append({ who: "Maya Torres", what: "Outgoing call, 3 min 12 s", timeText: "Today, 09:41", status: "answered", service: "phone", duration: "0:03:12", isTicked: false })
        append({ who: "+1 555-0142", what: "Missed call", timeText: "Yesterday, 18:02", status: "missed", service: "phone", duration: "0:03:12", isTicked: false })
        append({ who: "Daniel Okafor", what: "Incoming call, 42 s", timeText: "3 Mar 2024", status: "answered", service: "phone", duration: "0:03:12", isTicked: false })
    }
}
