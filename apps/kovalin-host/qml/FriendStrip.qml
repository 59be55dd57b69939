import QtQuick

// The people whom one can write to.
Rectangle {
    id: strip

    required property QtObject host
    required property QtObject look

    implicitHeight: 52
    color: look.bar

    Flickable {
        id: list

        // The first of them is at the right from right to left.
        function showBeginning() {
            contentX = strip.host.isMirrored ? contentWidth - width : 0
        }

        anchors.fill: parent
        contentWidth: Math.max(width, people.implicitWidth + 2 * strip.look.margin)
        contentHeight: height
        flickableDirection: Flickable.HorizontalFlick
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        onContentWidthChanged: showBeginning()
        onWidthChanged: showBeginning()

        Connections {
            target: strip.host
            function onLookChanged() { list.showBeginning() }
        }
        Row {
            id: people
            anchors.left: parent.left
            anchors.leftMargin: strip.look.margin
            anchors.verticalCenter: parent.verticalCenter
            spacing: 8

            Repeater {
                model: strip.host.friends

                Rectangle {
                    id: person

                    required property int index
                    required property var modelData
                    readonly property bool isChosen: strip.host.friendId === modelData.id
                    readonly property string name: modelData.name.split(",")[0]

                    objectName: modelData.id === "" ? "friend_everyone" : "friend_" + modelData.id
                    width: nameText.implicitWidth + 46
                    height: 36
                    radius: 18
                    color: isChosen ? strip.look.bubble : "transparent"
                    border.width: isChosen ? 1.5 : 1
                    border.color: isChosen ? strip.look.accent : strip.look.line
                    Accessible.role: Accessible.Button
                    Accessible.name: name
                    Accessible.onPressAction: strip.host.friendId = modelData.id

                    Rectangle {
                        id: head
                        anchors.left: parent.left
                        anchors.leftMargin: 5
                        anchors.verticalCenter: parent.verticalCenter
                        width: 26
                        height: 26
                        radius: 13
                        color: strip.look.people[person.index % strip.look.people.length]

                        Text {
                            anchors.centerIn: parent
                            text: person.name.charAt(0)
                            textFormat: Text.PlainText
                            color: "#ffffff"
                            font.pixelSize: 13
                            font.bold: true
                        }
                    }
                    Text {
                        id: nameText
                        anchors.left: head.right
                        anchors.leftMargin: 6
                        anchors.verticalCenter: parent.verticalCenter
                        text: person.name
                        textFormat: Text.PlainText
                        color: strip.look.text
                        font.pixelSize: 13
                    }
                    MouseArea {
                        anchors.fill: parent
                        onClicked: strip.host.friendId = person.modelData.id
                    }
                }
            }
        }
    }
    Rectangle {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        height: 1
        color: strip.look.line
    }
}
