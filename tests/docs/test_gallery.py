#!/usr/bin/env python3
"""docs/gallery.md shows each picture under its caption from docs/gallery.txt, and tools/gallery requires a caption for
each picture and a picture for each caption."""

import re
import tempfile
import unittest
from importlib.machinery import SourceFileLoader
from importlib.util import module_from_spec, spec_from_loader
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]


def load_tool():
    spec = spec_from_loader("gallery", SourceFileLoader("gallery", str(ROOT / "tools/gallery")))
    tool = module_from_spec(spec)
    spec.loader.exec_module(tool)
    return tool


gallery = load_tool()


class TestGallery(unittest.TestCase):
    def setUp(self):
        self.captions = gallery.all_captions(gallery.read_captions(gallery.CAPTIONS.read_text(encoding="utf-8")))
        self.page = gallery.PAGE.read_text(encoding="utf-8")

    def test_page_is_up_to_date(self):
        gallery.check(gallery.read_captions(gallery.CAPTIONS.read_text(encoding="utf-8")))

    def test_page_shows_each_picture_once_below_its_caption(self):
        shown = re.findall(r"^(.+)\n\n!\[[^]]*\]\(images/gallery/(.+)\.png\)$", self.page, flags=re.M)
        self.assertEqual([(name, caption) for caption, name in shown], list(self.captions.items()))
        self.assertEqual({name for _, name in shown}, {path.stem for path in gallery.PICTURES.iterdir()})
        self.assertEqual(self.page.count("!["), len(shown))

    def test_pictures_are_pictures_and_small(self):
        for picture in gallery.PICTURES.iterdir():
            self.assertEqual(picture.read_bytes()[:8], b"\x89PNG\r\n\x1a\n", picture)
        self.assertLessEqual(sum(path.stat().st_size for path in gallery.PICTURES.iterdir()), gallery.MOST_BYTES)


class TestTool(unittest.TestCase):
    def test_captions_are_read(self):
        text = "# Sign-in\n\n01-window  The window.\n02-typing A name, typed.\n# Update\nupdate-1 It is there.\n"
        self.assertEqual(gallery.read_captions(text), {
            "Sign-in": {"01-window": "The window.", "02-typing": "A name, typed."},
            "Update": {"update-1": "It is there."},
        })

    def test_mistakes_in_the_captions(self):
        for text in ("01-window  Before a section.\n", "# One\n01-window\n",
                     "# One\n01-window  Once.\n# Two\n01-window  Twice.\n"):
            with self.subTest(text), self.assertRaises(gallery.Mistake):
                gallery.read_captions(text)

    def test_pictures_and_captions_belong_together(self):
        """If a caption or a picture is missing, the tool fails and does not change the gallery."""
        before = {path: path.stat().st_mtime_ns for path in (gallery.PAGE, *gallery.PICTURES.iterdir())}
        sections = {"Sign-in": {"01-window": "The window."}}
        for names, said in (([], "captions without a picture: 01-window"),
                            (["01-window", "02-typing"], "without a caption in gallery.txt: 02-typing")):
            with self.subTest(names), tempfile.TemporaryDirectory() as folder:
                for name in names:
                    (Path(folder) / f"{name}.png").touch()
                with self.assertRaisesRegex(gallery.Mistake, said):
                    gallery.make(sections, Path(folder))
        after = {path: path.stat().st_mtime_ns for path in (gallery.PAGE, *gallery.PICTURES.iterdir())}
        self.assertEqual(after, before)

    def test_page_of_captions(self):
        page = gallery.page({"Sign-in": {"01-window": "The window.", "02-typing": "Typed."}})
        self.assertTrue(page.startswith("# Gallery\n"))
        self.assertTrue(page.endswith("\n\n## Sign-in\n\nThe window.\n\n![01-window](images/gallery/01-window.png)\n\n"
                                      "Typed.\n\n![02-typing](images/gallery/02-typing.png)\n"))


if __name__ == "__main__":
    unittest.main()
