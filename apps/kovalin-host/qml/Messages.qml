import QtQuick
import kovalin.host 1.0

// What was written, the latest at the bottom.
ListView {
    id: list

    required property QtObject host
    required property QtObject look
    readonly property int stickerSize: 112

    objectName: "host_messages"
    clip: true
    model: host.messages
    verticalLayoutDirection: ListView.BottomToTop
    spacing: 8
    boundsBehavior: Flickable.StopAtBounds
    header: Item { height: 10 }
    footer: Item { height: 10 }

    delegate: Item {
        id: row

        required property var modelData
        readonly property bool isMine: modelData.isMine
        readonly property bool isSticker: modelData.text === ""
        readonly property int widest: Math.min(list.width * 0.72, 420)

        objectName: "host_message"
        width: list.width
        height: content.height + (author.visible ? author.height + 2 : 0)

        Text {
            id: author
            anchors.left: parent.left
            anchors.leftMargin: list.look.margin + 12
            visible: text !== ""
            text: row.modelData.author
            textFormat: Text.PlainText
            color: list.look.lesserText
            font.pixelSize: list.look.smallTextSize
        }
        Item {
            id: content
            anchors.left: row.isMine ? undefined : parent.left
            anchors.right: row.isMine ? parent.right : undefined
            anchors.leftMargin: list.look.margin
            anchors.rightMargin: list.look.margin
            anchors.bottom: parent.bottom
            width: row.isSticker ? list.stickerSize : bubble.width
            height: row.isSticker ? list.stickerSize : bubble.height

            Rectangle {
                id: bubble
                visible: !row.isSticker
                width: Math.min(words.implicitWidth, row.widest - 24) + 24
                height: words.height + 16
                radius: 17
                color: row.isMine ? list.look.accent : list.look.bubble

                Text {
                    id: words
                    anchors.centerIn: parent
                    width: parent.width - 24
                    text: row.modelData.text
                    textFormat: Text.PlainText
                    wrapMode: Text.Wrap
                    horizontalAlignment: Text.AlignLeft
                    color: row.isMine ? list.look.textOnAccent : list.look.text
                    font.pixelSize: list.look.textSize
                }
            }
            ChatPicture {
                objectName: "host_message_sticker"
                anchors.fill: parent
                visible: row.isSticker
                image: row.modelData.image
            }
        }
    }
}
