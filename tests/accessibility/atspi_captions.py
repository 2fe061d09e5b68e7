#!/usr/bin/python3
"""The editor as a screen reader meets it: started on a virtual X display with the toolkit's
AT-SPI bridge switched on, inside a private D-Bus session with its own accessibility bus, and
walked through the AT-SPI registry with pyatspi, the client library Orca uses.

For every control of every page it checks what a blind operator hears: a real role (not a
generic filler), a non-empty name, and a labelled-by relation to the caption the form shows
beside it. The captions, classes and pages come from the form's generated facts
(tools/formfacts is the one reader of the Designer form; lumarex_printformfacts prints its table
as JSON); only the number of captioned controls and the role each widget class must have are
written out here.

Exit status 0 when every control passes, 1 when any fails, 77 (skip) when the machine lacks
what the check needs.

Usage: atspi_captions.py --editor PATH --facts PATH [--report-only]
"""

import argparse
import importlib.util
import json
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import time

SKIP = 77
CAPTIONED_CONTROLS = 38

# The AT-SPI role each widget class of the form must be exposed with.
ROLE_OF_CLASS = {
    "QCheckBox": "check box",
    "QComboBox": "combo box",
    "QSpinBox": "spin button",
    "QDoubleSpinBox": "spin button",
    "QLineEdit": "text",
}
# The stack of pages: a container a screen reader passes over, the page tab list names the page.
PAGE_STACK_ROLE = "filler"
GENERIC_ROLES = {"filler", "unknown", "panel", "redundant object", "invalid"}

BUS_LAUNCHER_PLACES = [
    "/usr/libexec/at-spi-bus-launcher",
    "/usr/lib/at-spi2-core/at-spi-bus-launcher",
]
IN_SESSION = "LUMAREX_ATSPI_PRIVATE_SESSION"

# Polling bounds: each try asks the real state once; the deadline only ends a hopeless wait.
POLL_TRIES = 600
POLL_INTERVAL = 0.05


def skip(reason):
    print(f"SKIP: {reason}")
    sys.exit(SKIP)


def bus_launcher():
    return next((p for p in BUS_LAUNCHER_PLACES if os.access(p, os.X_OK)), None)


def check_prerequisites():
    if not shutil.which("Xvfb"):
        skip("Xvfb is not installed (Debian package xvfb)")
    if not shutil.which("dbus-run-session"):
        skip("dbus-run-session is not installed (Debian package dbus-bin)")
    if not bus_launcher():
        skip("at-spi-bus-launcher is not installed (Debian package at-spi2-core)")
    # Only looked up, not imported: importing it would reach for an accessibility bus.
    if importlib.util.find_spec("pyatspi") is None:
        skip(f"{sys.executable} has no pyatspi (Debian package python3-pyatspi)")


# --- the form's captions ---------------------------------------------------------------------


class Caption:
    def __init__(self, text, control, control_class, page):
        self.text = text
        self.control = control
        self.control_class = control_class
        self.page = page


def form_captions(facts_printer):
    """Every input control the form gives a caption: the caption's text, the control's name and
    class, and the index of the tab page that holds it; and the number of pages, up to the last
    that holds a control."""
    facts = json.loads(subprocess.run([facts_printer], check=True, capture_output=True,
                                      text=True).stdout)
    captions = [Caption(c["caption"], c["objectName"], c["className"], c["pageIndex"])
                for c in facts if c["caption"]]
    return captions, 1 + max(c["pageIndex"] for c in facts)


# --- processes -------------------------------------------------------------------------------


def start_display():
    """Xvfb on a free display number, which it reports on a pipe once it accepts clients."""
    read_end, write_end = os.pipe()
    server = subprocess.Popen(["Xvfb", "-displayfd", str(write_end), "-screen", "0",
                               "1024x768x24", "-nolisten", "tcp"], pass_fds=(write_end,),
                              stderr=subprocess.DEVNULL, start_new_session=True)
    os.close(write_end)
    number = b""
    while not number.endswith(b"\n"):
        chunk = os.read(read_end, 16)
        if not chunk:
            server.kill()
            raise RuntimeError("Xvfb ended without reporting a display")
        number += chunk
    os.close(read_end)
    return server, ":" + number.decode().strip()


