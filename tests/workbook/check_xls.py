"""What is wrong with an .xls that no foreign reader notices: the container's tables, the order and
size of records, positions, counts, INDEX, DBCELL and EXTSST."""
import struct
import sys

from xlrd import compdoc

SECTOR, FREE, END, TABLE, OVERFLOW = 512, 0xFFFFFFFF, 0xFFFFFFFE, 0xFFFFFFFD, 0xFFFFFFFC
BOF, EOF, CONTINUE, SST, EXTSST, BOUNDSHEET = 0x809, 0x0A, 0x3C, 0xFC, 0xFF, 0x85
INDEX, DBCELL, DEFCOLWIDTH, COLINFO, DIMENSIONS, ROW, XF = 0x20B, 0xD7, 0x55, 0x7D, 0x200, 0x208, 0xE0
FORMULA, BLANK, MULBLANK, NUMBER, RK, LABELSST = 0x06, 0x201, 0xBE, 0x203, 0x27E, 0xFD
CELLS = (FORMULA, BLANK, MULBLANK, NUMBER, RK, LABELSST)
GLOBALS = [BOF, 0xE1, 0xC1, 0xE2, 0x5C, 0x42, 0x161, 0x13D, 0x9C, 0x19, 0x12, 0x13, 0x1AF, 0x1BC,
           0x3D, 0x40, 0x8D, 0x22, 0x0E, 0x1B7, 0xDA, 0x31, 0x41E, XF, 0x293, 0x160, BOUNDSHEET,
           0x8C, 0x1AE, 0x17, 0x18, SST, CONTINUE, EXTSST, EOF]
BEFORE = [BOF, INDEX, 0x0D, 0x0C, 0x0F, 0x11, 0x10, 0x5F, 0x2A, 0x2B, 0x82, 0x80, 0x225, 0x81,
          0x14, 0x15, 0x83, 0x84, 0x26, 0x27, 0x28, 0x29, 0xA1, DEFCOLWIDTH, COLINFO, DIMENSIONS]
AFTER = [0x23E, 0x41, 0x1D, EOF]


def u16(data, at=0):
    return struct.unpack_from("<H", data, at)[0]


def u32(data, at=0):
    return struct.unpack_from("<I", data, at)[0]


