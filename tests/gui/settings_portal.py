# SPDX-FileCopyrightText: 2026 The Quillery developers
# SPDX-License-Identifier: MIT
"""A desktop's settings portal that knows one setting: dark colours are preferred, until SIGUSR1 says that no more."""

import signal

from gi.repository import Gio, GLib

INTERFACE = """
<node>
  <interface name="org.freedesktop.portal.Settings">
    <method name="Read">
      <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="v" direction="out"/>
    </method>
    <signal name="SettingChanged"><arg type="s"/><arg type="s"/><arg type="v"/></signal>
  </interface>
</node>"""
NAME = "org.freedesktop.portal.Settings"
PATH = "/org/freedesktop/portal/desktop"
DARK, LIGHT = 1, 2


def answer(_connection, _sender, _path, _interface, _method, question, invocation):
    if question.unpack() != ("org.freedesktop.appearance", "color-scheme"):
        invocation.return_dbus_error("org.freedesktop.portal.Error.NotFound", "no such setting")
        return
    invocation.return_value(GLib.Variant("(v)", (GLib.Variant("v", GLib.Variant("u", DARK)),)))


def become_light(bus):
    bus.emit_signal(None, PATH, NAME, "SettingChanged",
                    GLib.Variant("(ssv)", ("org.freedesktop.appearance", "color-scheme", GLib.Variant("u", LIGHT))))
    return True


def main():
    bus = Gio.bus_get_sync(Gio.BusType.SESSION)
    bus.register_object(PATH, Gio.DBusNodeInfo.new_for_xml(INTERFACE).interfaces[0], answer)
    Gio.bus_own_name_on_connection(bus, "org.freedesktop.portal.Desktop", Gio.BusNameOwnerFlags.NONE, None, None)
    GLib.unix_signal_add(GLib.PRIORITY_DEFAULT, signal.SIGUSR1, become_light, bus)
    GLib.MainLoop().run()


main()
