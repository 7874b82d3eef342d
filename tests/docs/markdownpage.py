"""Reads Markdown pages for the tests of the documents."""

import os
import re
from pathlib import Path

# The folder of the documents: the one in the variable, such as a kit's, or else the repository.
ROOT = Path(os.environ.get("NELVO_DOCUMENTS", Path(__file__).resolve().parents[2]))


class Page:
    """The lines of a page, or of a section of a page: prose and code separately."""

    def __init__(self, text):
        self.code, self.prose = [], []
        is_fenced = False
        for line in text.splitlines():
            is_fence = line.lstrip().startswith("```")
            is_fenced ^= is_fence
            is_code = is_fence or is_fenced or line.startswith(4 * " ")
            (self.code if is_code else self.prose).append(line)

    @classmethod
    def read(cls, path):
        return cls(path.read_text(encoding="utf-8"))

    def sections(self):
        """The sections as pages, without code. Each begins with its heading."""
        starts = [number for number, line in enumerate(self.prose) if line.startswith("#")]
        return [Page("\n".join(self.prose[start:end])) for start, end in zip(starts, [*starts[1:], None])]

    def headings(self):
        return [line for line in self.prose if re.match(r"#+ ", line)]

    def levels(self):
        return [heading.index(" ") for heading in self.headings()]

    def anchors(self):
        """The anchors of the headings, in their order."""
        return [anchor(heading) for heading in self.headings()]

    def code_spans(self):
        return re.findall(r"`([^`\n]+)`", "\n".join(self.prose))

    def links(self):
        """The targets of links and pictures, without web addresses."""
        text = re.sub(r"`[^`\n]+`", "", "\n".join(self.prose))
        return [target for target in re.findall(r"\]\(([^)\s]+)\)", text) if "://" not in target]

    def tables(self):
        """For each table, the numbers of columns of its rows."""
        found = [[]]
        for line in self.prose:
            if line.startswith("|"):
                found[-1].append(line.rstrip().strip("|").count("|") + 1)
            elif found[-1]:
                found.append([])
        return [rows for rows in found if rows]

    def list_items(self):
        return sum(bool(re.match(r"(- |\d+\. )", line)) for line in self.prose)


def anchor(heading):
    """The anchor of a heading, formed like on common repository hosts."""
    text = re.sub(r"\[([^]]*)\]\([^)]*\)", r"\1", heading.lstrip("#").strip())
    return re.sub(r"[^\w\- ]", "", text.lower()).replace(" ", "-")
