// A row's text.
import QtQuick
import Quillo.Views

TextEntry {
    required property FormRowModel row
    required property FormModel form

    implicitWidth: 240
    name: row.label
    help: row.error || row.help
    placeholder: row.title
    secret: row.isSecret
    bad: row.error !== ""
    value: row.value
    onTyped: text => form.type(row.id, text)
}
