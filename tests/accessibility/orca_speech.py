#!/usr/bin/python3
"""The editor as a blind operator hears it: the real screen reader, Orca, runs beside the editor
on a virtual X display inside a private D-Bus session, and the keyboard is used as the operator
uses it. Orca's debug log records every utterance as a "SPEECH OUTPUT:" line, even with no speech
server, and that log is what is checked.

Every page is tabbed through: each control must be spoken with its caption, its role and its
value (a combo box's current item, a check box's state, a spin box's number, a line edit's text).
Then Down (or Up, on the last item) on each enabled combo box must announce the new item, and
Space on each check box its new state; each change is undone the same way. Down on the trigger
mode until "SBUS" opens the SBUS/PPM page, locked at start-up, which is then walked as the
others. The captions, items and start values come from the form's generated table (printed by
lumarex_printformfacts); only Orca's words for roles and states are written out here.

The manual's section for keyboard and screen-reader users quotes part of what Orca says; that
quote must be a run of the lines heard here, so it stays true. --transcript writes them all.

Exit status 0 when everything is spoken as expected on every page, 1 when anything is not,
77 (skip) when the machine lacks what the test needs.

Usage: orca_speech.py --editor PATH --facts PATH [--manual docs/manual.md] [--transcript FILE]
"""

import argparse
import json
import os
import re
import shutil
import subprocess
import sys
import time

sys.dont_write_bytecode = True  # importing the helpers below leaves nothing in the source tree
import atspi_captions as session  # noqa: E402

SKIP = 77
IN_SESSION = "LUMAREX_ORCA_PRIVATE_SESSION"

# Orca's words.
ROLE_OF_CLASS = {
    "QCheckBox": "check box",
    "QComboBox": "combo box",
    "QSpinBox": "spin button",
    "QDoubleSpinBox": "spin button",
    "QLineEdit": "text",
}
CHECKED = {True: "checked", False: "not checked"}
# Orca 43 (Debian 12) calls a push button "push button", Orca 48 (Debian 13) "button".
PUSH_BUTTON = {43: "push button", 48: "button"}
# The line Orca logs once it listens to the desktop's events: Orca 48 speaks "Screen reader on"
# before it listens, and a window focused in between is tracked only in part. Orca 43 listens
# before it speaks.
LISTENING = {43: None, 48: "ORCA: Starting Atspi main event loop"}
TAB_LIST = "page tab list"
PAGE_TAB = " page tab"
SBUS_PAGE = "SBUS/PPM"
TRIGGER_MODE = "cbTriggerPinMode"
SBUS_ITEM = "SBUS"

# Bounds of the waits. Each poll reads the log once; a bound only ends a hopeless wait.
POLL_INTERVAL = 0.02
EVENT_BOUND = 45.0
TABS_PER_PAGE = 40

# A spoken line: "SPEECH OUTPUT: 'text'{voice}" (Orca 43) or "SPEECH OUTPUT: 'text' {voice}"
# (Orca 48). An echoed key ends in a space: "SPEECH OUTPUT: 'tab ' {voice}".
SPOKEN = re.compile(r"SPEECH OUTPUT: '(.*)' ?\{")


def skip(reason):
    print(f"SKIP: {reason}")
    sys.exit(SKIP)


def check_prerequisites():
    session.check_prerequisites()
    if not shutil.which("orca"):
        skip("the screen reader is not installed (Debian package orca)")
    if not shutil.which("xdotool"):
        skip("xdotool is not installed (Debian package xdotool)")


def words(text):
    """Whitespace as a listener hears it: runs of it are one pause. Orca ends an utterance with
    a full stop, which goes; so do one ending an item, as the utterance that speaks it has it
    once."""
    return " ".join(text.split()).rstrip(".").strip()


def caption_words(caption):
    """A caption as it begins an utterance: its own full stop stays, since Orca's comes after the
    role ("Zoom inc./dec. combo box.")."""
    return " ".join(caption.split())


class Failures(list):
    def add(self, message):
        print(f"FAIL: {message}", flush=True)
        self.append(message)


# --- the screen reader's log ------------------------------------------------------------------


