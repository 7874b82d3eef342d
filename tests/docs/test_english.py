#!/usr/bin/env python3
"""examples/translation/nelvo_en.ts contains each text that the library's pages translate, and no other."""

import re
import unittest
from pathlib import Path
from xml.etree import ElementTree

ROOT = Path(__file__).resolve().parents[2]


def texts_of_pages():
    return {(page.stem, text) for page in (ROOT / "resources/qmls").rglob("*.qml")
            for text in re.findall(r'qsTr\("([^"]*)"\)', page.read_text(encoding="utf-8"))}


def translations():
    """The English text for each page and Chinese text."""
    tree = ElementTree.parse(ROOT / "examples/translation/nelvo_en.ts")
    return {(context.findtext("name"), message.findtext("source")): message.findtext("translation")
            for context in tree.iter("context") for message in context.iter("message")}


class TestEnglish(unittest.TestCase):
    def test_each_text_is_translated(self):
        self.assertTrue(texts_of_pages())
        self.assertEqual(translations().keys(), texts_of_pages())

    def test_translations_are_english(self):
        for text in translations().values():
            self.assertTrue(text.isascii() and text, text)


if __name__ == "__main__":
    unittest.main()