def start_editor(editor, display):
    env = dict(os.environ, DISPLAY=display, QT_QPA_PLATFORM="xcb",
               QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")
    return subprocess.Popen([editor], env=env, start_new_session=True)


def start_accessibility_bus(runtime_dir):
    """The bus launcher, started after the editor. It is kept away from the display: a bus
    address published on the root window makes this toolkit version take its bus at start-up
    without ever switching its bridge on, so the editor would never register. Its socket goes in
    runtime_dir, a folder of this run's own: with no XDG_RUNTIME_DIR the launcher uses the one
    path ~/.cache/at-spi/bus for every bus, so a test running beside another one (or the end of
    the last run) would replace or remove its socket, and a client connecting then fails."""
    env = {k: v for k, v in os.environ.items() if k != "DISPLAY"}
    env["XDG_RUNTIME_DIR"] = runtime_dir
    return subprocess.Popen([bus_launcher(), "--launch-immediately"], env=env,
                            stdout=subprocess.DEVNULL, start_new_session=True)


def stop(process):
    if process is None or process.poll() is not None:
        return
    try:
        os.killpg(process.pid, signal.SIGTERM)
    except ProcessLookupError:
        return
    try:
        process.wait(timeout=10)
    except subprocess.TimeoutExpired:
        os.killpg(process.pid, signal.SIGKILL)
        process.wait()


def session_bus_call(method, signature=None, arguments=None, interface="org.freedesktop.DBus"):
    from gi.repository import Gio, GLib

    session = Gio.bus_get_sync(Gio.BusType.SESSION, None)
    parameters = GLib.Variant(signature, arguments) if signature else None
    reply = session.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", interface,
                              method, parameters, None, Gio.DBusCallFlags.NONE, -1, None)
    return reply.unpack()[0]


def editor_watches_for_bus(editor_process):
    """True once the editor's session connection has a match rule: the toolkit's watch for the
    accessibility bus, so the bus that starts next is noticed."""
    for name in session_bus_call("ListNames"):
        if not name.startswith(":"):
            continue
        try:
            pid = session_bus_call("GetConnectionUnixProcessID", "(s)", (name,))
            if pid != editor_process.pid:
                continue
            stats = session_bus_call("GetConnectionStats", "(s)", (name,),
                                     "org.freedesktop.DBus.Debug.Stats")
        except Exception:  # the connection went away between the two calls
            continue
        return stats.get("MatchRules", 0) > 0
    return False


def accessibility_bus_owned():
    return session_bus_call("NameHasOwner", "(s)", ("org.a11y.Bus",))


def poll(condition, what, editor_process):
    for _ in range(POLL_TRIES):
        found = condition()
        if found:
            return found
        if editor_process.poll() is not None:
            raise RuntimeError(f"the editor ended (status {editor_process.returncode}) "
                               f"while waiting for {what}")
        time.sleep(POLL_INTERVAL)
    raise RuntimeError(f"gave up waiting for {what} after {POLL_TRIES} tries")


# --- the accessible tree ---------------------------------------------------------------------


def children(accessible):
    return [accessible.getChildAtIndex(i) for i in range(accessible.childCount)]


def editor_frame(pyatspi, application_name):
    desktop = pyatspi.Registry.getDesktop(0)
    for application in children(desktop):
        if application is not None and application.name == application_name:
            frames = [c for c in children(application) if c.getRoleName() == "frame"]
            if frames:
                return frames[0]
    return None


def find_role(accessible, role):
    if accessible.getRoleName() == role:
        return accessible
    for child in children(accessible):
        found = find_role(child, role)
        if found is not None:
            return found
    return None


def focusable_controls(pyatspi, accessible):
    """The focusable objects below a page, not descending into them (a combo box's list)."""
    found = []
    for child in children(accessible):
        if child.getState().contains(pyatspi.STATE_FOCUSABLE):
            found.append(child)
        else:
            found.extend(focusable_controls(pyatspi, child))
    return found


def labelled_by(pyatspi, accessible):
    targets = []
    for relation in accessible.getRelationSet():
        if relation.getRelationType() == pyatspi.RELATION_LABELLED_BY:
            targets += [relation.getTarget(i) for i in range(relation.getNTargets())]
    return targets


def describe(accessible):
    return f"{accessible.getRoleName()} {accessible.name!r}"