class SpeechLog:
    """Orca's debug log, read as it grows. Orca writes it through a buffered file, so Orca is
    started through a shim that makes the file line-buffered (see start_orca)."""

    def __init__(self, path, orca, editor, home):
        self.home = home
        self.path = path
        self.orca = orca
        self.editor = editor
        self.lines = []
        self.partial = ""
        self.offset = 0

    def read(self):
        try:
            with open(self.path, encoding="utf-8", errors="replace") as log:
                log.seek(self.offset)
                chunk = log.read()
                self.offset = log.tell()
        except FileNotFoundError:
            return
        text = self.partial + chunk
        *complete, self.partial = text.split("\n")
        self.lines.extend(complete)

    def mark(self):
        self.read()
        return len(self.lines)

    def utterances(self, since, echo=None):
        """What was spoken since the mark, without the echo of a pressed key: Orca 43 speaks
        it with a space at the end, Orca 48 as the key's name alone."""
        return [words(m.group(1)) for line in self.lines[since:]
                if (m := SPOKEN.search(line)) and not m.group(1).endswith(" ")
                and m.group(1) != echo]

    def wait_for_line(self, text, what):
        """Waits for a line of the log that holds text."""
        deadline = time.monotonic() + EVENT_BOUND
        while True:
            self.read()
            if any(text in line for line in self.lines):
                return
            if self.orca.poll() is not None:
                raise orca_ended(self.home, self.orca, what)
            if time.monotonic() > deadline:
                raise RuntimeError(f"Orca logged nothing like {what} within {EVENT_BOUND:.0f} s")
            time.sleep(POLL_INTERVAL)

    def wait(self, since, done, what, echo=None):
        """Waits until done(utterances since the mark) holds once Orca has finished speaking
        (a line other than speech follows the last utterance). Returns the utterances."""
        deadline = time.monotonic() + EVENT_BOUND
        while True:
            self.read()
            new = self.lines[since:]
            last_speech = max((i for i, line in enumerate(new) if "SPEECH OUTPUT:" in line),
                              default=None)
            if last_speech is not None and last_speech + 1 < len(new):
                heard = self.utterances(since, echo)
                if heard and done(heard):
                    return heard
            if self.editor.poll() is not None:
                raise RuntimeError(f"the editor ended (status {self.editor.returncode}) while "
                                   f"waiting for {what}")
            if self.orca.poll() is not None:
                raise orca_ended(self.home, self.orca, what)
            if time.monotonic() > deadline:
                raise RuntimeError(f"Orca said nothing like {what} within {EVENT_BOUND:.0f} s; "
                                   f"heard {self.utterances(since, echo)}")
            time.sleep(POLL_INTERVAL)


# --- processes --------------------------------------------------------------------------------

ORCA_SHIM = """
import builtins, runpy, sys
log, orca = sys.argv[1], sys.argv[2]
plain_open = builtins.open
def line_buffered(file, mode="r", *args, **kwargs):
    if file == log and "w" in mode:
        return plain_open(file, mode, buffering=1)
    return plain_open(file, mode, *args, **kwargs)
builtins.open = line_buffered
sys.argv = ["orca", "--debug-file=" + log]
runpy.run_path(orca, run_name="__main__")
"""


def other_orcas():
    """Orca refuses to start while another Orca of the same user runs, on any display."""
    found = subprocess.run(["pgrep", "-u", str(os.getuid()), "-x", "orca"],
                           capture_output=True, text=True).stdout
    return found.split()


class OrcaRefused(Exception):
    pass


SILENT_SPEECH_SERVER = """\
# Speech Dispatcher for a machine with no sound: ALSA's null device takes the audio, and the
# one output module runs a command that says nothing, as no synthesizer need be installed.
AudioOutputMethod "alsa"
AudioALSADevice "null"
AddModule "silent" "sd_generic" "silent.conf"
DefaultModule silent
LogLevel 3
"""

SILENT_MODULE = """\
GenericExecuteSynth "true"
AddVoice "en" "MALE1" "silent"
DefaultVoice "silent"
"""


