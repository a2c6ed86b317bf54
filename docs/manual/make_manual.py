#!/usr/bin/python3
"""Makes the PDF of a manual: make_manual.py LANGUAGE SOURCE.md PICTURES TARGET.pdf

LANGUAGE is de or en. In the Markdown a picture is named without its directory. A heading whose
id is the name of a picture is the page of that form; [FORMS] stands for the list of all of them,
[TOC] for the contents, both with their pages. A picture that no page shows, a page without its
picture and a link that leads nowhere end the build.
"""

import pathlib
import re
import struct
import sys

import markdown
import weasyprint

EXTENSIONS = ["tables", "toc", "attr_list", "fenced_code", "sane_lists", "def_list"]
DOTS_PER_POINT = 2  # of the pictures of the forms
SHRUNK = 0.74  # a form on paper beside the form on a screen
COLUMN_WIDTH = 640  # of a page, in CSS pixels

FORMS_HEAD = {"de": ("Fenster", "Name", "Seite"), "en": ("Form", "Name", "Page")}

HEADING = re.compile(r'<h([1-3]) id="([^"]+)">(.*?)</h\1>', re.S)
IMAGE = re.compile(r'<p><img alt="([^"]*)" src="([^"]+)" ?/?></p>')
TAGS = re.compile(r"<[^>]*>")
FIRST_CELL = re.compile(r"<tr>\n<td>(.*?)</td>", re.S)
SHORT_CELL = 24  # characters that stand in one line


def fail(text):
    sys.exit(f"make_manual: {text}")


def width_of(picture):
    """In CSS pixels on paper; the width stands behind the signature of a PNG file."""
    dots = struct.unpack(">I", picture.read_bytes()[16:20])[0]
    return min(COLUMN_WIDTH, round(dots / DOTS_PER_POINT * SHRUNK))


def with_figures(html, pictures):
    """Each picture with its caption, as wide as its form asks for."""
    shown = set()

    def figure(match):
        caption, name = match.groups()
        picture = pictures / name
        if not picture.is_file():
            fail(f"there is no picture {name}")
        shown.add(name)
        return (
            f'<figure><img alt="{caption}" src="{picture.as_uri()}" '
            f'style="width: {width_of(picture)}px"><figcaption>{caption}</figcaption></figure>'
        )

    html = IMAGE.sub(figure, html)
    unused = {path.name for path in pictures.glob("*.png")} - shown
    if unused:
        fail(f"no page shows {', '.join(sorted(unused))}")
    return html


def forms_of(html, pictures):
    """Id and title of each heading that is the page of a form."""
    names = {path.stem for path in pictures.glob("*.png")}
    found = [
        (name, TAGS.sub("", title).removesuffix(f" ({name})"))
        for _, name, title in HEADING.findall(html)
    ]
    forms = [(name, title) for name, title in found if name in names]
    missing = {name for name in names if "-" not in name} - {name for name, _ in forms}
    if missing:
        fail(f"no page for {', '.join(sorted(missing))}")
    return forms


def forms_table(forms, language):
    head = "".join(f"<th>{text}</th>" for text in FORMS_HEAD[language])
    rows = "".join(
        f'<tr><td><a href="#{name}">{title}</a></td><td><code>{name}</code></td>'
        f'<td><a class="page" href="#{name}"></a></td></tr>'
        for name, title in forms
    )
    return f'<table class="forms"><thead><tr>{head}</tr></thead><tbody>{rows}</tbody></table>'


def with_whole_names(html):
    """A short name in the first column of a table is not broken."""

    def cell(match):
        is_short = len(TAGS.sub("", match.group(1))) <= SHORT_CELL
        return match.group(0).replace("<td>", '<td class="name">', 1) if is_short else match.group(0)

    return FIRST_CELL.sub(cell, html)


def check_links(html):
    places = set(re.findall(r'id="([^"]+)"', html))
    dead = {link for link in re.findall(r'href="#([^"]+)"', html) if link not in places}
    if dead:
        fail(f"links lead nowhere: {', '.join(sorted(dead))}")


def make_html(language, source, pictures):
    text = source.read_text(encoding="utf-8")
    body = markdown.markdown(
        text, extensions=EXTENSIONS, extension_configs={"toc": {"toc_depth": "1-3"}}
    )
    forms = forms_of(body, pictures)
    body = with_figures(with_whole_names(body), pictures)
    body = body.replace("<p>[FORMS]</p>", forms_table(forms, language))
    check_links(body)
    title = " - ".join(TAGS.sub("", line) for line in re.findall(r"<p.*?</p>", body, re.S)[:2])
    return (
        f'<!DOCTYPE html><html lang="{language}"><head><meta charset="utf-8">'
        f"<title>{title}</title></head><body>{body}</body></html>"
    )


def main():
    if len(sys.argv) != 5:
        sys.exit(__doc__)
    language, source, pictures, target = sys.argv[1], *map(pathlib.Path, sys.argv[2:])
    html = make_html(language, source, pictures.resolve())
    style = weasyprint.CSS(filename=pathlib.Path(__file__).with_name("manual.css"))
    weasyprint.HTML(string=html).write_pdf(target, stylesheets=[style])


if __name__ == "__main__":
    main()
