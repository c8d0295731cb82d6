// A line, or lines, to type in.
import QtQuick
import Quillo.Views

FocusScope {
    id: entry

    required property string name
    property string help: ""
    property string placeholder: ""
    property bool secret: false
    property bool multiline: false
    property bool bad: false
    property string value: ""
    readonly property Item input: multiline ? lines : line
    signal typed(string text)
    signal accepted

    implicitWidth: 220
    implicitHeight: multiline ? Math.max(64, Math.min(160, lines.implicitHeight + 2 * 7)) : 30
    activeFocusOnTab: false

    // What was typed comes back as the value; only another one is taken.
    onValueChanged: if (input.text !== value) input.text = value
    Component.onCompleted: input.text = value

    Rectangle {
        anchors.fill: parent
        radius: 7
        color: Theme.field
        border {
            width: entry.input.activeFocus ? 2 : 1
            color: entry.input.activeFocus ? Theme.accent
                 : entry.bad ? Theme.red : Qt.alpha(Theme.primary, 0.16)
        }
    }
    Text {
        anchors { fill: parent; leftMargin: 10; rightMargin: 10; topMargin: 7 }
        visible: entry.input.text === "" && entry.input.preeditText === ""
        text: entry.placeholder
        textFormat: Text.PlainText
        elide: Text.ElideRight
        color: Theme.secondary
        font: line.font
        Accessible.ignored: true
    }
    TextInput {
        id: line
        anchors { left: parent.left; right: parent.right; leftMargin: 10; rightMargin: 10; verticalCenter: parent.verticalCenter }
        visible: !entry.multiline
        focus: !entry.multiline
        activeFocusOnTab: true
        clip: true
        selectByMouse: true
        echoMode: entry.secret ? TextInput.Password : TextInput.Normal
        color: Theme.primary
        selectionColor: Theme.accent
        selectedTextColor: Theme.onAccent
        font { family: Theme.fontFamily; pixelSize: 13 }
        onTextEdited: entry.typed(text)
        onAccepted: entry.accepted()
        Accessible.role: Accessible.EditableText
        Accessible.name: entry.name
        Accessible.description: entry.help
        Accessible.passwordEdit: entry.secret
        Accessible.editable: true
        Accessible.focusable: true
    }
    Flickable {
        id: flick
        anchors { fill: parent; margins: 1 }
        visible: entry.multiline
        contentHeight: lines.implicitHeight
        boundsBehavior: Flickable.StopAtBounds
        clip: true

        TextEdit {
            id: lines
            // Return begins a new line here.
            property bool usesReturnAndEscape: true
            width: flick.width
            height: Math.max(implicitHeight, flick.height)
            focus: entry.multiline
            activeFocusOnTab: entry.multiline
            leftPadding: 9
            rightPadding: 9
            topPadding: 7
            bottomPadding: 7
            wrapMode: TextEdit.Wrap
            textFormat: TextEdit.PlainText
            selectByMouse: true
            color: Theme.primary
            selectionColor: Theme.accent
            selectedTextColor: Theme.onAccent
            font: line.font
            onTextChanged: if (entry.multiline && text !== entry.value) entry.typed(text)
            // Tab leaves it, as everywhere.
            KeyNavigation.priority: KeyNavigation.BeforeItem
            Keys.onTabPressed: nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
            Keys.onBacktabPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)
            onCursorRectangleChanged: {
                flick.contentY = Math.max(Math.min(flick.contentY, cursorRectangle.y - 7),
                                          cursorRectangle.y + cursorRectangle.height + 7 - flick.height)
            }
            Accessible.role: Accessible.EditableText
            Accessible.name: entry.name
            Accessible.description: entry.help
            Accessible.multiLine: true
            Accessible.editable: true
            Accessible.focusable: true
            Accessible.ignored: !entry.multiline
        }
    }
}
