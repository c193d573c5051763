"""Checks of an .xls that only Excel makes: the container's tables, the order and size of records,
positions, counts, INDEX, DBCELL and EXTSST."""
import struct
import sys

from xlrd import compdoc

SECTOR, FREE, END, TABLE, OVERFLOW = 512, 0xFFFFFFFF, 0xFFFFFFFE, 0xFFFFFFFD, 0xFFFFFFFC
BOF, EOF, CONTINUE, SST, EXTSST, BOUNDSHEET = 0x809, 0x0A, 0x3C, 0xFC, 0xFF, 0x85
INDEX, DBCELL, DEFCOLWIDTH, COLINFO, DIMENSIONS, ROW = 0x20B, 0xD7, 0x55, 0x7D, 0x200, 0x208
FORMULA, MULBLANK, LABELSST, WINDOW2 = 0x06, 0xBE, 0xFD, 0x23E
CELLS = (FORMULA, MULBLANK, LABELSST, 0x201, 0x203, 0x27E)
GLOBALS = [BOF, 0xE1, 0xC1, 0xE2, 0x5C, 0x42, 0x161, 0x13D, 0x9C, 0x19, 0x12, 0x13, 0x1AF, 0x1BC,
           0x3D, 0x40, 0x8D, 0x22, 0x0E, 0x1B7, 0xDA, 0x31, 0x41E, 0xE0, 0x293, 0x160, BOUNDSHEET,
           0x8C, 0x1AE, 0x17, 0x18, SST, CONTINUE, EXTSST, EOF]
BEFORE = [BOF, INDEX, 0x0D, 0x0C, 0x0F, 0x11, 0x10, 0x5F, 0x2A, 0x2B, 0x82, 0x80, 0x225, 0x81,
          0x14, 0x15, 0x83, 0x84, 0x26, 0x27, 0x28, 0x29, 0xA1, DEFCOLWIDTH, COLINFO, DIMENSIONS]
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


