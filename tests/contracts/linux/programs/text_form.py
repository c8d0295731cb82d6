#!/usr/bin/python3
"""A form with the fields that people meet, in the toolkits that they are made with.

  text_form.py gtk3|gtk4|qt5 [TEXT]

The window is called "letter"; its text of several lines holds TEXT and the keyboard. A line of the
standard input moves the keyboard: "text", "line", "search", "read-only", "password"; with more on
the line that is what is typed.
"""
import sys
import threading

FIELDS = ["text", "line", "search", "password", "read-only"]


def gtk_fields(gtk, version):
    text = gtk.TextView()
    text.set_accepts_tab(False)
    line = gtk.Entry(placeholder_text="Subject")
    search = gtk.SearchEntry()
    if version == 3:
        password = gtk.Entry(visibility=False, input_purpose=gtk.InputPurpose.PASSWORD)
    else:
        password = gtk.PasswordEntry()
    read_only = gtk.Entry(text="as it is", editable=False)
    return dict(zip(FIELDS, [text, line, search, password, read_only]))


def run_gtk(version, text):
    import gi
    gi.require_version("Gtk", f"{version}.0")
    from gi.repository import GLib, Gtk

    fields = gtk_fields(Gtk, version)
    fields["text"].get_buffer().set_text(text)

    def obey(command):
        name, _, typed = command.partition(" ")
        fields[name].grab_focus()
        if typed:
            fields[name].set_text(typed)

    def show(application):
        window = Gtk.ApplicationWindow(application=application, title="letter")
        window.set_default_size(480, 400)
        box = Gtk.Box(orientation=Gtk.Orientation.VERTICAL, spacing=6)
        scrolled = Gtk.ScrolledWindow(vexpand=True)
        (scrolled.add if version == 3 else scrolled.set_child)(fields["text"])
        for field in [scrolled] + [fields[name] for name in FIELDS[1:]]:
            (box.add if version == 3 else box.append)(field)
        (window.add if version == 3 else window.set_child)(box)
        window.show_all() if version == 3 else window.present()
        fields["text"].grab_focus()

    application = Gtk.Application(application_id=f"com.murmex.form.gtk{version}")
    application.connect("activate", show)
    follow(lambda command: GLib.idle_add(obey, command))
    application.run([])


def run_qt(text):
    from PyQt5 import QtCore, QtDBus, QtWidgets

    QtDBus.QDBusConnection.sessionBus()  # or the toolkit never comes to the accessibility bus
    application = QtWidgets.QApplication(["form"])
    window = QtWidgets.QWidget()
    window.setWindowTitle("letter")
    window.resize(480, 400)
    widgets = [QtWidgets.QPlainTextEdit(text)] + [QtWidgets.QLineEdit() for _ in FIELDS[1:]]
    fields = dict(zip(FIELDS, widgets))
    fields["line"].setPlaceholderText("Subject")
    fields["search"].setPlaceholderText("Search")
    fields["password"].setEchoMode(QtWidgets.QLineEdit.Password)
    fields["read-only"].setText("as it is")
    fields["read-only"].setReadOnly(True)
    layout = QtWidgets.QVBoxLayout(window)
    for field in widgets:
        layout.addWidget(field)

    class Commands(QtCore.QObject):
        came = QtCore.pyqtSignal(str)

    def obey(command):
        name, _, typed = command.partition(" ")
        fields[name].setFocus()
        if typed:
            fields[name].setText(typed)

    commands = Commands()
    commands.came.connect(obey)
    follow(commands.came.emit)
    window.show()
    fields["text"].setFocus()
    application.exec_()


def follow(obey):
    def read():
        for line in sys.stdin:
            obey(line.rstrip("\n"))
    threading.Thread(target=read, daemon=True).start()


toolkit, content = sys.argv[1], sys.argv[2] if len(sys.argv) > 2 else ""
run_qt(content) if toolkit == "qt5" else run_gtk(int(toolkit[3]), content)
