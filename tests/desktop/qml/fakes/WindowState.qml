pragma Singleton
import QtQuick

QtObject {
    property int paneWidth: 320
}
