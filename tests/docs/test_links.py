#!/usr/bin/env python3
"""The target of each link between the documents exists: the file or folder, and the heading if the link has one."""

import unittest

from markdownpage import ROOT, Page, anchor

PAGES = [*sorted(ROOT.glob("*.md")), *sorted((ROOT / "docs").glob("*.md"))]


def broken_links(path):
    broken = []
    for link in Page.read(path).links():
        target, _, fragment = link.partition("#")
        file = (path.parent / target) if target else path
        if not file.exists() or (fragment and fragment not in Page.read(file).anchors()):
            broken.append(link)
    return broken


class TestLinks(unittest.TestCase):
    def test_links_lead_somewhere(self):
        for path in PAGES:
            with self.subTest(path.name):
                self.assertEqual(broken_links(path), [])

    def test_there_are_links(self):
        for name in ("README.md", "README.zh-CN.md", "docs/deployment.md", "docs/troubleshooting.md"):
            with self.subTest(name):
                self.assertGreater(len(Page.read(ROOT / name).links()), 3)

    def test_anchors(self):
        for heading, expected in (
            ("# Files of the sign-in", "files-of-the-sign-in"),
            ("## Signed in, but the editor has nothing", "signed-in-but-the-editor-has-nothing"),
            ("### `make docs`: HTTPS & proxies", "make-docs-https--proxies"),
            ("## [1.0.0] - unreleased", "100---unreleased"),
            ("## 从命令行登录", "从命令行登录"),
            ("## [The kit](kit.md)", "the-kit"),
        ):
            self.assertEqual(anchor(heading), expected)

    def test_links_in_code_do_not_count(self):
        page = Page("[one](a.md) `[two](b.md)`\n\n    [three](c.md)\n\n```\n[four](d.md)\n```\n![five](e.png#f) "
                    "[six](https://example.org/)")
        self.assertEqual(page.links(), ["a.md", "e.png#f"])


if __name__ == "__main__":
    unittest.main()
