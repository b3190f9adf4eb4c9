#!/usr/bin/python3
"""What the compiler cannot see. Every rule says why and shows the way out; each carries a line that it must refuse, so
that a rule which no longer matches anything fails here too."""
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]


class Rule:
    def __init__(self, pattern, where, why, example, outside=(), in_comments=False):
        self.pattern = re.compile(pattern)
        self.in_comments = in_comments
        self.where = where
        self.outside = outside
        self.why = why
        self.example = example

    def applies_to(self, path):
        return path.startswith(self.where) and not path.startswith(tuple(self.outside))


COMMENT = re.compile(r"//.*$")
SOURCES = ("src/", "tests/", "bench/")
PLATFORM = ("src/platform/", "src/keeper/", "tests/platform/", "tests/peers/")
RULES = [
    Rule(r"\bQ(Timer|ElapsedTimer)\b|steady_clock", SOURCES,
         "time comes only from TaskScheduler; take one through the constructor", "QTimer timer;",
         ("src/foundation/", "tests/foundation/")),
    Rule(r"\bxcb_\w+|<xcb/", ("src/",), "X11 stays behind the platform interfaces; extend one of them", "xcb_flush(c);",
         ("src/platform/x11/", "src/keeper/")),
    Rule(r"QCursor::pos|mapToGlobal|screenAt\(|mouseButtons\(|\bQClipboard\b|\bQToolTip\b|QDrag\b.*exec|activateWindow\(",
         ("src/",), "a desktop service: ask the platform layer for what it means", "QCursor::pos();", PLATFORM),
    Rule(r"menu\w*(\.|->)(exec|popup)\(", ("src/",), "menus open through Popups, or they fall behind the panel",
         "menu.popup(p);", PLATFORM),
    Rule(r"QGuiApplication::platformName|QX11|Q_OS_|#if.*(X11|WAYLAND)", ("src/",),
         "nothing outside platform/ knows the display server", "#if defined(Q_OS_LINUX)", PLATFORM),
    Rule(r'#include "\.\./', SOURCES, "include as folder/File.h: the include roots are the architecture",
         '#include "../notch/Theme.h"'),
    Rule(r"NOLINT(?!(NEXTLINE|BEGIN|END)?\([\w.,-]+\)[:,] \S)", SOURCES, "NOLINT(check): reason", "int x; // NOLINT",
         in_comments=True),
    Rule(r"(begin|end)PropertyUpdateGroup", ("src/", "tests/"),
         "Qt 6.4 loses notifiers of bindings on bindings at its end: assign one value that holds all",
         "Qt::beginPropertyUpdateGroup();"),
    Rule(r"(?<!operator )\bnew [A-Za-z_:]+[\s({<]", ("src/", "bench/"), "ownership shows: std::make_unique or makeChild",
         "auto *w = new QWidget(this);", ("src/foundation/MakeChild.h",)),
    Rule(r"(public |makeChild<)Q(Line|Text|PlainText)Edit\b", ("src/",),
         "the toolkit's text fields wait for other programs: CaretLineEdit, or a FieldExchange and a line here",
         "class Field : public QLineEdit", ("src/notch/controls/CaretLineEdit.h", "src/windows/controls/PlainEditor.h")),
    Rule(r"qSleep|qWait\(|sleep_for|usleep\(|QThread::(m|u)?sleep", ("src/", "tests/", "bench/"),
         "no bare waits: wait on a condition with a deadline, or move the manual clock", "QTest::qWait(50);"),
    Rule(r"friend class \w*Test", ("src/",), "tests use what everybody uses: extract the part that needs testing",
         "friend class NotchTest;"),
    Rule(r"QSKIP|QEXPECT_FAIL|GTEST_SKIP", ("tests/",), "a test runs or is deleted", "QSKIP(\"later\");"),
    Rule(r"\b(TODO|FIXME|XXX|HACK)\b", SOURCES + ("tour/", "docs/", "scripts/"), "finish it or write an issue",
         "// TODO", in_comments=True),
    Rule(r"#include <Qt(Core|Gui|Widgets|DBus|Test)>", SOURCES, "include the class, not the module", "#include <QtCore>"),
]


def tracked():
    listing = subprocess.run(["git", "ls-files", "--cached", "--others", "--exclude-standard"], cwd=ROOT, check=True,
                             capture_output=True, text=True).stdout
    return [name for name in listing.splitlines() if (ROOT / name).is_file()]


def main():
    problems = [f"lint: rule no longer matches its example: {rule.example}" for rule in RULES
                if not rule.pattern.search(rule.example)]
    suffixes = (".cpp", ".h", ".py", ".sh", ".md")
    for name in tracked():
        if not name.endswith(suffixes) or name.startswith("tests/lint/"):
            continue
        rules = [rule for rule in RULES if rule.applies_to(name)]
        text = (ROOT / name).read_text(encoding="utf-8")
        if name.endswith(".h") and "#pragma once" not in text:
            problems.append(f"{name}:1: a header starts with #pragma once")
        for number, line in enumerate(text.splitlines(), 1):
            problems += [f"{name}:{number}: {rule.why}\n    {line.strip()}" for rule in rules
                         if rule.pattern.search(line if rule.in_comments else COMMENT.sub("", line))]
    print("\n".join(problems) if problems else "lint: nothing to complain about")
    return 1 if problems else 0


sys.exit(main())