def examine(pyatspi, frame, captions, page_count):
    """Returns (failures, summary counts)."""
    failures = []
    tab_list = find_role(frame, "page tab list")
    if tab_list is None:
        return ["no page tab list (the row of page tabs) in the window"], None
    stacks = [c for c in children(tab_list.parent) if c.getRoleName() != "page tab list"]
    if len(stacks) != 1:
        return [f"the tab widget holds {len(stacks)} objects beside its page tab list, "
                f"expected 1, the stack of pages"], None
    stack = stacks[0]
    if stack.getRoleName() != PAGE_STACK_ROLE:
        failures.append(f"the stack of pages is a {stack.getRoleName()!r}, expected "
                        f"{PAGE_STACK_ROLE!r}: a screen reader would speak it on entering a page")
    pages = children(stack)
    if len(pages) != page_count:
        failures.append(f"{len(pages)} pages exposed, the form has {page_count}")

    controls_per_page = [focusable_controls(pyatspi, page) for page in pages]
    controls = [c for page in controls_per_page for c in page]
    unnamed = [c for c in controls if not c.name]
    generic = [c for c in controls if c.getRoleName() in GENERIC_ROLES]
    for control in unnamed:
        failures.append(f"unnamed control: {describe(control)}")
    for control in generic:
        failures.append(f"generic role: {describe(control)}")

    labelled = 0
    claimed = []
    for caption in captions:
        page_controls = controls_per_page[caption.page] if caption.page < len(pages) else []
        matches = [c for c in page_controls
                   if any(t.getRoleName() == "label" and t.name == caption.text
                          for t in labelled_by(pyatspi, c))]
        where = f"{caption.control} (caption {caption.text!r})"
        if len(matches) != 1:
            failures.append(f"{where}: {len(matches)} controls on page {caption.page} labelled "
                            f"by the caption, expected 1")
            continue
        control = matches[0]
        claimed.append(control)
        expected_role = ROLE_OF_CLASS.get(caption.control_class, "(class without a role rule)")
        if control.getRoleName() != expected_role:
            failures.append(f"{where}: role {control.getRoleName()!r}, expected {expected_role!r}")
            continue
        labelled += 1

    uncaptioned = [c for c in controls if not any(c == k for k in claimed)]
    for control in uncaptioned:
        failures.append(f"control without its caption: {describe(control)}")

    counts = {"controls": len(controls), "unnamed": len(unnamed), "generic": len(generic),
              "labelled": labelled}
    return failures, counts


def run_in_session(arguments):
    captions, page_count = form_captions(arguments.facts)
    display_server = editor = bus = None
    runtime_dir = tempfile.TemporaryDirectory(prefix="lumarex-atspi-")
    try:
        display_server, display = start_display()
        os.environ["DISPLAY"] = display
        editor = start_editor(arguments.editor, display)
        poll(lambda: editor_watches_for_bus(editor), "the editor to watch for the "
             "accessibility bus", editor)
        bus = start_accessibility_bus(runtime_dir.name)
        poll(accessibility_bus_owned, "the accessibility bus", editor)
        # Imported only now: the client library starts a bus of its own if it finds none.
        import pyatspi

        name = os.path.basename(arguments.editor)
        frame = poll(lambda: editor_frame(pyatspi, name), "the editor's window on the "
                     "accessibility bus", editor)
        failures, counts = examine(pyatspi, frame, captions, page_count)
    finally:
        stop(editor)
        stop(bus)
        stop(display_server)
        runtime_dir.cleanup()

    if len(captions) != CAPTIONED_CONTROLS:
        failures.append(f"the form captions {len(captions)} controls, expected "
                        f"{CAPTIONED_CONTROLS}")
    for failure in failures:
        print(f"FAIL: {failure}")
    if counts:
        print(f"controls: {counts['controls']}; unnamed: {counts['unnamed']}; generic roles: "
              f"{counts['generic']}; labelled by their captions: {counts['labelled']} of "
              f"{CAPTIONED_CONTROLS}")
    if arguments.report_only:
        return 0
    return 1 if failures or counts is None else 0


def in_private_session(marker, run, arguments):
    """Runs run(arguments) in this script started again inside a private session bus (marked by
    the environment variable marker), so that nothing of the machine's own desktop takes part."""
    if os.environ.get(marker) == "1":
        return run(arguments)
    env = dict(os.environ, **{marker: "1"})
    env.pop("DISPLAY", None)
    env.pop("AT_SPI_BUS_ADDRESS", None)
    return subprocess.run(["dbus-run-session", "--", sys.executable] + sys.argv,
                          env=env).returncode


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("--editor", required=True)
    parser.add_argument("--facts", required=True)
    parser.add_argument("--report-only", action="store_true",
                        help="print the findings and counts, exit 0 whatever they are")
    arguments = parser.parse_args()

    check_prerequisites()
    return in_private_session(IN_SESSION, run_in_session, arguments)


if __name__ == "__main__":
    sys.exit(main())
