import QtQuick

// The colours and sizes of the chat.
QtObject {
    property bool isDark: false

    readonly property color background: isDark ? "#14161b" : "#ffffff"
    readonly property color bar: isDark ? "#1c1f26" : "#f7f8fa"
    readonly property color line: isDark ? "#2b2f38" : "#e3e6eb"
    readonly property color text: isDark ? "#f1f2f4" : "#191c22"
    readonly property color lesserText: isDark ? "#9aa1ad" : "#6b7280"
    readonly property color accent: isDark ? "#6d7dff" : "#4f5fe8"
    readonly property color textOnAccent: "#ffffff"
    readonly property color bubble: isDark ? "#272b34" : "#eceef3"
    readonly property color field: isDark ? "#272b34" : "#ffffff"

    readonly property var people: ["#4f5fe8", "#d9488b", "#0f9d74", "#c96a12", "#7a4fd0", "#1484b8"]

    readonly property int margin: 12
    readonly property int textSize: 15
    readonly property int smallTextSize: 12
}
