"""A window with a header bar of its own, named by the first argument."""

import sys

import gi

gi.require_version("Gtk", "3.0")
from gi.repository import GLib, Gtk  # noqa: E402

name = sys.argv[1]
GLib.set_prgname(name)
window = Gtk.Window(default_width=420, default_height=300)
window.set_icon_name("accessories-text-editor")
window.set_titlebar(Gtk.HeaderBar(title=name, subtitle="draws its own frame", show_close_button=True))
text = Gtk.TextView(left_margin=12, top_margin=12, wrap_mode=Gtk.WrapMode.WORD)
text.get_buffer().set_text("A note.\n\nThis window draws its own title bar and an invisible shadow around it.")
window.add(text)
window.connect("destroy", Gtk.main_quit)
window.show_all()
Gtk.main()
