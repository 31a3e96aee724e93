"""The contact sheet: every form of every icon, read back from the ICO files, on the grounds that they lie on."""

import icons

LIGHT, DARK, CREAM = (238, 238, 238), (32, 32, 32), (253, 235, 200)
GAP = 8


class _Canvas:
    def __init__(self, width, height):
        self.width, self.height = width, height
        self.pixels = bytearray(b"\x80\x80\x80\xff" * (width * height))

    def fill(self, left, top, width, height, colour):
        for y in range(top, top + height):
            at = (y * self.width + left) * 4
            self.pixels[at : at + width * 4] = bytes((*colour, 255)) * width

    def draw(self, left, top, size, image, ground, zoom):
        """An image on its ground, each pixel a square of zoom by zoom."""
        for y in range(size):
            for x in range(size):
                *colour, alpha = icons.pixel(size, image, x, y)
                mixed = [(c * alpha + g * (255 - alpha)) // 255 for c, g in zip(colour, ground)]
                self.fill(left + x * zoom, top + y * zoom, zoom, zoom, mixed)


def png(files, zoom=8):
    """A PNG file of the ICO files among these: rows of a size on a ground, first enlarged, then as they are."""
    pictures = {name: icons.decode_ico(data) for name, data in files.items() if name.endswith(".ico")}
    program = pictures.pop("harbourline.ico")
    lights = [forms for name, forms in pictures.items() if name.startswith("netlight-")]
    buttons = [forms for name, forms in pictures.items() if not name.startswith("netlight-")]
    rows = []
    for factor in (zoom, 1):
        for ground in (LIGHT, DARK):
            rows.append((ground, [(s, program[s], max(1, min(factor, 256 // s))) for s in sorted(program)]))
            for size in sorted(lights[0]):
                rows.append((ground, [(size, forms[size], factor) for forms in lights]))
        for size in sorted(buttons[0]):
            rows.append((CREAM, [(size, forms[size], factor) for forms in buttons]))

    heights = [max(size * factor for size, _, factor in row) + GAP for _, row in rows]
    width = max(sum(size * factor + GAP for size, _, factor in row) for _, row in rows) + GAP
    canvas = _Canvas(width, sum(heights))
    top = 0
    for (ground, row), height in zip(rows, heights):
        canvas.fill(0, top, width, height, ground)
        left = GAP
        for size, image, factor in row:
            canvas.draw(left, top + GAP // 2, size, image, ground, factor)
            left += size * factor + GAP
        top += height
    return icons.encode_png(canvas.width, canvas.height, canvas.pixels)
