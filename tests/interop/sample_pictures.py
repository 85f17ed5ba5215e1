"""One small picture in each format: a coloured rectangle with a white cross from corner to corner, so that a reader of
a page sees which picture it is, where it ends and whether it stands upright."""
import struct
import zlib

WIDTH, HEIGHT = 80, 60
WHITE = (255, 255, 255)


def pixel(color, x, y):
    is_cross = abs(x * HEIGHT - y * WIDTH) < 3 * WIDTH or abs((WIDTH - 1 - x) * HEIGHT - y * WIDTH) < 3 * WIDTH
    return WHITE if is_cross else color


def png(color):
    def chunk(kind, body):
        return struct.pack(">I", len(body)) + kind + body + struct.pack(">I", zlib.crc32(kind + body))
    rows = b"".join(b"\0" + b"".join(bytes(pixel(color, x, y)) for x in range(WIDTH)) for y in range(HEIGHT))
    head = struct.pack(">IIBBBBB", WIDTH, HEIGHT, 8, 2, 0, 0, 0)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", head) + chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b"")


def bmp(color):
    rows = b"".join(bytes(pixel(color, x, y)[::-1]) for y in reversed(range(HEIGHT)) for x in range(WIDTH))
    head = struct.pack("<IiiHHIIiiII", 40, WIDTH, HEIGHT, 1, 24, 0, len(rows), 3780, 3780, 0, 0)
    return b"BM" + struct.pack("<IHHI", 14 + len(head) + len(rows), 0, 0, 14 + len(head)) + head + rows


def jpeg(color):
    """A baseline JPEG whose blocks of 8 by 8 pixels are even: nothing but the first coefficient of each is coded."""
    def segment(marker, body):
        return bytes((0xFF, marker)) + struct.pack(">H", len(body) + 2) + body

    def components(rgb):
        r, g, b = rgb
        return (0.299 * r + 0.587 * g + 0.114 * b, 128 - 0.169 * r - 0.331 * g + 0.5 * b,
                128 + 0.5 * r - 0.419 * g - 0.081 * b)
    categories = range(12)  # bits of a difference; each has a code of 4 bits, the end of a block one of 1 bit
    tables = bytes((0x00, 0, 0, 0, len(categories))) + bytes(12) + bytes(categories) + bytes((0x10, 1)) + bytes(16)
    bits, last = "", [0, 0, 0]
    for top in range(0, HEIGHT, 8):
        for left in range(0, WIDTH, 8):
            for i, level in enumerate(components(pixel(color, left + 4, top + 4))):
                value = max(-128, min(127, round(level) - 128))  # the quantiser of 8 undoes the transform's factor
                change, last[i] = value - last[i], value
                size = abs(change).bit_length()
                code = change if change > 0 else change + (1 << size) - 1
                bits += f"{size:04b}" + (f"{code:0{size}b}" if size else "") + "0"
    bits += "1" * (-len(bits) % 8)
    data = int(bits, 2).to_bytes(len(bits) // 8, "big").replace(b"\xff", b"\xff\0")
    frame = struct.pack(">BHHB", 8, HEIGHT, WIDTH, 3) + bytes((1, 0x11, 0, 2, 0x11, 0, 3, 0x11, 0))
    return (b"\xff\xd8" + segment(0xE0, b"JFIF\0\1\1\0\0\1\0\1\0\0") + segment(0xDB, b"\0" + bytes([8] * 64)) +
            segment(0xC0, frame) + segment(0xC4, tables) +
            segment(0xDA, bytes((3, 1, 0, 2, 0, 3, 0, 0, 63, 0))) + data + b"\xff\xd9")


def wmf(color):
    """One unit a pixel, 96 an inch."""
    def record(function, *words):
        return struct.pack("<IH", 3 + len(words), function) + struct.pack(f"<{len(words)}h", *words)
    r, g, b = color
    records = [record(0x020B, 0, 0), record(0x020C, HEIGHT, WIDTH),                # window: origin, extent
               struct.pack("<IHHBBBBH", 7, 0x02FC, 0, r, g, b, 0, 0), record(0x012D, 0),  # a brush, selected
               record(0x041B, HEIGHT, WIDTH, 0, 0),                                # rectangle
               struct.pack("<IHHhhBBBB", 8, 0x02FA, 0, 3, 0, 255, 255, 255, 0), record(0x012D, 1),  # a pen, selected
               record(0x0214, 0, 0), record(0x0213, HEIGHT, WIDTH),                # move, line
               record(0x0214, 0, WIDTH), record(0x0213, HEIGHT, 0), record(0)]
    size = 9 + sum(len(r) for r in records) // 2
    head = struct.pack("<HHHIHIH", 1, 9, 0x300, size, 2, max(len(r) for r in records) // 2, 0)
    placeable = struct.pack("<IHhhhhHI", 0x9AC6CDD7, 0, 0, 0, WIDTH, HEIGHT, 96, 0)
    checksum = 0
    for word, in struct.iter_unpack("<H", placeable):
        checksum ^= word
    return placeable + struct.pack("<H", checksum) + head + b"".join(records)


def emf(color):
    def record(kind, body):
        return struct.pack("<II", kind, 8 + len(body)) + body
    r, g, b = color
    records = [record(39, struct.pack("<IIBBBBI", 1, 0, r, g, b, 0, 0)), record(37, struct.pack("<I", 1)),  # brush
               record(43, struct.pack("<iiii", 0, 0, WIDTH - 1, HEIGHT - 1)),                      # rectangle
               record(38, struct.pack("<IIiiBBBB", 2, 0, 3, 0, 255, 255, 255, 0)), record(37, struct.pack("<I", 2)),
               record(27, struct.pack("<ii", 0, 0)), record(54, struct.pack("<ii", WIDTH, HEIGHT)),  # move, line
               record(27, struct.pack("<ii", WIDTH, 0)), record(54, struct.pack("<ii", 0, HEIGHT)),
               record(14, struct.pack("<III", 0, 0, 20))]
    millimetres = 25.4 / 96
    frame = (0, 0, round(WIDTH * millimetres * 100), round(HEIGHT * millimetres * 100))
    size = 88 + sum(map(len, records))
    head = struct.pack("<iiiiiiiiIIIIHHIIIiiii", 0, 0, WIDTH - 1, HEIGHT - 1, *frame, 0x464D4520, 0x10000, size,
                       len(records) + 1, 3, 0, 0, 0, 0, 1920, 1080, 508, 286)
    return record(1, head) + b"".join(records)


KINDS = {"png": png, "jpg": jpeg, "bmp": bmp, "wmf": wmf, "emf": emf}
COLORS = {"png": (200, 30, 30), "jpg": (30, 140, 30), "bmp": (30, 30, 200), "wmf": (200, 140, 0), "emf": (140, 0, 160)}


def write_all(directory, kinds=tuple(KINDS)):
    """The paths of one picture a kind."""
    paths = []
    for kind in kinds:
        path = directory / f"picture.{kind}"
        path.write_bytes(KINDS[kind](COLORS[kind]))
        paths.append(str(path))
    return paths