def check_strings(records):
    """Walks the strings across records, for the places that EXTSST names."""
    parts = [(position, data) for position, kind, data in records if kind in (SST, CONTINUE)]
    distinct = u32(parts[0][1], 4)
    step = max(distinct // 128 + 1, 8)
    index = struct.pack("<H", step)
    part, at = 0, 8
    for string in range(distinct):
        if at == len(parts[part][1]):
            part, at = part + 1, 0
        position, data = parts[part]
        if string % step == 0:
            index += struct.pack("<IHH", position + 4 + at, 4 + at, 0)
        left, wide = u16(data, at), data[at + 2]
        at += 3
        if left and at == len(data):
            yield f"string {string}: nothing of it before the cut"
        while left > (len(data) - at) >> wide:
            left -= (len(data) - at) >> wide
            part, at = part + 1, 1
            data = parts[part][1]
            wide = data[0]
        at += left << wide
    if first_of(records, EXTSST) != index:
        yield "EXTSST: wrong"
    if part != len(parts) - 1 or at != len(parts[part][1]):
        yield "SST: something follows the last string"


def check_tokens(data):
    """No reader of ours follows the jumps of an IF."""
    tokens = data[22:]
    sizes = {0x19: 4, 0x1E: 3, 0x1F: 9, 0x24: 5, 0x25: 9, 0x41: 3, 0x42: 4, 0x44: 5}
    at = 0
    while at < len(tokens):
        target = at + 4 + u16(tokens, at + 2) if tokens[at] == 0x19 else 0
        if target and tokens[at + 1] == 2 and tokens[target - 4:target - 2] != b"\x19\x08" \
                or target and tokens[at + 1] == 8 and tokens[target - 3:target + 1:2] != b"\x42\x01":
            yield "FORMULA: wrong jump"
        text = 3 + tokens[at + 1] * (1 + tokens[at + 2]) if tokens[at] == 0x17 else 0
        at += text or sizes.get(tokens[at], 1)
    if not at == len(tokens) == u16(data, 20):
        yield "FORMULA: wrong length"


def columns_of(kind, data):
    first = u16(data, 2)
    return range(first, u16(data, len(data) - 2) + 1 if kind == MULBLANK else first + 1)


def check_block(records, used):
    """Up to 32 rows: all ROWs, all cells, and DBCELL, which names the places of both."""
    rows = [(at, data) for at, kind, data in records if kind == ROW]
    first_cells, columns = {}, {}
    for at, kind, data in records[len(rows):-1]:
        first_cells.setdefault(u16(data), at)
        columns.setdefault(u16(data), []).extend(columns_of(kind, data))
    begin, end, last_kind = records[0][0], records[-1][0], records[-1][1]
    starts = [end]  # of the rows' cells, from the last row on; a row without any has its follower's
    for _, data in reversed(rows):
        starts.append(first_cells.get(u16(data), starts[-1]))
        cells = columns.get(u16(data), [])
        if struct.unpack_from("<HH", data, 2) != ((cells[0], cells[-1] + 1) if cells else (0, 0)):
            yield f"ROW {u16(data)}: wrong columns"
    starts = [begin + 20] + starts[:0:-1]
    index = struct.pack(f"<I{len(rows)}H", end - begin,
                        *(min(b - a, 0xFFFF) for a, b in zip(starts, starts[1:])))
    if last_kind != DBCELL or records[-1][2] != index:
        yield "DBCELL: wrong"
    numbers = [u16(data) for _, data in rows]
    if numbers != sorted(set(numbers)) or [n for n in numbers if n in columns] != list(columns) \
            or rows and numbers[-1] - numbers[0] > 31:
        yield "rows out of order"
    if any(cells != sorted(set(cells)) for cells in columns.values()):
        yield "cells out of order"
    used.update(columns)
    used.update((n, []) for n in numbers if n not in columns)


def check_sheet(records):
    kinds = [kind for _, kind, _ in records]
    cells_end = kinds.index(WINDOW2)
    begin = next((i for i, kind in enumerate(kinds) if kind in (ROW, DBCELL)), cells_end)
    if not in_order(records[:begin], BEFORE) or not in_order(records[cells_end:], AFTER):
        yield "sheet: records out of order"
    used, ends = {}, []
    for i in range(begin, cells_end):
        if kinds[i] == DBCELL:
            yield from check_block(records[begin:i + 1], used)
            begin = i + 1
            ends.append(records[i][0])
    rows = (min(used), max(used) + 1) if used else (0, 0)
    default_width = records[kinds.index(DEFCOLWIDTH)][0]
    if begin != cells_end or len(ends) != -(-(rows[1] - rows[0]) // 32) \
            or first_of(records, INDEX) != struct.pack(f"<{4 + len(ends)}I", 0, *rows,
                                                       default_width, *ends):
        yield "INDEX: wrong"
    filled = {row: columns for row, columns in used.items() if columns}
    size = (min(filled), max(filled) + 1, min(c[0] for c in filled.values()),
            max(c[-1] for c in filled.values()) + 1) if filled else (0, 0, 0, 0)
    if struct.unpack_from("<IIHH", first_of(records, DIMENSIONS)) != size:
        yield "DIMENSIONS: wrong"
    widths = [u16(data, at) for _, kind, data in records if kind == COLINFO for at in (0, 2)]
    if widths != sorted(widths) or any(a == b for a, b in zip(widths[1::2], widths[2::2])):
        yield "COLINFO: overlap"
    for _, kind, data in records:
        if kind == FORMULA:
            yield from check_tokens(data)


def check(stream, records, parts):
    if any(len(data) > 8224 for _, _, data in records):
        yield "record too long"
    end = records[-1][0] + 4 + len(records[-1][2])
    if records[-1][1] != EOF or stream[end:].strip(b"\0") or (end < len(stream) and end > 4096):
        yield "something follows the last record"
    if not in_order(parts[0], GLOBALS):
        yield "globals out of order"
    yield from check_strings(parts[0])
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
