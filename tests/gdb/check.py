# SPDX-License-Identifier: MIT
"""Run by gdb on the program of shown.cpp: compares what gdb shows of each variable."""

import locale

import gdb

# What can be printed is what the locale knows, which may be none.
locale.setlocale(locale.LC_CTYPE, "C.UTF-8")

EXPECTED = {
    "empty": 'u""',
    "title": 'u"Ἰλιάς"',
    "document": "document",
    "root": 'element "shelf"',
    "doctype": 'document type "shelf"',
    "comment": 'comment "old"',
    "book": 'element "book"',
    "text": 'text "The Iliad"',
    "raw": 'CDATA section "raw"',
    "instruction": 'processing instruction "run"',
    "none": "no node",
    "nullElement": "null",
    "nullList": "null",
    "children": 'children of element "shelf"',
    "books": 'elements "book" in element "shelf"',
    "own": "PelDOMNodeList",
}

gdb.execute("set host-charset UTF-8")
gdb.execute("break stop")
gdb.execute("run")
gdb.execute("up")
wrong = 0
for name, expected in EXPECTED.items():
    shown = gdb.parse_and_eval(name).format_string()
    if shown != expected:
        print(f"{name}: expected {expected}, got {shown}")
        wrong += 1
print(f"{len(EXPECTED) - wrong} of {len(EXPECTED)} are shown as they should be")
gdb.execute("kill")
gdb.execute(f"quit {1 if wrong else 0}")
