"""The tables of this directory: words by spaces, a row a line, comments from "#" on."""

from pathlib import Path


def rows(name):
    for line in (Path(__file__).resolve().parent / name).read_text().splitlines():
        if not line.startswith("#"):
            yield line.split()
