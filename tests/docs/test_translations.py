#!/usr/bin/env python3
"""The Chinese pages match the English pages: they have the same structure, code, names and links."""

import re
import unittest
from collections import Counter

from markdownpage import ROOT, Page

NAMES = ("README", "docs/deployment")


def pair(name):
    """The paths of the English page and of the Chinese page."""
    return ROOT / f"{name}.md", ROOT / f"{name}.zh-CN.md"


def pages(name):
    return tuple(map(Page.read, pair(name)))


def commands(page):
    """The lines of code without comments at the end, because these are translated."""
    return [re.sub(r"\s+# .*", "", line) for line in page.code]


def in_chinese(link, page):
    """The link in the Chinese page that corresponds to a link of the English page at `page`."""
    target, _, fragment = link.partition("#")
    for english, chinese in map(pair, NAMES):
        if (page.parent / target if target else page).resolve() == english:
            if fragment:
                fragment = Page.read(chinese).anchors()[Page.read(english).anchors().index(fragment)]
            target = target.replace(english.name, chinese.name)
    return f"{target}#{fragment}" if fragment else target


def body(page):
    """The sections without the line below the title, which contains the link to the other language."""
    page.prose[2:3] = []
    return page.sections()


class TestTranslations(unittest.TestCase):
    def test_each_page_leads_to_the_other_language(self):
        for name in NAMES:
            with self.subTest(name):
                english, chinese = pages(name)
                file = name.split("/")[-1]
                self.assertEqual(english.prose[1:4], ["", f"English · [简体中文]({file}.zh-CN.md)", ""])
                self.assertEqual(chinese.prose[1:4], ["", f"[English]({file}.md) · 简体中文", ""])

    def test_headings(self):
        for name in NAMES:
            with self.subTest(name):
                english, chinese = pages(name)
                self.assertEqual(chinese.levels(), english.levels())
                self.assertEqual(len(english.levels()), len(english.sections()))

    def test_code_blocks(self):
        for name in NAMES:
            with self.subTest(name):
                english, chinese = pages(name)
                self.assertEqual(commands(chinese), commands(english))
                self.assertTrue(commands(english))

    def test_sections(self):
        for name in NAMES:
            english, chinese = map(body, pages(name))
            for ours, theirs in zip(chinese, english):
                with self.subTest(name, section=theirs.headings()[0]):
                    self.assertEqual(ours.tables(), theirs.tables())
                    self.assertEqual(ours.list_items(), theirs.list_items())
                    self.assertEqual(Counter(ours.code_spans()), Counter(theirs.code_spans()))
                    self.assertEqual(Counter(ours.links()),
                                     Counter(in_chinese(link, pair(name)[0]) for link in theirs.links()))

    def test_links_of_a_translation(self):
        for link, expected in (
            ("docs/deployment.md", "docs/deployment.zh-CN.md"),
            ("docs/deployment.md#passwords", "docs/deployment.zh-CN.md#密码"),
            ("docs/images/sign-in.png", "docs/images/sign-in.png"),
            ("docs/gallery.md#sign-in", "docs/gallery.md#sign-in"),
        ):
            self.assertEqual(in_chinese(link, ROOT / "README.md"), expected)

    def test_what_is_compared(self):
        page = Page("# One\n\ntext `a` and `b`\n\n    make it   # now\n\n| A | B |\n|---|---|\n| `c` | |\n\n"
                    "- one\n- two\n\n## Two\n\n```sh\n# no heading\n```\n")
        self.assertEqual(page.levels(), [1, 2])
        self.assertEqual(commands(page), ["    make it", "```sh", "# no heading", "```"])
        first, second = page.sections()
        self.assertEqual((first.code_spans(), first.tables(), first.list_items()), (["a", "b", "c"], [[2, 2, 2]], 2))
        self.assertEqual((second.code_spans(), second.tables(), second.list_items()), ([], [], 0))


if __name__ == "__main__":
    unittest.main()
