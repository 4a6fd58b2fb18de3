pragma Singleton
import QtQuick

QtObject {
    property bool isOpen: false
    property string title: "Generate Report"
    property string reportTitle: "Generate"
    property string name: ""
    property bool canReport: false
    property bool busy: false
    property string busyTitle: ""
    property string busyText: ""
    property var alert: null
    property string failure: ""
    property var notes: []
    property var asked: []
    property ListModel table: ListModel {}

    signal failed(string sentence)
    signal finished(string path)

    function open() { isOpen = true; return true }
    function close() { isOpen = false }
    function generate() { asked = asked.concat("generate") }
    function setName(text) { name = text; asked = asked.concat("name " + text) }
    function endName() { asked = asked.concat("end name") }
    function activate(row) { asked = asked.concat("activate " + row) }
    function remove(row) { asked = asked.concat("remove " + row) }
    function choose(index) { asked = asked.concat("choose " + index); alert = null }
    function forgetFailure() { failure = "" }
    function forgetNotes() { notes = [] }
}