def silent_speech_server(config_home):
    """Orca 48 logs an utterance only once a speech server has taken it (Orca 43 logged it with
    no server at all), and Speech Dispatcher refuses to start when no output module can open
    audio, as on a machine with no sound card. Its per-user settings in the fresh home give it
    a module that needs no audio."""
    folder = os.path.join(config_home, "speech-dispatcher")
    os.makedirs(os.path.join(folder, "modules"), exist_ok=True)
    with open(os.path.join(folder, "speechd.conf"), "w") as conf:
        conf.write(SILENT_SPEECH_SERVER)
    with open(os.path.join(folder, "modules", "silent.conf"), "w") as conf:
        conf.write(SILENT_MODULE)


def start_orca(home, log_path):
    """Orca with a fresh home (its default settings), its debug log line-buffered, what it
    prints kept in orca-output.txt beside the log."""
    others = other_orcas()
    if others:
        raise OrcaRefused(f"another Orca runs for this user (process {', '.join(others)}), "
                          f"and Orca does not start beside it")
    env = dict(os.environ, HOME=home, XDG_CONFIG_HOME=os.path.join(home, "config"),
               XDG_DATA_HOME=os.path.join(home, "data"),
               XDG_CACHE_HOME=os.path.join(home, "cache"))
    env.pop("QT_QPA_PLATFORM", None)  # ctest's offscreen platform is the editor's business
    silent_speech_server(env["XDG_CONFIG_HOME"])
    with open(orca_output_path(home), "w") as output:
        return subprocess.Popen([sys.executable, "-c", ORCA_SHIM, log_path,
                                 shutil.which("orca")], env=env, stdout=output,
                                stderr=subprocess.STDOUT, start_new_session=True)


def orca_output_path(home):
    return os.path.join(home, "orca-output.txt")


def orca_ended(home, orca, what):
    """The error for Orca ending while waiting for what, with the last line Orca printed.
    Another Orca started beside this one in the meantime is no failure of the editor."""
    try:
        with open(orca_output_path(home), encoding="utf-8", errors="replace") as output:
            lines = [line.strip() for line in output if line.strip()]
    except FileNotFoundError:
        lines = []
    # Orca refuses with a hint at --replace; the other may have ended by the time this looks.
    if orca.returncode == 1 and (other_orcas() or any("--replace" in line for line in lines)):
        return OrcaRefused(f"another Orca started for this user beside this one: "
                           f"{lines[-1] if lines else 'no output'}")
    last = f"; its last line: {lines[-1]!r}" if lines else ""
    return RuntimeError(f"Orca ended (status {orca.returncode}) while waiting for {what}{last}")


def focus_editor_window(editor_name):
    """There is no window manager: the editor's window gets the keyboard focus as a window
    manager would give it."""
    subprocess.run(["xdotool", "search", "--sync", "--onlyvisible", "--classname", editor_name,
                    "windowfocus", "--sync"], check=True, stdout=subprocess.DEVNULL)


def press(key):
    subprocess.run(["xdotool", "key", key], check=True)


def orca_release():
    """Orca's major version ("orca 43.1" gives 43), for the words that differ between releases:
    the newest release of those known that is not newer."""
    printed = subprocess.run(["orca", "--version"], capture_output=True, text=True).stdout
    found = re.search(r"(\d+)\.", printed)
    major = int(found.group(1)) if found else max(PUSH_BUTTON)
    return max((release for release in PUSH_BUTTON if release <= major), default=min(PUSH_BUTTON))


# --- the walk ---------------------------------------------------------------------------------


