pragma Singleton
import QtQuick

QtObject {
    property string path: ""
    property string kind: ""
    property var textModel: null
    property var tableModel: null
    property var question: null
    property var asked: []

    function exportTo(url) { asked = asked.concat("export " + url) }
    function close() { path = "" }
}
