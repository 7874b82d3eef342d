#!/usr/bin/env python3
"""docs/troubleshooting.md contains every fixed text that the library logs, shows or throws, and no other text.

The document contains a text as a code span in the first column of a table; "…" replaces the variable parts.
"""

import re
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
DOCUMENT = ROOT / "docs" / "troubleshooting.md"
LIBRARY = ("bim", "login", "platform", "plugin", "project", "resources", "sdk", "tasks", "updater", "web")

# Patterns of the beginnings of statements whose string literals are logged, shown or thrown.
WAYS = (
    r"\bq(?:Debug|Info|Warning|Critical|Fatal)\b",
    r"\breportInfo\b",  # in the updater
    r"\bhere\.warning\b",  # for files and JSON
    r"\berrorString =",  # the updater reports this text
    r"\bconsole\.\w+",
    r"\bthrow\b",
    r'\breturn QStringLiteral(?=\("[\w ]+ failed"\))',  # the reason why a sign-in failed
    r"\breturn qsTr\b",  # an error text of the login form
)
LITERAL = r'"(?:[^"\\]|\\.)*"'
REST_OF_STATEMENT = rf'(?:{LITERAL}|[^;"])*;'
# Texts of failed operations begin with the operation's name. They are found in any statement.
OPERATION_TEXT = r'"C\w+::[^"]*"'


def pieces(text):
    """The fixed parts of a text: the parts between "…" and place markers."""
    return {piece.strip() for piece in re.split(r"…|%\w", text)} - {""}


def texts_by_way(source):
    """The fixed texts of a source, by the pattern that finds them."""
    found = {way: set() for way in (*WAYS, OPERATION_TEXT)}
    for way in WAYS:
        for statement in re.findall(way + REST_OF_STATEMENT, source):
            for literal in re.findall(LITERAL, statement):
                found[way] |= pieces(literal[1:-1])
    for literal in re.findall(OPERATION_TEXT, source):
        found[OPERATION_TEXT] |= pieces(literal[1:-1])
    return found


def texts(source):
    return set().union(*texts_by_way(source).values())


def documented(document):
    first_column = "\n".join(re.findall(r"^\|([^|]*)\|", document, flags=re.M))
    return set().union(*map(pieces, re.findall(r"`([^`\n]+)`", first_column)))


def library_sources():
    for folder in LIBRARY:
        for pattern in ("*.cpp", "*.h", "*.qml"):
            for path in sorted((ROOT / folder).rglob(pattern)):
                yield path.read_text(encoding="utf-8")


class TestTroubleshooting(unittest.TestCase):
    def test_document_has_the_library_s_texts(self):
        in_library = set().union(*map(texts, library_sources()))
        in_document = documented(DOCUMENT.read_text(encoding="utf-8"))
        self.assertEqual(in_library - in_document, set(), "missing in docs/troubleshooting.md")
        self.assertEqual(in_document - in_library, set(), "no longer in the library")

    def test_each_way_is_in_use(self):
        """A pattern that matches nothing in the library is out of date."""
        everything = texts_by_way("\n".join(library_sources()))
        self.assertEqual([way for way, found in everything.items() if not found], [])

    def test_texts_are_found(self):
        for source, expected in (
            ('qWarning().noquote() << "open file " << path << "failed:" << text;', {"open file", "failed:"}),
            ('qDebug("a; b");', {"a; b"}),
            ('qInfo() << __FILE__\n    << QStringLiteral("重试");', {"重试"}),
            ('qDebug("%s", text);', set()),
            ('errorString = QStringLiteral("exists: %1").arg(path);', {"exists:"}),
            ('request({path, "CSomething::call falied!"});', {"CSomething::call falied!"}),
            ('console.log(" done", path);', {"done"}),
            ('return QStringLiteral("read list failed");', {"read list failed"}),
            ('return QStringLiteral("/login");', set()),
            ('const auto text = "not said";', set()),
        ):
            with self.subTest(source):
                self.assertEqual(texts(source), expected)

    def test_documented_texts_are_found(self):
        self.assertEqual(documented("| `open file … failed: …` | cause | `not this` |\n| \"Qt's\" | |\n`nor this`\n"),
                         {"open file", "failed:"})


if __name__ == "__main__":
    unittest.main()