class Walk:
    def __init__(self, log, facts, failures, release):
        self.log = log
        self.release = release
        self.push_button = PUSH_BUTTON[release]
        self.facts = facts
        self.failures = failures
        self.transcript = []
        self.pages = sorted({(c["pageIndex"], c["page"]) for c in facts})
        self.page = None

    def key(self, key, done, what):
        since = self.log.mark()
        press(key)
        heard = self.log.wait(since, done, what, echo=key.lower())
        self.transcript.append((key, heard))
        return heard

    def controls_of(self, page):
        return [c for c in self.facts if c["page"] == page]

    def spoken_control(self, heard):
        """The control of the current page that an utterance names, with the utterance's
        position, or (None, None)."""
        for position, utterance in enumerate(heard):
            for control in self.controls_of(self.page):
                start = f"{caption_words(control['caption'])} "
                if utterance.startswith(start):
                    return control, position
        return None, None

    def known(self, heard):
        return ((self.spoken_control(heard)[0] is not None and self.complete(heard))
                or any(u.endswith(TAB_LIST) or u.endswith(self.push_button) for u in heard))

    def tab(self, key="Tab"):
        heard = self.key(key, self.known, "the next control")
        control, position = self.spoken_control(heard)
        return heard, control, position

    def to_tab_list(self):
        for _ in range(TABS_PER_PAGE):
            heard, _, _ = self.tab()
            for utterance in heard:
                if utterance.endswith(TAB_LIST):
                    self.page = utterance[: -len(TAB_LIST)].strip().removesuffix(" page")
                    return
        raise RuntimeError(f"no {TAB_LIST!r} after {TABS_PER_PAGE} Tabs")

    def show_page(self, page):
        """From the row of page tabs, Right or Left until the page is shown and spoken."""
        index = {name: i for i, name in self.pages}
        while self.page != page:
            key = "Right" if index[page] > index[self.page] else "Left"
            heard = self.key(key, lambda h: any(u.endswith(PAGE_TAB) for u in h), "a page")
            names = [u.removesuffix(PAGE_TAB) for u in heard]
            spoken = [n for n in names if n in index]
            if not spoken:
                raise RuntimeError(f"{key} on the page tabs: no page named in {heard}")
            self.page = spoken[-1]

    def controls_of_page(self, visit):
        """Tabs from the row of page tabs through the shown page and back to the row, calling
        visit(control, heard, position) for each control spoken."""
        visited = []
        for _ in range(TABS_PER_PAGE):
            heard, control, position = self.tab()
            if control is not None:
                visited.append(control["objectName"])
                visit(control, heard, position)
                continue
            if any(u.endswith(TAB_LIST) for u in heard):
                return visited
        raise RuntimeError(f"the page tabs not reached after {TABS_PER_PAGE} Tabs")

    # --- what each control must say ---

    def value_heard(self, control, heard, position):
        """The value in the focus announcement, or None when the role is wrong. Orca 43 says
        "GPS combo box" | "item", "Offset 0.00 spin button"; Orca 48 says "GPS item combo box
        item", "Offset spin button 0.00"."""
        role = ROLE_OF_CLASS.get(control["className"])
        caption = caption_words(control["caption"])
        utterance = heard[position]
        rest = utterance[len(caption):].strip()
        newer = self.release >= 48
        if control["className"] == "QComboBox":
            if newer:
                item, _, spoken = rest.partition(f" {role} ")
                return item if item and item == spoken else None
            if rest != role or position + 1 >= len(heard):
                return None
            return heard[position + 1]
        if control["className"] == "QCheckBox":
            if not rest.startswith(role):
                return None
            return rest[len(role):].strip()
        if control["className"] in ("QSpinBox", "QDoubleSpinBox"):
            if newer:
                return rest[len(role):].strip() if rest.startswith(f"{role} ") else None
            if not rest.endswith(role):
                return None
            return rest[: -len(role)].strip()
        if control["className"] == "QLineEdit":
            # Orca speaks a line edit's text apart, selected as the focus selects it all: "0" |
            # "selected" (Orca 43) or "0 selected" (Orca 48).
            if rest != role:
                return None
            others = [u.removesuffix(" selected") for i, u in enumerate(heard)
                      if i != position and u != "selected"]
            others = [u for u in others if " " not in u]
            return others[0] if others else ""
        return None

    def complete(self, heard):
        """Whether the announcement of a control is whole. Some values come after the caption
        and role as an utterance of their own, and Orca may log other lines in between: a line
        edit's text, and a combo box's item on Orca 43 ("GPS combo box" | "item")."""
        control, position = self.spoken_control(heard)
        if control is None:
            return True
        if control["className"] == "QLineEdit":
            return not control["startText"] or bool(self.value_heard(control, heard, position))
        if control["className"] == "QComboBox" and self.release < 48:
            caption = caption_words(control["caption"])
            said_role_alone = heard[position][len(caption):].strip() == ROLE_OF_CLASS["QComboBox"]
            return not said_role_alone or position + 1 < len(heard)
        return True

    def start_value(self, control):
        if control["className"] == "QComboBox":
            return words(control["startText"])
        if control["className"] == "QCheckBox":
            return CHECKED[control["startChecked"]]
        if control["className"] in ("QSpinBox", "QDoubleSpinBox"):
            return f"{control['startValue']:.{control['decimals']}f}"
        return words(control["startText"])

    def check_focus(self, control, heard, position, expected_value):
        name = f"{self.page}: {control['objectName']} ({control['caption']!r})"
        value = self.value_heard(control, heard, position)
        role = ROLE_OF_CLASS.get(control["className"])
        if value is None:
            self.failures.add(f"{name}: heard {heard}, expected caption, {role!r} and value")
        elif expected_value is not None and value != expected_value:
            self.failures.add(f"{name}: value {value!r} spoken, expected {expected_value!r}")
        return value

    # --- the passes ---

    def focus_pass(self, page):
        self.show_page(page)

        def visit(control, heard, position):
            self.check_focus(control, heard, position, self.start_value(control))

        return self.controls_of_page(visit)

    def change(self, control, key, expected):
        heard = self.key(key, lambda h: expected in h, repr(expected))
        if expected not in heard:
            self.failures.add(f"{self.page}: {key} on {control['objectName']}: heard {heard}, "
                              f"expected {expected!r}")

    def change_pass(self, page):
        self.show_page(page)

        def visit(control, heard, position):
            value = self.check_focus(control, heard, position, None)
            if value is None:
                return
            if control["className"] == "QComboBox":
                items = [words(i) for i in control["items"]]
                if value not in items:
                    self.failures.add(f"{page}: {control['objectName']} speaks {value!r}, not "
                                      f"one of its items")
                    return
                index = items.index(value)
                there, back = ("Down", "Up") if index + 1 < len(items) else ("Up", "Down")
                other = items[index + 1] if there == "Down" else items[index - 1]
                self.change(control, there, other)
                self.change(control, back, value)
            elif control["className"] == "QCheckBox":
                flipped = CHECKED[value != CHECKED[True]]
                self.change(control, "space", flipped)
                self.change(control, "space", value)

        return self.controls_of_page(visit)

    def choose_trigger_mode(self, item):
        """On the Trigger page, Down on the trigger mode until the item is chosen; each step
        must be announced."""
        self.show_page(next(c["page"] for c in self.facts if c["objectName"] == TRIGGER_MODE))
        facts = next(c for c in self.facts if c["objectName"] == TRIGGER_MODE)
        items = [words(i) for i in facts["items"]]
        chosen = []

        def visit(control, heard, position):
            if control["objectName"] != TRIGGER_MODE:
                return
            value = self.check_focus(control, heard, position, None)
            if value not in items:
                return
            for next_item in items[items.index(value) + 1: items.index(item) + 1]:
                self.change(control, "Down", next_item)
            chosen.append(item)

        self.controls_of_page(visit)
        if not chosen:
            self.failures.add(f"the trigger mode could not be set to {item!r}")


