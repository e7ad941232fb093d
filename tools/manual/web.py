"""Writes the manual as web pages that work from the disk: no scripts, nothing from elsewhere."""

import html
import shutil

from manual.source import CONTENTS, Heading, List, Paragraph, Picture, Table

STYLE_NAME = "manual.css"
STYLE = """\
body { max-width: 44em; margin: 0 auto; padding: 1em; font: 16px/1.5 Verdana, Arial, sans-serif; color: #222; }
h1 { font-size: 1.6em; border-bottom: 2px solid #357; }
h2 { font-size: 1.2em; margin-top: 1.6em; }
a { color: #15c; }
li { margin: 0.4em 0; }
code { font-family: Consolas, "Courier New", monospace; background: #eef; padding: 0 0.2em; }
table { border-collapse: collapse; }
th, td { border: 1px solid #999; padding: 0.3em 0.6em; text-align: left; vertical-align: top; }
th { background: #e8eef4; }
img { max-width: 100%; border: 1px solid #999; }
.caption { font-size: 0.9em; color: #555; }
.pages { font-size: 0.9em; }
"""

PAGE = """\
<!DOCTYPE html>
<html lang="en">
<head>
<meta http-equiv="Content-Type" content="text/html; charset=utf-8">
<meta name="viewport" content="width=device-width">
<title>{title}</title>
<link rel="stylesheet" type="text/css" href="{style}">
</head>
<body>
<p class="pages">{ways}</p>
<h1>{title}</h1>
{blocks}
</body>
</html>
"""


def file_name(page_name):
    return page_name + ".html"


def link(page_name, text):
    return f'<a href="{file_name(page_name)}">{html.escape(text)}</a>'


def write_run(run):
    text = html.escape(run.text)
    if run.style == "link":
        return link(run.target, run.text)
    tag = {"bold": "b", "literal": "code"}.get(run.style)
    return f"<{tag}>{text}</{tag}>" if tag else text


def write_runs(runs):
    return "".join(map(write_run, runs))


def write_list(block):
    tag = "ol" if block.numbered else "ul"
    items = "".join(f"<li>{write_runs(item)}</li>\n" for item in block.items)
    return f"<{tag}>\n{items}</{tag}>"


def write_row(cells, tag):
    return "<tr>" + "".join(f"<{tag}>{write_runs(cell)}</{tag}>" for cell in cells) + "</tr>\n"


def write_table(block):
    captions, *rows = block.rows
    return "<table>\n" + write_row(captions, "th") + "".join(write_row(row, "td") for row in rows) + "</table>"


def write_picture(block):
    if not block.path.exists():
        return ""
    caption = html.escape(block.caption)
    return (f'<p><img src="pictures/{block.path.name}" alt="{caption}"><br>\n'
            f'<span class="caption">{caption}</span></p>')


WRITERS = {
    Heading: lambda block: f"<h2>{write_runs(block.runs)}</h2>",
    Paragraph: lambda block: f"<p>{write_runs(block.runs)}</p>",
    List: write_list,
    Table: write_table,
    Picture: write_picture,
}


def ways(pages, number):
    """The contents page and the neighbours of a page."""
    found = [link(CONTENTS, "Contents")] if number else []
    if number > 1:
        found.append("Before: " + link(pages[number - 1].name, pages[number - 1].title))
    if number + 1 < len(pages):
        found.append("Next: " + link(pages[number + 1].name, pages[number + 1].title))
    return " | ".join(found)


def copy_pictures(pages, folder):
    shutil.rmtree(folder, ignore_errors=True)
    for page in pages:
        for block in page.blocks:
            if isinstance(block, Picture) and block.path.exists():
                folder.mkdir(exist_ok=True)
                shutil.copy(block.path, folder)


def write_pages(pages, folder):
    for old in folder.glob("*.html"):  # of a page that is no more
        old.unlink()
    copy_pictures(pages, folder / "pictures")
    (folder / STYLE_NAME).write_text(STYLE, encoding="utf-8")
    for number, page in enumerate(pages):
        blocks = "\n".join(WRITERS[type(block)](block) for block in page.blocks)
        text = PAGE.format(title=html.escape(page.title), style=STYLE_NAME, ways=ways(pages, number), blocks=blocks)
        (folder / file_name(page.name)).write_text(text, encoding="utf-8")
