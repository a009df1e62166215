"""Stand-ins for two services a Linux desktop offers on the session bus, for the end-to-end tests:

  --watcher        org.kde.StatusNotifierWatcher, the panel side of StatusNotifierItem trays (KDE Plasma, GNOME
                   with the AppIndicator extension, most current panels). Qt sees it and shows its tray icon as a
                   D-Bus item instead of an XEmbed one; each registered item's service is printed to stdout as
                   "item SERVICE", so the test can call its Activate(x, y) the way a panel does.
  --dark           org.freedesktop.portal.Desktop answering Settings.Read for the appearance's "color-scheme" with
                   1, "prefer dark", as GNOME and KDE do when the user picked a dark style.

Runs until killed. Uses Debian's python3 with GLib's D-Bus binding (python3-gi).
"""

import argparse
import sys

from gi.repository import Gio, GLib

WATCHER_XML = """
<node>
  <interface name="org.kde.StatusNotifierWatcher">
    <method name="RegisterStatusNotifierItem"><arg name="service" type="s" direction="in"/></method>
    <method name="RegisterStatusNotifierHost"><arg name="service" type="s" direction="in"/></method>
    <property name="RegisteredStatusNotifierItems" type="as" access="read"/>
    <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
    <property name="ProtocolVersion" type="i" access="read"/>
    <signal name="StatusNotifierItemRegistered"><arg type="s"/></signal>
    <signal name="StatusNotifierItemUnregistered"><arg type="s"/></signal>
    <signal name="StatusNotifierHostRegistered"/>
  </interface>
</node>
"""

PORTAL_XML = """
<node>
  <interface name="org.freedesktop.portal.Settings">
    <method name="Read">
      <arg name="namespace" type="s" direction="in"/><arg name="key" type="s" direction="in"/>
      <arg name="value" type="v" direction="out"/>
    </method>
    <signal name="SettingChanged"><arg type="s"/><arg type="s"/><arg type="v"/></signal>
    <property name="version" type="u" access="read"/>
  </interface>
</node>
"""

items = []


def say(line):
    print(line, flush=True)


def watcher_call(connection, sender, path, interface, method, parameters, invocation):
    if method == "RegisterStatusNotifierItem":
        service = parameters.unpack()[0]
        # An item may give its object path instead of a service name: then the sender is the service.
        if service.startswith("/"):
            service = sender
        items.append(service)
        connection.emit_signal(None, path, interface, "StatusNotifierItemRegistered", GLib.Variant("(s)", (service,)))
        say(f"item {service}")
    invocation.return_value(None)


def watcher_property(connection, sender, path, interface, name):
    return {
        "RegisteredStatusNotifierItems": GLib.Variant("as", items),
        "IsStatusNotifierHostRegistered": GLib.Variant("b", True),
        "ProtocolVersion": GLib.Variant("i", 0),
    }.get(name)


def portal_call(connection, sender, path, interface, method, parameters, invocation):
    namespace, key = parameters.unpack()
    if method == "Read" and (namespace, key) == ("org.freedesktop.appearance", "color-scheme"):
        # The portal wraps the value in a second variant.
        invocation.return_value(GLib.Variant("(v)", (GLib.Variant("v", GLib.Variant("u", 1)),)))
    else:
        invocation.return_dbus_error("org.freedesktop.portal.Error.NotFound", "Requested setting not found")


def portal_property(connection, sender, path, interface, name):
    return GLib.Variant("u", 1) if name == "version" else None


def serve(bus, name, path, xml, call, get):
    info = Gio.DBusNodeInfo.new_for_xml(xml).interfaces[0]
    bus.register_object(path, info, call, get, None)
    Gio.bus_own_name_on_connection(bus, name, Gio.BusNameOwnerFlags.NONE, lambda *a: say(f"owns {name}"), None)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--watcher", action="store_true")
    parser.add_argument("--dark", action="store_true")
    args = parser.parse_args()
    bus = Gio.bus_get_sync(Gio.BusType.SESSION, None)
    if args.watcher:
        serve(bus, "org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher", WATCHER_XML, watcher_call,
              watcher_property)
    if args.dark:
        serve(bus, "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop", PORTAL_XML, portal_call,
              portal_property)
    GLib.MainLoop().run()


if __name__ == "__main__":
    sys.exit(main())