def run_walk(log, facts, release):
    failures = Failures()
    walk = Walk(log, facts, failures, release)
    # Orca speaks the window, then its focused button; a key pressed before the button is spoken
    # moves the focus unannounced.
    log.wait(0, lambda h: any(u.endswith(walk.push_button) for u in h), "the focused button")
    walk.to_tab_list()

    heard_per_page = {}
    for _, page in walk.pages:
        if page == SBUS_PAGE:
            continue
        heard_per_page[page] = walk.focus_pass(page)
    walk.choose_trigger_mode(SBUS_ITEM)
    changed = {}
    heard_per_page[SBUS_PAGE] = walk.focus_pass(SBUS_PAGE)
    changed[SBUS_PAGE] = walk.change_pass(SBUS_PAGE)
    for _, page in walk.pages:
        if page != SBUS_PAGE:
            changed[page] = walk.change_pass(page)

    for _, page in walk.pages:
        if not heard_per_page.get(page):
            failures.add(f"{page}: no control spoken")
    counts = {
        "pages": len(heard_per_page),
        "controls spoken": sum(len(v) for v in heard_per_page.values()),
        "combo box changes": sum(1 for t in walk.transcript if t[0] in ("Down", "Up")),
        "check box changes": sum(1 for t in walk.transcript if t[0] == "space"),
    }
    return failures, counts, walk.transcript


