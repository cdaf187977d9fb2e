import QtQuick 2.15

// One cell of the character map: the code above the character.
Rectangle {
    id: cell

    property string code
    property url imageUrl
    property int imageSize

    signal imageEntered(point position)
    signal imageMoved(point position)
    signal imageLeft()

    implicitWidth: Math.max(codeText.implicitWidth, imageSize) + 6
    implicitHeight: codeText.implicitHeight + imageSize + 6
    border { color: "lightgray"; width: 1 }

    Accessible.role: Accessible.ListItem
    Accessible.name: code

    Text {
        id: codeText
        anchors { top: parent.top; topMargin: 3; horizontalCenter: parent.horizontalCenter }
        font.family: "courier"
        text: cell.code
    }

    Image {
        objectName: "characterImage"
        anchors { top: codeText.bottom; horizontalCenter: parent.horizontalCenter }
        width: cell.imageSize
        height: cell.imageSize
        source: cell.imageUrl
        cache: false // the model keeps pictures within a bound of its own
    }

    MouseArea {
        anchors.fill: parent
        hoverEnabled: true
        acceptedButtons: Qt.NoButton
        onEntered: cell.imageEntered(Qt.point(mouseX, mouseY))
        onPositionChanged: cell.imageMoved(Qt.point(mouse.x, mouse.y))
        onExited: cell.imageLeft()
    }
}
