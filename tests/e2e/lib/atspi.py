"""Drives the running glowdeck through its accessibility interface (AT-SPI), the way a screen reader does:
by role and name, with no coordinates, so the end-to-end tests survive layout changes.

    atspi.py [--timeout S] [--all] tree
    atspi.py [--timeout S] [--all] wait ROLE NAME
    atspi.py [--timeout S] [--all] press ROLE NAME
    atspi.py [--timeout S] [--all] type ROLE NAME TEXT
    atspi.py [--timeout S] [--all] text ROLE NAME
    atspi.py [--timeout S] [--all] wait-text ROLE NAME PATTERN
    atspi.py [--timeout S] [--all] value ROLE NAME [NEW]
    atspi.py [--timeout S] [--all] where ROLE NAME
    atspi.py [--timeout S] audit WINDOW

ROLE is an AT-SPI role name ("push button", "check box", "text", "slider", "page tab", "label") or "*".
NAME is the accessible name; "~PATTERN" matches it as a regular expression instead. Only objects on screen
(state "showing") count unless --all is given. Exits 1 with a message and the tree when nothing matches
within the time-out (5 s by default). "where" prints the object's screen rectangle as "x y width height".
"audit" lists every control on screen in the window named WINDOW that has no name, and exits 1 if there is one:
a screen reader could not tell the user what it is.
"""

import argparse
import re
import sys
import time

import pyatspi

APP_NAME = "Glowdeck"


def application():
    desktop = pyatspi.Registry.getDesktop(0)
    for app in desktop:
        try:
            if app is not None and app.name == APP_NAME:
                return app
        except Exception:  # an application that went away while we looked
            continue
    return None


def walk(node):
    """Every descendant of node, depth first; objects that vanish while we walk are skipped."""
    try:
        children = list(node)
    except Exception:
        return
    for child in children:
        if child is None:
            continue
        yield child
        yield from walk(child)


def showing(node):
    try:
        return node.getState().contains(pyatspi.STATE_SHOWING)
    except Exception:
        return False


def text_of(node):
    try:
        text = node.queryText()
        return text.getText(0, text.characterCount)
    except Exception:
        return node.name or ""


def value_of(node):
    try:
        return node.queryValue().currentValue
    except Exception:
        return None


def matches(node, role, name, include_hidden):
    try:
        if role != "*" and node.getRoleName() != role:
            return False
        if name.startswith("~"):
            if not re.search(name[1:], node.name or ""):
                return False
        elif (node.name or "") != name:
            return False
    except Exception:
        return False
    return include_hidden or showing(node)


def find(role, name, include_hidden):
    app = application()
    if app is None:
        return None
    for node in walk(app):
        if matches(node, role, name, include_hidden):
            return node
    return None


def describe(node):
    line = f"{node.getRoleName()} '{node.name}'"
    value = value_of(node)
    if value is not None:
        line += f" value={value:g}"
    try:
        states = node.getState()
        flags = [label for label, state in (("showing", pyatspi.STATE_SHOWING), ("focused", pyatspi.STATE_FOCUSED),
                                            ("checked", pyatspi.STATE_CHECKED), ("selected", pyatspi.STATE_SELECTED),
                                            ("enabled", pyatspi.STATE_ENABLED))
                 if states.contains(state)]
        line += " [" + ",".join(flags) + "]"
    except Exception:
        pass
    return line


CONTROL_ROLES = {"push button", "toggle button", "check box", "radio button", "text", "password text",
                 "combo box", "list item", "page tab", "slider", "spin button", "menu item", "link"}


def audit(window_name, timeout):
    window = await_node("*", window_name, timeout, False)
    unnamed = [node for node in walk(window)
               if showing(node) and node.getRoleName() in CONTROL_ROLES and not (node.name or "").strip()]
    for node in unnamed:
        print(f"atspi: unnamed {describe(node)} in '{window_name}'", file=sys.stderr)
    return not unnamed


def tree(out=sys.stdout):
    app = application()
    if app is None:
        print(f"no application named {APP_NAME} on the accessibility bus", file=out)
        return

    def dump(node, depth):
        print("  " * depth + describe(node), file=out)
        try:
            children = list(node)
        except Exception:
            return
        for child in children:
            if child is not None:
                dump(child, depth + 1)

    dump(app, 0)


def await_node(role, name, timeout, include_hidden):
    deadline = time.monotonic() + timeout
    while True:
        node = find(role, name, include_hidden)
        if node is not None:
            return node
        if time.monotonic() >= deadline:
            print(f"atspi: no {role} named '{name}' within {timeout:g} s; the tree is:", file=sys.stderr)
            tree(sys.stderr)
            sys.exit(1)
        time.sleep(0.1)


def main():
    parser = argparse.ArgumentParser(description="Drive glowdeck through AT-SPI.")
    parser.add_argument("--timeout", type=float, default=5.0)
    parser.add_argument("--all", action="store_true", help="count objects that are not on screen too")
    parser.add_argument("command")
    parser.add_argument("arguments", nargs="*")
    args = parser.parse_args()
    wanted = {"tree": 0, "wait": 2, "press": 2, "type": 3, "text": 2, "wait-text": 3, "value": (2, 3), "where": 2,
              "audit": 1}
    if args.command not in wanted:
        parser.error(f"unknown command {args.command}")
    count = wanted[args.command]
    if len(args.arguments) not in (count if isinstance(count, tuple) else (count,)):
        parser.error(f"{args.command}: wrong number of arguments")

    if args.command == "tree":
        tree()
        return
    if args.command == "audit":
        sys.exit(0 if audit(args.arguments[0], args.timeout) else 1)
    role, name = args.arguments[0], args.arguments[1]
    node = await_node(role, name, args.timeout, args.all)
    if args.command == "wait":
        print(describe(node))
    elif args.command == "press":
        node.queryAction().doAction(0)
    elif args.command == "type":
        editable = node.queryEditableText()
        editable.setTextContents(args.arguments[2])
    elif args.command == "text":
        print(text_of(node))
    elif args.command == "wait-text":
        pattern = re.compile(args.arguments[2])
        deadline = time.monotonic() + args.timeout
        while not pattern.search(text_of(node)):
            if time.monotonic() >= deadline:
                print(f"atspi: {role} '{name}' reads '{text_of(node)}', not /{pattern.pattern}/ "
                      f"within {args.timeout:g} s", file=sys.stderr)
                sys.exit(1)
            time.sleep(0.1)
            node = find(role, name, args.all) or node
        print(text_of(node))
    elif args.command == "where":
        extents = node.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        print(extents.x, extents.y, extents.width, extents.height)
    elif args.command == "value":
        if len(args.arguments) == 3:
            node.queryValue().currentValue = float(args.arguments[2])
        else:
            print(f"{value_of(node):g}")


if __name__ == "__main__":
    main()
