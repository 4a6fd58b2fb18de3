pragma Singleton
import QtQuick

ListModel {
    property string filter: ""
    property string selectedGuid: ""
    property string selectedName: ""
    property string selectedMembers: ""
    property string selectedInitials: ""
    property bool selectedIsGroup: false
    property var asked: []
    readonly property int total: count

    function select(guid) {
        selectedGuid = guid
        for (let i = 0; i < count; ++i) {
            if (get(i).guid !== guid) continue
            selectedName = get(i).name
            selectedMembers = get(i).members
            selectedInitials = get(i).initials
            selectedIsGroup = get(i).isGroup
        }
        asked = asked.concat(guid)
    }
    function readAgain() { asked = asked.concat("again") }
    function fill() {
        clear()
        filter = selectedGuid = ""
        asked = []
        const people = ["Maya Torres", "Daniel Okafor", "Sunday Hikers", "Grandma June", "+1 555-0142", "Leo & Priya",
                        "Book Club", "Theo Lindqvist"]
        for (let i = 0; i < people.length; ++i) {
            append({ guid: "guid" + i, name: people[i], members: i === 2 ? "Maya, Daniel, Theo" : "",
                     lastText: i === 0 ? "Today" : i + " Mar 2024", count: String(480 - 37 * i), isGroup: i === 2 || i === 6,
                     initials: people[i].startsWith("+") ? "" : people[i].split(" ").map(word => word[0]).join("").slice(0, 2) })
        }
    }
}
