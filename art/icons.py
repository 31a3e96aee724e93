"""Reads PNG files, reads and writes ICO files and writes BMP files, as far as the artwork needs.

Pixels are bytes in the order red, green, blue, alpha, from the top row down. The image of an icon is square: a pair
(size, pixels).
"""

import struct
import zlib

PNG_SIGNATURE = b"\x89PNG\r\n\x1a\n"


def read_png(data):
    """Width, height and pixels of a PNG file: 8-bit RGB or RGBA, not interlaced; anything else is a ValueError."""
    if not data.startswith(PNG_SIGNATURE):
        raise ValueError("not a PNG file")
    header, packed = None, b""
    at = len(PNG_SIGNATURE)
    while at < len(data):
        length, kind = struct.unpack_from(">I4s", data, at)
        body = data[at + 8 : at + 8 + length]
        if kind == b"IHDR":
            header = struct.unpack(">IIBBBBB", body)
        elif kind == b"IDAT":
            packed += body
        at += length + 12
    if header is None:
        raise ValueError("a PNG file without a header")
    width, height, depth, colour, _, _, interlaced = header
    channels = {2: 3, 6: 4}.get(colour)
    if channels is None or (depth, interlaced) != (8, 0):
        raise ValueError("not an 8-bit RGB or RGBA PNG file")
    pixels = _unfilter(zlib.decompress(packed), height, width * channels, channels)
    if channels == 3:
        pixels = b"".join(pixels[at : at + 3] + b"\xff" for at in range(0, len(pixels), 3))
    return width, height, pixels


def decode_png(data):
    """The image in a PNG file, which must be square."""
    width, height, pixels = read_png(data)
    if width != height:
        raise ValueError("not a square PNG file")
    return width, pixels


def _unfilter(data, rows, stride, channels):
    """The pixels of a PNG file: each row comes as differences to its neighbours, by one of five methods."""
    image, above = bytearray(), bytearray(stride)
    for row in range(rows):
        start = row * (stride + 1)
        method, line = data[start], bytearray(data[start + 1 : start + 1 + stride])
        for i in range(stride):
            left = line[i - channels] if i >= channels else 0
            corner = above[i - channels] if i >= channels else 0
            line[i] = line[i] + _guess(method, left, above[i], corner) & 255
        image += line
        above = line
    return bytes(image)


def _guess(method, left, up, corner):
    if method == 4:
        by_distance = ((abs(up - corner), left), (abs(left - corner), up), (abs(left + up - 2 * corner), corner))
        return min(by_distance, key=lambda pair: pair[0])[1]
    return (0, left, up, (left + up) // 2)[method]


def encode_png(width, height, rgba):
    """A PNG file with these pixels."""
    rows = b"".join(b"\0" + rgba[y * width * 4 : (y + 1) * width * 4] for y in range(height))
    chunks = (
        (b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 6, 0, 0, 0)),
        (b"IDAT", zlib.compress(rows, 9)),
        (b"IEND", b""),
    )
    return PNG_SIGNATURE + b"".join(
        struct.pack(">I", len(body)) + kind + body + struct.pack(">I", zlib.crc32(kind + body))
        for kind, body in chunks
    )


def without_alpha(rgba, hole):
    """The pixels, all of them painted; one that is less than half there gets the colour `hole`."""
    pixels = bytearray()
    for at in range(0, len(rgba), 4):
        pixels += (rgba[at : at + 3] if rgba[at + 3] >= 128 else bytes(hole)) + b"\xff"
    return bytes(pixels)


def encode_bmp(width, height, rgba, hole):
    """A BMP file of 24 bits a pixel; a pixel that is less than half there gets the colour `hole`."""
    rows = bytearray()
    for y in reversed(range(height)):
        for x in range(width):
            red, green, blue, alpha = rgba[(y * width + x) * 4 :][:4]
            rows += bytes((blue, green, red) if alpha >= 128 else reversed(hole))
        rows += bytes(-width * 3 % 4)
    header = struct.pack("<IiiHHIIiiII", 40, width, height, 1, 24, 0, len(rows), 0, 0, 0, 0)
    return struct.pack("<2sIHHI", b"BM", 14 + len(header) + len(rows), 0, 0, 14 + len(header)) + header + rows


def encode_ico(pngs):
    """An ICO file with these PNG files as its forms, each packed anew or as a 32-bit bitmap, whichever is smaller."""
    forms = []
    for png in pngs:
        size, pixels = decode_png(png)
        forms.append((size, min(encode_png(size, size, pixels), _bitmap(size, pixels), key=len)))
    directory = struct.pack("<HHH", 0, 1, len(forms))
    at = len(directory) + 16 * len(forms)
    for size, body in forms:
        directory += struct.pack("<BBBBHHII", size % 256, size % 256, 0, 0, 1, 32, len(body), at)
        at += len(body)
    return directory + b"".join(body for _, body in forms)


def _mask_stride(size):
    return (size + 31) // 32 * 4


def _bitmap(size, pixels):
    """Header, colours from the bottom row up, and the mask that systems without alpha go by."""
    colours, mask = bytearray(), bytearray()
    for y in reversed(range(size)):
        bits = bytearray(_mask_stride(size))
        for x in range(size):
            red, green, blue, alpha = pixels[(y * size + x) * 4 :][:4]
            if alpha == 0:
                colours += bytes(4)
                bits[x // 8] |= 128 >> x % 8
            else:
                colours += bytes((blue, green, red, alpha))
        mask += bits
    header = struct.pack("<IiiHHIIiiII", 40, size, size * 2, 1, 32, 0, len(colours) + len(mask), 0, 0, 0, 0)
    return header + colours + mask


def decode_ico(data):
    """The images in an ICO file that encode_ico wrote, by size."""
    images = {}
    for form in range(struct.unpack_from("<HHH", data)[2]):
        length, at = struct.unpack_from("<II", data, 6 + 16 * form + 8)
        body = data[at : at + length]
        size, pixels = decode_png(body) if body.startswith(PNG_SIGNATURE) else _read_bitmap(body)
        images[size] = pixels
    return images


def _read_bitmap(body):
    size = struct.unpack_from("<Ii", body)[1]
    pixels = bytearray()
    for y in reversed(range(size)):
        row = body[40 + y * size * 4 : 40 + (y + 1) * size * 4]
        for x in range(size):
            blue, green, red, alpha = row[x * 4 : x * 4 + 4]
            pixels += bytes((red, green, blue, alpha))
    return size, bytes(pixels)


def pixel(image_size, pixels, x, y):
    """Red, green, blue and alpha of one pixel."""
    return tuple(pixels[(y * image_size + x) * 4 :][:4])
