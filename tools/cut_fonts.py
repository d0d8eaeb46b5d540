"""Cuts the typefaces of the surfaces out of their packages: cut_fonts.py NODE_MODULES OUT.

A file holds one weight, and for text one optical size. Its family is the typeface's name, with the
optical size behind it where there are several: "DM Sans 14". A family that ends in "Digits" has
digits that are all as wide as its widest, for figures that change while somebody looks.
"""

import io
import pathlib
import shutil
import sys

from fontTools.merge import Merger, Options
from fontTools.ttLib import TTFont
from fontTools.varLib import instancer

MODULES, OUT = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])

# The same lists stand in src/surfaces/ex_font.cpp.
OPTICAL_SIZES = [9, 14, 24, 40]
WEIGHTS = [400, 500, 600, 700]
HEADLINES = [600, 700]  # of the display typeface
STYLES = {400: "Regular", 500: "Medium", 600: "SemiBold", 700: "Bold"}


def source(package, name):
    return MODULES / package / "files" / name


def one_script(path, axes):
    font = TTFont(path)
    font.flavor = None
    if axes:
        font = instancer.instantiateVariableFont(font, axes)
    for table in ("GSUB", "STAT", "DSIG", "meta"):
        if table in font:
            del font[table]
    data = io.BytesIO()
    font.save(data)
    data.seek(0)
    return data


def cut(package, stem, suffix, axes):
    """One font of all scripts that the package splits into files of their own."""
    parts = [one_script(source(package, f"{stem}-{script}-{suffix}.woff2"), axes) for script in ("latin", "latin-ext")]
    options = Options()
    options.drop_tables = ["GPOS", "GDEF"]
    merged = Merger(options).merge(parts)
    # Pairs are kerned as in the first part, which holds the letters that pair.
    first = TTFont(parts[0])
    order = set(merged.getGlyphOrder())
    if "GPOS" in first and set(first.getGlyphOrder()) <= order:
        for table in ("GPOS", "GDEF"):
            if table in first:
                merged[table] = first[table]
    return merged


def widen_digits(font):
    glyphs = [font.getBestCmap()[ord(digit)] for digit in "0123456789"]
    metrics, outlines = font["hmtx"].metrics, font["glyf"]
    widest = max(metrics[glyph][0] for glyph in glyphs)
    for glyph in glyphs:
        width, bearing = metrics[glyph]
        shift = (widest - width) // 2
        outlines[glyph].coordinates.translate((shift, 0))
        outlines[glyph].recalcBounds(outlines)
        metrics[glyph] = (widest, bearing + shift)
    if "GPOS" in font:
        del font["GPOS"]  # kerning would undo it


def write(font, family, weight, file):
    style = STYLES[weight]
    names = font["name"]
    for number in (1, 2, 3, 4, 6, 16, 17, 21, 22, 25):
        names.removeNames(nameID=number)
    for number, text in {
        1: family if weight == 400 else f"{family} {style}",
        2: "Regular",
        3: f"{family} {style}",
        4: f"{family} {style}",
        6: f"{family.replace(' ', '')}-{style}",
        16: family,
        17: style,
    }.items():
        names.setName(text, number, 3, 1, 0x409)
    font["OS/2"].usWeightClass = weight
    font.save(OUT / file)


for weight in WEIGHTS:
    for size in OPTICAL_SIZES:
        axes = {"wght": weight, "opsz": size}
        font = cut("@fontsource-variable/dm-sans", "dm-sans", "standard-normal", axes)
        write(font, f"DM Sans {size}", weight, f"dm-sans-{size}-{weight}.ttf")
    font = cut("@fontsource-variable/dm-sans", "dm-sans", "standard-normal", {"wght": weight, "opsz": 14})
    widen_digits(font)
    write(font, "DM Sans Digits", weight, f"dm-sans-digits-{weight}.ttf")
for weight in HEADLINES:
    font = cut("@fontsource-variable/unbounded", "unbounded", "wght-normal", {"wght": weight})
    write(font, "Unbounded", weight, f"unbounded-{weight}.ttf")

write(cut("@fontsource/dm-mono", "dm-mono", "400-normal", {}), "DM Mono", 400, "dm-mono-400.ttf")

for package in ("@fontsource-variable/unbounded", "@fontsource-variable/dm-sans", "@fontsource/dm-mono"):
    shutil.copy(MODULES / package / "LICENSE", OUT / f"LICENSE-{package.split('/')[-1]}")
