#!/usr/bin/env python3
"""Makes the two forms of the operator's manual from its sources: web pages and a help file.

usage: make_manual.py SOURCES FOLDER
"""

import pathlib
import sys

from manual import bitmap, source, web, winhelp


def main():
    sources, folder = map(pathlib.Path, sys.argv[1:])
    try:
        pages = source.read_manual(sources)
        folder.mkdir(parents=True, exist_ok=True)
        web.write_pages(pages, folder)
        winhelp.write_contents(pages, folder / "helpfile.cnt")
        winhelp.write_help_file(pages, folder / "helpfile.hlp")
    except (source.SourceError, bitmap.PictureError) as error:
        sys.exit(str(error))


if __name__ == "__main__":
    main()