def stream_of(file):
    """The stream "Workbook", and what is wrong with the tables around it."""
    numbers = struct.unpack_from("<128I", file)
    tables, directory, overflow, overflows = numbers[11], numbers[12], numbers[17], numbers[18]
    sector = lambda n: struct.unpack_from("<128I", file, SECTOR * (n + 1))
    names = list(numbers[19:])
    seen = []
    while overflow != END:
        seen.append(overflow)
        names += sector(overflow)[:127]
        overflow = sector(overflow)[127]
    used = [name for name in names if name != FREE]
    fat = [entry for name in used for entry in sector(name)]
    total = len(file) // SECTOR - 1
    size = struct.unpack_from("<Q", file, SECTOR * (directory + 1) + 128 + 120)[0]
    length = -(-size // SECTOR)
    faults = [text for bad, text in (
        (len(file) % SECTOR, "file ends inside a sector"),
        (len(used) != tables or len(seen) != overflows, "wrong number of table sectors"),
        (names[:tables] != used, "table sectors are not named one after the other"),
        ({n for n, e in enumerate(fat) if e == TABLE} != set(used), "table sectors not marked"),
        ({n for n, e in enumerate(fat) if e == OVERFLOW} != set(seen), "overflow not marked"),
        (fat[:length] != list(range(1, length)) + [END], "broken chain of the stream"),
        (fat[directory] != END, "broken chain of the directory"),
        (len(fat) < total or any(entry != FREE for entry in fat[total:]), "wrong table size"),
        (size < 4096, "stream too short for large sectors")) if bad]
    return file[SECTOR:SECTOR + size], faults


def records_of(stream):
    position = 0
    depth = 0
    while position < len(stream):
        number, size = u16(stream, position), u16(stream, position + 2)
        if depth == 0 and number != BOF:
            break
        depth += (number == BOF) - (number == EOF)
        yield position, number, stream[position + 4:position + 4 + size]
        position += 4 + size


def in_order(records, order):
    places = [order.index(number) if number in order else -1 for _, number, _ in records]
    return -1 not in places and places == sorted(places)


def check_strings(records):
    """Walks the strings across records; yields faults and finally the number of strings."""
    parts = [r for r in records if r[1] in (SST, CONTINUE)]
    index = next(data for _, number, data in records if number == EXTSST)
    distinct = u32(parts[0][2], 4)
    step = max(distinct // 128 + 1, 8)
    if u16(index) != step or (len(index) - 2) // 8 != -(-distinct // step):
        yield "EXTSST: wrong step or number of entries"
    part, at = 0, 8
    for string in range(distinct):
        if at == len(parts[part][2]):
            part, at = part + 1, 0
        position, _, data = parts[part]
        if string % step == 0:
            entry = struct.unpack_from("<IHH", index, 2 + string // step * 8)
            if entry != (position + 4 + at, 4 + at, 0):
                yield f"EXTSST: wrong position of string {string}"
        left, width = u16(data, at), 1 + data[at + 2]
        at += 3
        while True:
            fitting = min(left, (len(data) - at) // width)
            if left and not fitting:
                yield f"string {string}: nothing of it before the cut"
            left -= fitting
            at += fitting * width
            if not left:
                break
            part += 1
            data = parts[part][2]
            if data[0] != width - 1:
                yield f"string {string} changes its width"
            at = 1
    if part != len(parts) - 1 or at != len(parts[part][2]):
        yield "SST: something follows the last string"


def cells_of(number, data):
    """(column, format) of each cell of a record."""
    column = u16(data, 2)
    if number == MULBLANK:
        count = (len(data) - 6) // 2
        if u16(data, len(data) - 2) != column + count - 1 or count < 2:
            yield -1, 0
        for i in range(count):
            yield column + i, u16(data, 4 + 2 * i)
    else:
        yield column, u16(data, 4)


def check_tokens(tokens):
    """No reader of ours follows the jumps of an IF."""
    sizes = {0x19: 4, 0x1E: 3, 0x1F: 9, 0x24: 5, 0x25: 9, 0x41: 3, 0x42: 4, 0x44: 5}
    jumps, at = [], 0
    while at < len(tokens):
        if tokens[at] == 0x19:
            jumps.append((tokens[at + 1], at + 4 + u16(tokens, at + 2)))
        text = 3 + tokens[at + 1] * (1 + tokens[at + 2]) if tokens[at] == 0x17 else 0
        at += text or sizes.get(tokens[at], 1)
    for kind, target in jumps:
        before = tokens[target - 4:target] if kind == 2 else tokens[target - 3:target + 1]
        if kind == 2 and before[:2] != b"\x19\x08" \
                or kind == 8 and (before[:1], before[2:]) != (b"\x42", b"\x01\0"):
            yield "FORMULA: wrong jump"
    if at != len(tokens):
        yield "FORMULA: last token cut"


class SheetCheck:
    """The rows and cells of one sheet, block by block."""

    def __init__(self, formats):
        self.formats = formats
        self.faults = []
        self.block = []  # [position, row, from, to] of ROW records
        self.first_cell = {}
        self.last = (-1, -1)
        self.columns = {}
        self.rows = []
        self.ends = []
        self.strings = []

    def expect(self, good, text):
        if not good:
            self.faults.append(text)

    def row(self, position, data):
        self.expect(u32(data, 12) >> 16 < self.formats, "ROW: no such format")
        self.expect(not self.first_cell, "ROW between cells")
        self.expect(not self.rows or u16(data) > self.rows[-1], "rows out of order")
        self.rows.append(u16(data))
        self.block.append((position, u16(data), u16(data, 2), u16(data, 4)))

    def cell(self, position, number, data):
        row = u16(data)
        self.first_cell.setdefault(row, position)
        for column, form in cells_of(number, data):
            self.expect((row, column) > self.last and column < 256, f"cell {row},{column} out of order")
            self.expect(form < self.formats, "cell: no such format")
            self.last = (row, column)
            self.columns.setdefault(row, []).append(column)
        if number == LABELSST:
            self.strings.append(u32(data, 6))
        if number == FORMULA:
            self.expect(u16(data, 20) == len(data) - 22, "FORMULA: wrong token length")
            self.faults += check_tokens(data[22:])

    def block_end(self, position, data):
        self.ends.append(position)
        self.expect(len(data) == 4 + 2 * len(self.block), "DBCELL: wrong number of rows")
        if not self.block:
            return self.expect(u32(data) == 0, "DBCELL: distance without rows")
        rows = [row for _, row, _, _ in self.block]
        self.expect(rows[-1] - rows[0] < 32 and set(self.first_cell) <= set(rows), "bad block")
        self.expect(position - u32(data) == self.block[0][0], "DBCELL: wrong distance to rows")
        at = self.block[0][0] + 20
        for i, (_, row, first, end) in enumerate(self.block):
            at += u16(data, 4 + 2 * i)
            columns = self.columns.get(row, [])
            self.expect(at == self.first_cell.get(row, at), f"DBCELL: wrong distance, row {row}")
            self.expect((first, end) == ((columns[0], columns[-1] + 1) if columns else (0, 0)),
                        f"ROW {row}: wrong columns")
        self.block, self.first_cell = [], {}


def check_sheet(records, formats, strings):
    places = {number: position for position, number, _ in records}
    middle = [i for i, (_, n, _) in enumerate(records) if n == ROW or n == DBCELL or n in CELLS]
    begin, end = (middle[0], middle[-1] + 1) if middle else (len(BEFORE), len(BEFORE))
    end_of_before = begin if middle else next(i for i, r in enumerate(records) if r[1] == 0x23E)
    if not in_order(records[:end_of_before], BEFORE) \
            or not in_order(records[end if middle else end_of_before:], AFTER):
        yield "sheet: records out of order"
    sheet = SheetCheck(formats)
    last_column = -1
    for position, number, data in records:
        if number == ROW:
            sheet.row(position, data)
        elif number in CELLS:
            sheet.cell(position, number, data)
        elif number == DBCELL:
            sheet.block_end(position, data)
        elif number == COLINFO:
            sheet.expect(last_column < u16(data) <= u16(data, 2) < 256, "COLINFO: overlap")
            last_column = u16(data, 2)
    index = next(data for _, number, data in records if number == INDEX)
    rows = (sheet.rows[0], sheet.rows[-1] + 1) if sheet.rows else (0, 0)
    expected = (0, *rows, places[DEFCOLWIDTH], *sheet.ends)
    if struct.unpack(f"<{len(index) // 4}I", index) != expected \
            or len(sheet.ends) != -(-(rows[1] - rows[0]) // 32):
        yield "INDEX: wrong positions"
    used = [c for columns in sheet.columns.values() for c in columns]
    size = (min(sheet.columns), max(sheet.columns) + 1, min(used), max(used) + 1) if used else (0,) * 4
    if struct.unpack_from("<IIHH", next(d for _, n, d in records if n == DIMENSIONS)) != size:
        yield "DIMENSIONS: wrong"
    strings += sheet.strings
    yield from sheet.faults


def check(path):
    with open(path, "rb") as file:
        stream, faults = stream_of(file.read())
    yield from faults
    records = list(records_of(stream))
    if any(len(data) > 8224 for _, _, data in records):
        yield "record too long"
    end = records[-1][0] + 4 + len(records[-1][2])
    if records[-1][1] != EOF or stream[end:].strip(b"\0") or (end < len(stream) and end > 4096):
        yield "something follows the last record"
    begins = [i for i, (_, number, _) in enumerate(records) if number == BOF]
    parts = [records[a:b] for a, b in zip(begins, begins[1:] + [len(records)])]
    if not in_order(parts[0], GLOBALS):
        yield "globals out of order"
    yield from check_strings(parts[0])
    positions = [u32(data) for _, number, data in parts[0] if number == BOUNDSHEET]
    if positions != [part[0][0] for part in parts[1:]]:
        yield "BOUNDSHEET: wrong positions"
    formats = sum(number == XF for _, number, _ in parts[0])
    strings = []
    for part in parts[1:]:
        yield from check_sheet(part, formats, strings)
    counts = next(struct.unpack_from("<II", data) for _, number, data in parts[0] if number == SST)
    if counts != (len(strings), len(set(strings))) or set(strings) != set(range(counts[1])):
        yield "SST: wrong counts, or strings that no cell uses"


def main():
    """check_xls.py FILE: the stream of any such container, as a foreign reader finds it, too."""
    with open(sys.argv[1], "rb") as file:
        data = file.read()
    stream, faults = stream_of(data)
    if faults or compdoc.CompDoc(data, logfile=sys.stderr).get_named_stream("Workbook") != stream:
        sys.exit("\n".join(faults) or "the readers differ")
    sys.stdout.buffer.write(stream)


if __name__ == "__main__":
    main()
