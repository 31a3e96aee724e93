"""The 20 notification pictures: which drawing and state each has, and what can be read from its pixels."""

import pathlib
import re

import icons

FOLDER = pathlib.Path(__file__).resolve().parent / "netlights"
STYLESHEET = FOLDER / "netlights.css"
SIZES = (16, 20, 24, 32)

_COMPUTERS = [("computers", lit) for lit in ((), ("low-lit",), ("high-lit",), ("low-lit", "high-lit"))]
_TOWERS = [("tower", tuple(f"level-{box}" for box in range(1, level + 1))) for level in range(5)]
_CUT = [("not-connected", ())]


def _warning(pictures):
    return [(drawing, state + ("warning",)) for drawing, state in pictures]


# Drawing and state of each picture; the first one is position 1.
PICTURES = _COMPUTERS + _warning(_COMPUTERS) + _CUT + _TOWERS + _warning(_TOWERS) + _warning(_CUT)

# By size: a pixel (x, y) of each part that no face and no outline ever covers. README.md shows them to the tests.
PROBES = {
    16: {
        "ground": (3, 0),
        "computers": {"low": (4, 9), "high": (10, 1)},
        "tower": {"box-1": (8, 13), "box-2": (8, 10), "box-3": (8, 7), "box-4": (8, 4)},
        "not-connected": {"cross": (11, 11)},
    },
    20: {
        "ground": (4, 0),
        "computers": {"low": (6, 11), "high": (13, 1)},
        "tower": {"box-1": (10, 17), "box-2": (10, 13), "box-3": (10, 9), "box-4": (10, 5)},
        "not-connected": {"cross": (14, 14)},
    },
    24: {
        "ground": (5, 0),
        "computers": {"low": (7, 20), "high": (16, 2)},
        "tower": {"box-1": (12, 20), "box-2": (12, 15), "box-3": (12, 10), "box-4": (12, 5)},
        "not-connected": {"cross": (17, 17)},
    },
    32: {
        "ground": (7, 0),
        "computers": {"low": (9, 19), "high": (21, 3)},
        "tower": {"box-1": (16, 27), "box-2": (16, 21), "box-3": (16, 15), "box-4": (16, 9)},
        "not-connected": {"cross": (22, 22)},
    },
}


def svg(picture, size):
    """The SVG text of a picture for a size: its drawing, with its state as classes of the whole."""
    drawing, state = picture
    text = (FOLDER / f"{drawing}-{size}.svg").read_text(encoding="utf-8")
    if text.count('class="state"') != 1:
        raise ValueError(f"{drawing}-{size}.svg has no place for its state")
    return text.replace('class="state"', f'class="{" ".join(("state",) + state)}"')


def check(icos):
    """A ValueError when a picture doesn't show its state at its probes, when another one shows the same there, or when
    a pixel is half transparent. Takes the images by size of each picture, position 1 first."""
    for size in SIZES:
        images = [ico[size] for ico in icos]
        for position, picture in enumerate(PICTURES, 1):
            if set(images[position - 1][3::4]) - {0, 255}:
                raise ValueError(f"picture {position} at {size} pixels has a half transparent pixel")
            expected = _expected(picture, size)
            alike = [i for i, image in enumerate(images, 1)
                     if all(icons.pixel(size, image, *at) == colour for at, colour in expected.items())]
            if alike != [position]:
                raise ValueError(f"picture {position} at {size} pixels can't be told by {expected}: "
                                 f"the pictures that show this are {alike}")


def _expected(picture, size):
    """The colours of a picture's probes, by place."""
    drawing, state = picture
    probes = PROBES[size]
    expected = {probes["ground"]: _colour(".ground") if "warning" in state else (0, 0, 0, 0)}
    for part, at in probes[drawing].items():
        expected[at] = _colour(_rule(part, state))
    return expected


def _rule(part, state):
    """The rule of the style sheet that gives a part its colour in a state."""
    if part == "cross":
        return ".cross"
    if part in ("low", "high"):
        return f".{part}-lit .{part} .lamp" if f"{part}-lit" in state else ".lamp"
    level = part.replace("box", "level")
    return f".{level} .{part}" if level in state else ".box"


def _colour(selector):
    """Red, green, blue and alpha of a rule's fill in the style sheet."""
    rules = re.findall(r"([^{}]+)\{[^}]*?fill: #([0-9a-f]{6})", re.sub(r"/\*.*?\*/", "", STYLESHEET.read_text()))
    for selectors, fill in rules:
        if selector in (one.strip() for one in selectors.split(",")):
            return (*bytes.fromhex(fill), 255)
    raise ValueError(f"{STYLESHEET.name} has no colour for {selector}")
