import QtQuick 2.15

// The character map over a model with the roles normalImageUrl, largeImageUrl, characterCode, normalImageSize and
// largeImageSize, which the context names "characterMapModel".
Rectangle {
    id: map

    readonly property int mouseDistance: 16
    property int normalSize: 34

    color: "white"

    TextMetrics {
        id: widestCode
        font.family: "courier"
        text: "0x#####"
    }

    GridView {
        id: grid
        objectName: "grid"
        anchors.fill: parent
        clip: true
        focus: true
        keyNavigationEnabled: true
        model: characterMapModel
        cellWidth: Math.max(Math.ceil(widestCode.width), map.normalSize) + 6
        cellHeight: Math.ceil(widestCode.height) + map.normalSize + 8

        Accessible.role: Accessible.List
        Accessible.name: qsTr("Character Map")

        delegate: CharacterImage {
            id: cell
            objectName: "cell"
            width: grid.cellWidth
            height: grid.cellHeight
            code: characterCode
            imageUrl: normalImageUrl
            imageSize: normalImageSize
            onImageSizeChanged: map.normalSize = imageSize
            onImageEntered: {
                largeImage.source = largeImageUrl
                largeImage.width = largeImageSize
                largeImage.height = largeImageSize
                preview.moveTo(cell.mapToItem(map, position.x, position.y))
                preview.visible = true
            }
            onImageMoved: preview.moveTo(cell.mapToItem(map, position.x, position.y))
            onImageLeft: preview.visible = false
        }
    }

    Rectangle {
        id: preview
        objectName: "largeImage"

        // Right of and below the mouse, or on the side that has room.
        function moveTo(mouse) {
            x = mouse.x + map.mouseDistance + width > map.width ? mouse.x - map.mouseDistance - width
                                                                : mouse.x + map.mouseDistance
            y = mouse.y + map.mouseDistance + height > map.height ? mouse.y - map.mouseDistance - height
                                                                  : mouse.y + map.mouseDistance
        }

        visible: false
        width: largeImage.width
        height: largeImage.height
        border { color: "lightgray"; width: 1 }

        Image {
            id: largeImage
            cache: false
        }
    }
}
