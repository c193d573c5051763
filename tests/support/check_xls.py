"""Checks of an .xls that only Excel makes: the container's tables, the order and size of records,
positions, counts, INDEX and DBCELL."""
import struct
import sys

from xlrd import compdoc

SECTOR, FREE, END, TABLE, OVERFLOW = 512, 0xFFFFFFFF, 0xFFFFFFFE, 0xFFFFFFFD, 0xFFFFFFFC
BOF, EOF, CONTINUE, SST, EXTSST, BOUNDSHEET = 0x809, 0x0A, 0x3C, 0xFC, 0xFF, 0x85
INDEX, DBCELL, COLINFO, DIMENSIONS, ROW = 0x20B, 0xD7, 0x7D, 0x200, 0x208
FORMULA, MULBLANK, LABELSST, WINDOW2 = 0x06, 0xBE, 0xFD, 0x23E
CELLS = (FORMULA, MULBLANK, LABELSST, 0x201, 0x203, 0x27E)
GLOBALS = [BOF, 0xE1, 0xC1, 0xE2, 0x5C, 0x42, 0x161, 0x13D, 0x9C, 0x19, 0x12, 0x13, 0x1AF, 0x1BC,
           0x3D, 0x40, 0x8D, 0x22, 0x0E, 0x1B7, 0xDA, 0x31, 0x41E, 0xE0, 0x293, 0x160, BOUNDSHEET,
           0x8C, 0x1AE, 0x17, 0x18, SST, CONTINUE, EXTSST, EOF]
BEFORE = [BOF, INDEX, 0x0D, 0x0C, 0x0F, 0x11, 0x10, 0x5F, 0x2A, 0x2B, 0x82, 0x80, 0x225, 0x81,
          0x14, 0x15, 0x83, 0x84, 0x26, 0x27, 0x28, 0x29, 0xA1, 0x55, COLINFO, DIMENSIONS]
AFTER = [WINDOW2, 0x41, 0x1D, EOF]


def u16(data, at=0):
    return struct.unpack_from("<H", data, at)[0]


def u32(data, at=0):
    return struct.unpack_from("<I", data, at)[0]


def complain(path, faults):
    faults = list(faults)
    if faults:
        sys.exit(f"{path}: " + "\n".join(faults))