def transcript_lines(transcript):
    return [f"{key}: " + " | ".join(heard) for key, heard in transcript]


def write_transcript(path, transcript):
    with open(path, "w", encoding="utf-8") as out:
        out.write("\n".join(transcript_lines(transcript)) + "\n")


def manual_mark(release):
    return f"<!-- transcript of Orca {release} checked by tests/accessibility/orca_speech.py -->"


def manual_example(manual_path, release):
    """The transcript lines the manual quotes for the release: the fenced block after its
    mark."""
    with open(manual_path, encoding="utf-8") as manual:
        text = manual.read()
    if manual_mark(release) not in text:
        return None
    block = text.split(manual_mark(release), 1)[1].split("```", 2)[1]
    return [line for line in block.splitlines()[1:] if line.strip()]


def check_manual(manual_path, release, transcript, failures):
    """The manual's example for the release heard must be a run of lines of what was heard, in
    order. It quotes each release the test knows, so each is held by the machine that has it."""
    for known in PUSH_BUTTON:
        if manual_example(manual_path, known) is None:
            failures.add(f"{manual_path}: no transcript block after {manual_mark(known)!r}")
    example = manual_example(manual_path, release)
    if not example:
        return
    heard = transcript_lines(transcript)
    for start in range(len(heard) - len(example) + 1):
        if heard[start: start + len(example)] == example:
            return
    failures.add(f"{manual_path}: its Orca {release} transcript is not what Orca said; the first "
                 f"line not heard in that order: "
                 f"{next((line for line in example if line not in heard), example[0])!r}")


def run_in_session(arguments):
    facts = json.loads(subprocess.run([arguments.facts], check=True, capture_output=True,
                                      text=True).stdout)
    import tempfile

    display_server = editor = bus = orca = None
    with tempfile.TemporaryDirectory(prefix="lumarex-orca-") as home:
        log_path = os.path.join(home, "orca-debug.log")
        try:
            display_server, display = session.start_display()
            os.environ["DISPLAY"] = display
            editor = session.start_editor(arguments.editor, display)
            session.poll(lambda: session.editor_watches_for_bus(editor),
                         "the editor to watch for the accessibility bus", editor)
            bus = session.start_accessibility_bus(home)
            session.poll(session.accessibility_bus_owned, "the accessibility bus", editor)
            name = os.path.basename(arguments.editor)
            orca = start_orca(home, log_path)
            log = SpeechLog(log_path, orca, editor, home)
            release = orca_release()
            log.wait(0, lambda h: len(h) > 0, "Orca starting")
            if LISTENING[release]:
                log.wait_for_line(LISTENING[release], "Orca listening")
            focus_editor_window(name)
            failures, counts, transcript = run_walk(log, facts, release)
        except OrcaRefused as refused:
            print(f"SKIP: {refused}")
            return SKIP
        except RuntimeError as error:
            print(f"FAIL: {error}")
            if arguments.keep_log:
                shutil.copy(log_path, arguments.keep_log)
            return 1
        finally:
            session.stop(orca)
            session.stop(editor)
            session.stop(bus)
            session.stop(display_server)

    if arguments.transcript:
        write_transcript(arguments.transcript, transcript)
    if arguments.manual:
        check_manual(arguments.manual, release, transcript, failures)
    print("; ".join(f"{k}: {v}" for k, v in counts.items()))
    return 1 if failures else 0


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("--editor", required=True)
    parser.add_argument("--facts", required=True)
    parser.add_argument("--transcript", help="write every key and what Orca said to it")
    parser.add_argument("--manual", help="the manual whose example transcript must be heard")
    parser.add_argument("--keep-log", help="where to copy Orca's log when the walk breaks off")
    arguments = parser.parse_args()

    check_prerequisites()
    return session.in_private_session(IN_SESSION, run_in_session, arguments)


if __name__ == "__main__":
    sys.exit(main())
