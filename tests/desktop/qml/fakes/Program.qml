pragma Singleton
import QtQuick

QtObject {
    property bool isPreparing: false
    property var asked: []

    function openReport() { asked = asked.concat("report") }
}