def check_tables(file):
    sector = lambda n: struct.unpack_from("<128I", file, SECTOR * (n + 1))
    header = sector(-1)
    tables, directory, overflow, overflows = header[11], header[12], header[17], header[18]
    names, seen = list(header[19:]), []
    while overflow != END:
        seen.append(overflow)
        names += sector(overflow)[:127]
        overflow = sector(overflow)[127]
    used = [name for name in names if name != FREE]
    fat = [entry for name in used for entry in sector(name)]
    total = len(file) // SECTOR - 1
    size = struct.unpack_from("<Q", file, SECTOR * (directory + 1) + 128 + 120)[0]
    length = -(-size // SECTOR)
    return (text for bad, text in (
        (len(file) % SECTOR, "file ends inside a sector"),
        (len(used) != tables or len(seen) != overflows, "wrong number of table sectors"),
        (names[:tables] != used, "table sectors are not named one after the other"),
        ({n for n, e in enumerate(fat) if e == TABLE} != set(used), "table sectors not marked"),
        ({n for n, e in enumerate(fat) if e == OVERFLOW} != set(seen), "overflow not marked"),
        (fat[:length] != list(range(1, length)) + [END], "broken chain of the stream"),
        (fat[directory] != END, "broken chain of the directory"),
        (len(fat) < total or any(entry != FREE for entry in fat[total:]), "wrong table size"),
        (size < 4096, "stream too short for large sectors")) if bad)


def stream_of(path):
    with open(path, "rb") as file:
        data = file.read()
    complain(path, check_tables(data))
    return compdoc.CompDoc(data, logfile=sys.stderr).get_named_stream("Workbook")


def records_of(stream):
    """(position, kind, data) of each record up to the end of the last part."""
    position = depth = 0
    while position < len(stream):
        kind, size = u16(stream, position), u16(stream, position + 2)
        if depth == 0 and kind != BOF:
            break
        depth += (kind == BOF) - (kind == EOF)
        yield position, kind, stream[position + 4:position + 4 + size]
        position += 4 + size


def in_order(records, order):
    places = [order.index(kind) if kind in order else -1 for _, kind, _ in records]
    return -1 not in places and places == sorted(places)


def first_of(records, wanted):
    return next(data for _, kind, data in records if kind == wanted)


def columns_of(kind, data):
    first = u16(data, 2)
    return range(first, u16(data, len(data) - 2) + 1 if kind == MULBLANK else first + 1)


def check_sheet(records):
    kinds = [kind for _, kind, _ in records]
    cells_end = kinds.index(WINDOW2)
    begin = next((i for i, kind in enumerate(kinds) if kind in (ROW, DBCELL)), cells_end)
    if not in_order(records[:begin], BEFORE) or not in_order(records[cells_end:], AFTER) \
            or not set(kinds[begin:cells_end]) <= {ROW, DBCELL, *CELLS}:
        yield "sheet: records out of order"
    rows = [u16(data) for _, kind, data in records if kind == ROW]
    cells = [(u16(data), column) for _, kind, data in records if kind in CELLS
             for column in columns_of(kind, data)]
    if rows != sorted(set(rows)) or cells != sorted(set(cells)) \
            or not set(rows) >= {row for row, _ in cells}:
        yield "rows or cells out of order"
    size = [f(values) + add for values in zip(*cells) for f, add in ((min, 0), (max, 1))]
    if struct.unpack_from("<IIHH", first_of(records, DIMENSIONS)) != tuple(size or [0] * 4):
        yield "DIMENSIONS: wrong"
    yield from check_index(records, rows)
    widths = [u16(data, at) for _, kind, data in records if kind == COLINFO for at in (0, 2)]
    if widths != sorted(widths) or any(a == b for a, b in zip(widths[1::2], widths[2::2])):
        yield "COLINFO: overlap"


def check_index(records, rows):
    """INDEX names each DBCELL; that names the first of its up to 32 ROWs and each row's cells."""
    kinds = {position: kind for position, kind, _ in records}
    row_of = {position: u16(data) for position, _, data in records if len(data) > 1}
    first = {row_of[position]: position for position, kind, _ in reversed(records) if kind in CELLS}
    blocks = [(position, data) for position, kind, data in records if kind == DBCELL]
    limits = (rows[0], rows[-1] + 1) if rows else (0, 0)
    index = struct.unpack(f"<{4 + len(blocks)}I", first_of(records, INDEX))
    if index[:3] + index[4:] != (0, *limits, *(position for position, _ in blocks)) \
            or len(blocks) != -(-(limits[1] - limits[0]) // 32):
        yield "INDEX: wrong"
    for position, data in blocks:
        row = position - u32(data)
        place = row + 20
        for at in range(4, len(data), 2):
            if u16(data, at) == 0xFFFF:  # or more: the format's own limit
                break
            place += u16(data, at)
            if kinds[row] != ROW or first.get(row_of[row], place) != place:
                yield f"DBCELL: wrong for row {row_of[row]}"
            row += 20


def check(stream, records, parts):
    if any(len(data) > 8224 for _, _, data in records):
        yield "record too long"
    end = records[-1][0] + 4 + len(records[-1][2])
    if records[-1][1] != EOF or stream[end:].strip(b"\0") or (end < len(stream) and end > 4096):
        yield "something follows the last record"
    if not in_order(parts[0], GLOBALS):
        yield "globals out of order"
    positions = [u32(data) for _, kind, data in parts[0] if kind == BOUNDSHEET]
    if positions != [part[0][0] for part in parts[1:]]:
        yield "BOUNDSHEET: wrong positions"
    for part in parts[1:]:
        yield from check_sheet(part)
    strings = [u32(data, 6) for _, kind, data in records if kind == LABELSST]
    counts = struct.unpack_from("<II", first_of(parts[0], SST))
    if counts != (len(strings), len(set(strings))) or set(strings) != set(range(counts[1])):
        yield "SST: wrong counts, or strings that no cell uses"


def checked_parts(path):
    """The records of the globals, then those of each sheet."""
    stream = stream_of(path)
    records = list(records_of(stream))
    begins = [i for i, (_, kind, _) in enumerate(records) if kind == BOF]
    parts = [records[a:b] for a, b in zip(begins, begins[1:] + [len(records)])]
    complain(path, check(stream, records, parts))
    return parts
