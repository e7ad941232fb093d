"""Reads the sources of the operator's manual: a folder of pages in a small, strict part of Markdown.

    # Title               the page's first line, and nowhere else
    ## Heading
    1. a step             the numbers count; longer items go on in lines that are indented
    - an item
    | a | b |             a table of two columns: a row of captions, a row of dashes, then the rows
    ![Caption](pictures/NAME.png)
    anything else         a paragraph; lines that follow each other belong together

Within a text there are **bold**, `literal` and [a link](PAGE.md). The pages are read in the order in which the
contents page, index.md, links to them. Everything else is an error that tells file and line.
"""

import re
from dataclasses import dataclass, field
from pathlib import Path

CONTENTS = "index"

INLINE = re.compile(r"\*\*(?P<bold>.+?)\*\*|`(?P<literal>[^`]+)`|\[(?P<link>[^\]]+)\]\((?P<target>[^)]*)\)")
NO_PLAIN_TEXT = re.compile(r"[*`\[\]<>]")
LINK_TARGET = re.compile(r"([a-z0-9-]+)\.md")
PICTURE = re.compile(r"!\[([^\]]+)\]\((pictures/[a-z0-9-]+\.png)\)")
ITEM = re.compile(r"(?:(\d+)\.|-) (\S.*)")
DASHES = re.compile(r"\|(-+\|)+")
UNKNOWN_START = re.compile(r"[#>+~=!|]|\s|[*-](?!\*)|\d+[.)]\s")


class SourceError(Exception):
    pass


@dataclass
class Run:
    """A piece of a text in one style: "", "bold", "literal" or "link", which leads to the page `target`."""
    text: str
    style: str = ""
    target: str = ""


@dataclass
class Heading:
    runs: list


@dataclass
class Paragraph:
    runs: list


@dataclass
class List:
    numbered: bool
    items: list  # of runs


@dataclass
class Table:
    rows: list  # of two cells, each a list of runs; the first row holds the captions


@dataclass
class Picture:
    caption: str
    path: Path  # the file may be missing


@dataclass
class Page:
    name: str
    title: str
    blocks: list = field(default_factory=list)
    links: list = field(default_factory=list)  # (page name, line number)


class Reader:
    """The lines of one page and how far they are read."""

    def __init__(self, path):
        self.path = path
        self.lines = [line.rstrip() for line in path.read_text(encoding="utf-8").splitlines()]
        self.next = 0
        self.page = Page(path.stem, self.read_title())

    def fail(self, what):
        raise SourceError(f"{self.path}:{max(self.next, 1)}: {what}")

    def peek(self):
        return self.lines[self.next] if self.next < len(self.lines) else ""

    def take(self):
        self.next += 1
        return self.lines[self.next - 1]

    def read_title(self):
        if not self.peek().startswith("# "):
            self.fail('a page starts with "# " and its title')
        return self.take()[2:]

    def read_runs(self, text):
        runs, end = [], 0
        for match in INLINE.finditer(text):
            runs.append(self.plain(text[end:match.start()]))
            end = match.end()
            style = match.lastgroup if match.lastgroup != "target" else "link"
            runs.append(Run(match[style], style, self.read_target(match["target"]) if style == "link" else ""))
        runs.append(self.plain(text[end:]))
        return [run for run in runs if run.text]

    def plain(self, text):
        if NO_PLAIN_TEXT.search(text):
            self.fail(f"neither bold, literal nor a link: {text!r}")
        return Run(text)

    def read_target(self, target):
        match = LINK_TARGET.fullmatch(target)
        if not match:
            self.fail(f"a link leads to PAGE.md, not to {target!r}")
        self.page.links.append((match[1], self.next))
        return match[1]

    def read_item_lines(self, first):
        text = first
        while self.peek().startswith("  "):
            text += " " + self.take().strip()
        return self.read_runs(text)

    def read_list(self):
        numbered = self.peek()[0].isdigit()
        items = []
        while match := ITEM.fullmatch(self.peek()):
            self.take()
            if match[1] != (str(len(items) + 1) if numbered else None):
                self.fail("the items of a list are numbered from 1, or none is")
            items.append(self.read_item_lines(match[2]))
        return List(numbered, items)

    def read_cells(self):
        cells = self.take().strip("|").split("|")
        if len(cells) != 2:
            self.fail("a table has two columns")
        return [self.read_runs(cell.strip()) for cell in cells]

    def read_table(self):
        rows = [self.read_cells()]
        if not DASHES.fullmatch(self.take() if self.peek() else ""):
            self.fail("a row of dashes follows the captions of a table")
        while self.peek().startswith("|"):
            rows.append(self.read_cells())
        return Table(rows)

    def read_paragraph(self):
        if UNKNOWN_START.match(self.peek()):
            self.take()
            self.fail("unknown construct")
        text = self.take()
        while self.peek() and not UNKNOWN_START.match(self.peek()):
            text += " " + self.take()
        return Paragraph(self.read_runs(text))

    def read_block(self):
        line = self.peek()
        if line.startswith("## "):
            return Heading(self.read_runs(self.take()[3:]))
        if line.startswith("|"):
            return self.read_table()
        if ITEM.fullmatch(line):
            return self.read_list()
        if picture := PICTURE.fullmatch(line):
            self.take()
            return Picture(picture[1], self.path.parent / picture[2])
        return self.read_paragraph()

    def read_page(self):
        while self.next < len(self.lines):
            if self.peek():
                self.page.blocks.append(self.read_block())
                if self.peek():
                    self.take()
                    self.fail("an empty line parts what does not belong together")
            else:
                self.take()
        return self.page


def read_manual(folder):
    """The pages of a folder, the contents page first."""
    pages = {path.stem: Reader(path).read_page() for path in sorted(folder.glob("*.md"))}
    if CONTENTS not in pages:
        raise SourceError(f"{folder}: there is no contents page {CONTENTS}.md")
    for page in pages.values():
        for name, line in page.links:
            if name not in pages:
                raise SourceError(f"{folder / page.name}.md:{line}: there is no page {name}.md")
    order = list(dict.fromkeys([CONTENTS] + [name for name, _ in pages[CONTENTS].links]))
    for name in pages.keys() - set(order):
        raise SourceError(f"{folder / name}.md:1: the contents page does not lead here")
    return [pages[name] for name in order]
