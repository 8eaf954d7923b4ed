#!/usr/bin/python3
"""Walks the reference host's accessible tree on the AT-SPI bus as a screen
reader does: every control of the editor must be there with its role, a name
a person understands and the value it shows, and a key press on a knob must
change the value a reader hears.

Run inside a private session bus and an X display (run_host_accessibility.sh
sets both up). Exit status 0 passes, 1 fails (a missing dependency too)."""

import argparse
import os
import shutil
import subprocess
import sys
import time

try:
    import pyatspi
    from gi.repository import GLib
except ImportError:
    print("FAIL: pyatspi is not installed (Debian package python3-pyatspi)")
    sys.exit(1)
if not shutil.which("xdotool"):
    print("FAIL: xdotool is not installed")
    sys.exit(1)

# name -> the roles a reader may announce for it.
KNOB = {"dial"}
FIELD = {"spin button"}
SWITCH = {"toggle button", "push button", "check box"}
METER = {"progress bar", "level bar"}
CHOICE = {"radio button"}
GRAPH = {"image"}

VALUE_CONTROLS = [
    "Compressor attack", "Compressor release", "Compressor ratio", "Compressor drive",
    "Side-chain Q", "Side-chain frequency", "Side-chain gain",
    "Low frequency", "Low gain", "Middle Q", "Middle frequency", "Middle gain",
    "High frequency", "High gain", "Output level",
]
EXPECTED = {name: KNOB for name in VALUE_CONTROLS}
EXPECTED.update({name + " value": FIELD for name in VALUE_CONTROLS})
EXPECTED.update({
    "Morph position": KNOB,
    "Compressor bypass": SWITCH, "Equalizer bypass": SWITCH, "Side chain on": SWITCH,
    "Spectrum": SWITCH, "Low band on": SWITCH, "Middle band on": SWITCH, "High band on": SWITCH,
    "Soft knee": CHOICE, "Medium knee": CHOICE, "Hard knee": CHOICE,
    "Side-chain level": METER, "Gain reduction": METER,
    "Compressor curve": GRAPH, "Equalizer curve": GRAPH,
    "Input meter, left": METER, "Input meter, right": METER,
    "Output meter, left": METER, "Output meter, right": METER,
})
KEY_UP = 0xFF52  # X keysym of the Up arrow


def wait_for(what, probe, timeout):
    """Polls probe() until it returns something true or the time is up,
    delivering the bus's events in between."""
    deadline = time.monotonic() + timeout
    context = GLib.MainContext.default()
    while True:
        while context.iteration(False):
            pass
        result = probe()
        if result:
            return result
        if time.monotonic() > deadline:
            raise TimeoutError("timed out waiting for " + what)
        time.sleep(0.05)


def activate_window(pid):
    """Gives the host's window the keyboard, as a window manager would."""
    windows = subprocess.run(["xdotool", "search", "--sync", "--onlyvisible", "--pid", str(pid)],
                             capture_output=True, text=True, timeout=20).stdout.split()
    for window in windows:
        subprocess.run(["xdotool", "windowfocus", "--sync", window], timeout=10)


def find_application(name):
    desktop = pyatspi.Registry.getDesktop(0)
    for i in range(desktop.childCount):
        app = desktop.getChildAtIndex(i)
        if app is not None and app.name == name:
            return app
    return None


def walk(node, found):
    try:
        states = node.getState()
        if states.contains(pyatspi.STATE_SHOWING) and node.name:
            found.setdefault(node.name, node)
        for i in range(node.childCount):
            child = node.getChildAtIndex(i)
            if child is not None:
                walk(child, found)
    except Exception:  # an object that went away while walking
        pass
    return found


def value_of(node):
    try:
        return node.queryValue().currentValue
    except NotImplementedError:
        return None


def spoken(node):
    """What a reader says for the control: name, role, value text."""
    return "%s, %s, %s" % (node.name, node.getRoleName(), node.description)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--host", required=True)
    parser.add_argument("--plugin", required=True)
    args = parser.parse_args()

    env = dict(os.environ, QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", QT_QPA_PLATFORM="xcb")
    command = [os.path.abspath(args.host), "--no-settings", "--plugin", os.path.abspath(args.plugin)]
    host = subprocess.Popen(command, env=env)
    failures = []
    try:
        def running_application():
            if host.poll() is not None:
                raise RuntimeError("the host exited with %d" % host.returncode)
            return find_application("orvchstrip-host")

        def editor_controls():
            found = walk(app, {})
            return found if "Compressor attack" in found else None

        app = wait_for("orvchstrip-host on the accessibility bus", running_application, 30)
        found = wait_for("the editor's controls", editor_controls, 30)

        for name, roles in sorted(EXPECTED.items()):
            node = found.get(name)
            if node is None:
                failures.append("missing: %s" % name)
                continue
            role = node.getRoleName()
            print("  " + spoken(node))
            if role not in roles:
                failures.append("%s: role %s, expected %s" % (name, role, " or ".join(sorted(roles))))
            if roles is GRAPH and not node.description:
                failures.append("%s: not described" % name)
            if roles in (KNOB, FIELD, METER):
                if value_of(node) is None:
                    failures.append("%s: no value" % name)
                if not node.description:
                    failures.append("%s: no value text" % name)
            # A switch reads "on" or "off" after its checked state.
            if roles in (SWITCH, CHOICE) and node.getState().contains(pyatspi.STATE_CHECKED) != (node.description == "on"):
                failures.append("%s: checked state disagrees with %r" % (name, node.description))
        for name in found:
            if name.startswith("m_") or "TextEdit" in name or "Controller" in name:
                failures.append("a name no person would say: %s" % name)

        knob = found.get("Compressor attack")
        if knob is not None:
            heard = []
            pyatspi.Registry.registerEventListener(
                lambda event: heard.append(event) if event.source == knob else None,
                "object:property-change:accessible-value")
            before = (value_of(knob), knob.description)
            activate_window(host.pid)
            knob.queryComponent().grabFocus()
            try:
                wait_for("focus on the attack knob", lambda: knob.getState().contains(pyatspi.STATE_FOCUSED), 10)
                pyatspi.Registry.generateKeyboardEvent(KEY_UP, None, pyatspi.KEY_SYM)
                wait_for("a value event from the attack knob", lambda: heard, 10)
                after = (value_of(knob), knob.description)
                print("  Up on the attack knob: %s -> %s" % (before[1], after[1]))
                if after[0] != before[0] + 1 or after[1] == before[1]:
                    failures.append("Up on the attack knob: %s -> %s" % (before, after))
            except TimeoutError as error:
                failures.append(str(error))
    except (RuntimeError, TimeoutError) as error:
        failures.append(str(error))
    finally:
        host.terminate()
        try:
            host.wait(10)
        except subprocess.TimeoutExpired:
            host.kill()
            host.wait()

    for failure in failures:
        print("FAIL: " + failure)
    if failures:
        print("%d failures" % len(failures))
    else:
        print("all %d controls found with their roles, names and values" % len(EXPECTED))
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
