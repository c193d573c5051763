"""An .xls as xlrd finds it, after a check of what no reader minds but Excel."""
import io
import struct
import sys

import xlrd

import check_xls

SIDES = ("left", "right", "top", "bottom")
LINES = ("none thin medium dashed dotted thick double hair mediumDashed dashDot mediumDashDot "
         "dashDotDot mediumDashDotDot slantDashDot").split()
HORIZONTAL = "general left center right fill justify centerContinuous distributed".split()
VERTICAL = "top center bottom justify distributed".split()
FIT, HEADING_LINES, FOOTER, MARGINS, SETUP, DIMENSIONS = 0x81, 0x2B, 0x15, 0x26, 0xA1, 0x200
KINDS = {xlrd.XL_CELL_TEXT: "text", xlrd.XL_CELL_NUMBER: "number", xlrd.XL_CELL_ERROR: "error",
         xlrd.XL_CELL_BLANK: "blank"}
name_of = xlrd.cellname


def described(name, size, bold, horizontal, vertical, wrap, number_format, borders):
    """One line for one look, so that a wrong one is seen whole; four like borders count as one."""
    if len(borders) == 4 and len(set(borders.values())) == 1:
        borders = {"": borders["top"]}
    lines = (f", {side} {line}".replace("  ", " ") for side, line in borders.items())
    bold, wrap = " bold" if bold else "", " wrap" if wrap else ""
    return f"{name} {size:g}{bold}, {horizontal} {vertical}{wrap}, {number_format}{''.join(lines)}"


def look(book, cell):
    form = book.xf_list[cell.xf_index]
    font = book.font_list[form.font_index]
    borders = {}
    for name in SIDES:
        style = getattr(form.border, f"{name}_line_style")
        colour = getattr(form.border, f"{name}_colour_index")
        if style:
            borders[name] = LINES[style] + (" auto" if colour == 64 else
                                            " FF%02X%02X%02X" % book.colour_map[colour])
    return described(font.name, font.height / 20, font.weight == 700,
                     HORIZONTAL[form.alignment.hor_align], VERTICAL[form.alignment.vert_align],
                     form.alignment.text_wrapped, book.format_map[form.format_key].format_str,
                     borders)


def read_cell(book, cell, place, formula):
    value = cell.value
    if cell.ctype == xlrd.XL_CELL_ERROR:
        value = xlrd.error_text_from_code[value]
    result = {"type": KINDS[cell.ctype], "value": value, "look": look(book, cell)}
    if cell.ctype == xlrd.XL_CELL_BLANK:
        result["value"] = None
    if formula:
        xlrd.formula.decompile_formula(book, formula, len(formula), xlrd.formula.FMLA_TYPE_CELL,
                                       *place)
        result.update(type="formula", value=None, cached=None if value == "" else value)
    return result


def dimensions(data):
    first_row, end_row, first_column, end_column = struct.unpack_from("<IIHH", data)
    first = name_of(first_row, first_column)
    last = name_of(max(end_row - 1, 0), max(end_column - 1, 0))
    return first if first == last else f"{first}:{last}"


def titles(book, number):
    for name in book.name_map.get("print_titles", []):
        area = name.result.value[0]
        if name.scope == number:
            return f"${area.rowxlo + 1}:${area.rowxhi}"
    return None


def read_sheet(book, number, records):
    raw = {kind: data for _, kind, data in records}
    formulas = {struct.unpack_from("<HH", data): data[22:]
                for _, kind, data in records if kind == check_xls.FORMULA}
    sheet = book.sheet_by_index(number)
    cells = {name_of(row, column): read_cell(book, cell, (row, column),
                                             formulas.get((row, column)))
             for row in range(sheet.nrows) for column, cell in enumerate(sheet.row(row))
             if cell.ctype != xlrd.XL_CELL_EMPTY}
    setup = struct.unpack("<8HddH", raw[SETUP])
    margins = [struct.unpack("<d", raw[MARGINS + side])[0] for side in range(4)]
    footer = raw[FOOTER]
    frozen = (sheet.horz_split_pos, sheet.vert_split_pos) if sheet.panes_are_frozen else (0, 0)
    return {"name": sheet.name, "dimensions": dimensions(raw[DIMENSIONS]), "cells": cells,
            "columnWidths": {xlrd.colname(c): info.width / 256
                             for c, info in sheet.colinfo_map.items()},
            "rowHeights": {str(r + 1): info.height / 20 for r, info in sheet.rowinfo_map.items()
                           if info.height_mismatch},
            "freeze": name_of(*frozen) if any(frozen) else None,
            "printTitles": titles(book, number), "landscape": not setup[5] & 2,
            "fitToPage": bool(struct.unpack("<H", raw[FIT])[0] & 0x100),
            "fitToWidth": setup[3], "fitToHeight": setup[4], "paper": setup[0],
            "margins": {**dict(zip(SIDES, margins)), "header": setup[8], "footer": setup[9]},
            "footer": footer[3:].decode("utf-16-le" if footer[2] else "latin-1") if footer else "",
            "showGridLines": bool(sheet.show_grid_lines),
            "printGridLines": bool(struct.unpack("<H", raw[HEADING_LINES])[0])}


def open_book(path, with_looks):
    """The book, and the records of each sheet, which hold what xlrd does not tell."""
    parts = check_xls.checked_parts(path)
    log = io.StringIO()
    book = xlrd.open_workbook(path, formatting_info=with_looks, ragged_rows=True, logfile=log)
    if log.getvalue():
        sys.exit(log.getvalue())
    return book, parts[1:]


def read(path):
    book, parts = open_book(path, True)
    return {"sheets": [read_sheet(book, number, part) for number, part in enumerate(parts)]}


def print_values(path):
    sheet = open_book(path, False)[0].sheet_by_index(0)
    for row in range(sheet.nrows):
        print(*(f"{v:g}" if isinstance(v, float) else v for v in sheet.row_values(row)), sep=",")
