"""An .xlsx as openpyxl finds it, after a check of what no reader minds but Excel: the order of
elements, rows and cells, counts and indexes."""
import sys
import xml.etree.ElementTree as ElementTree
import zipfile

import openpyxl

import read_xls

TYPES = {"n": "number", "s": "text", "f": "formula", "e": "error"}
MAIN = "{http://schemas.openxmlformats.org/spreadsheetml/2006/main}"
ORDER = {
    "workbook": "bookViews sheets definedNames calcPr",
    "worksheet": "sheetPr dimension sheetViews sheetFormatPr cols sheetData printOptions "
                 "pageMargins pageSetup headerFooter",
    "sheetView": "pane selection",
    "c": "f v is",
    "styleSheet": "numFmts fonts fills borders cellStyleXfs cellXfs cellStyles",
    "font": "b sz name",
    "border": "left right top bottom diagonal",
}
column_name = openpyxl.utils.get_column_letter


def tag(element):
    return element.tag.rsplit("}", 1)[1]


def check_tree(root):
    for element in root.iter():
        places = [ORDER[tag(element)].split().index(tag(child)) for child in element] \
            if tag(element) in ORDER else []
        if places != sorted(places):
            yield f"{tag(element)}: children out of order"
        if tag(element) != "sst" and int(element.get("count", len(element))) != len(element):
            yield f"{tag(element)}: wrong count"
        if tag(element) in ("cols", "definedNames", "numFmts", "sheets") and not len(element):
            yield f"{tag(element)}: empty"


def check_cells(sheet, seen):
    places = []  # a row's own is that of a column 0
    for row in sheet.iter(f"{MAIN}row"):
        places.append((int(row.get("r")), 0))
        places += [openpyxl.utils.cell.coordinate_to_tuple(cell.get("r")) for cell in row]
        seen += [int(cell[0].text) for cell in row if cell.get("t") == "s"]
    if places != sorted(set(places)) or not {(row, 0) for row, _ in places} <= set(places):
        yield "rows or cells out of order"
    ends = [int(c.get(end)) for c in sheet.iter(f"{MAIN}col") for end in ("min", "max")]
    if ends != sorted(ends) or any(a == b for a, b in zip(ends[1::2], ends[2::2])):
        yield "columns overlap"


def check(archive, parts):
    if archive.testzip() or archive.namelist()[0] != "[Content_Types].xml":
        yield "bad archive"
    types = {e.get("PartName") for e in parts["[Content_Types].xml"]}
    targets = {e.get("Target") for e in parts["xl/_rels/workbook.xml.rels"]} | {"workbook.xml"}
    table = parts["xl/sharedStrings.xml"]
    seen = []
    for name, root in parts.items():
        if name.startswith("xl/") and not name.endswith(".rels"):
            if "/" + name not in types or name[3:] not in targets:
                yield f"{name}: no content type or relation"
            yield from check_tree(root)
        if tag(root) == "worksheet":
            yield from check_cells(root, seen)
    if (int(table.get("count")), int(table.get("uniqueCount"))) != (len(seen), len(table)) \
            or sorted(set(seen)) != list(range(len(table))):
        yield "strings: wrong count, or some that no cell uses"


def colour(colour):
    if colour is None or colour.type == "auto":
        return "auto"
    return colour.rgb if colour.type == "rgb" else f"index {colour.indexed}"


def look(cell):
    sides = ((name, getattr(cell.border, name)) for name in read_xls.SIDES)
    return read_xls.described(
        cell.font.name, cell.font.sz, cell.font.b, cell.alignment.horizontal or "general",
        cell.alignment.vertical or "bottom", cell.alignment.wrap_text, cell.number_format,
        {name: f"{side.style} {colour(side.color)}" for name, side in sides if side and side.style})


def read_cell(cell, cached):
    kind = "blank" if cell.value is None else TYPES[cell.data_type]
    value = {"type": kind, "value": cell.value, "look": look(cell)}
    if kind == "formula":
        value["cached"] = cached.value
    return value


def read_sheet(sheet, cached, part):
    footer = part.find(f"{MAIN}headerFooter/{MAIN}oddFooter")
    setup = sheet.sheet_properties.pageSetUpPr
    return {"name": sheet.title, "dimensions": part.find(f"{MAIN}dimension").get("ref"),
            "cells": {c.coordinate: read_cell(c, cached[c.coordinate])
                      for c in sheet._cells.values()},
            "columnWidths": {column_name(number): columns.width
                             for columns in sheet.column_dimensions.values()
                             for number in range(columns.min, columns.max + 1)},
            "rowHeights": {str(n): d.height for n, d in sheet.row_dimensions.items() if d.height},
            "freeze": sheet.freeze_panes, "printTitles": sheet.print_title_rows,
            "landscape": sheet.page_setup.orientation == "landscape",
            "fitToPage": bool(setup and setup.fitToPage),
            "fitToWidth": sheet.page_setup.fitToWidth, "fitToHeight": sheet.page_setup.fitToHeight,
            "paper": sheet.page_setup.paperSize,
            "margins": {name: getattr(sheet.page_margins, name)
                        for name in read_xls.SIDES + ("header", "footer")},
            "footer": footer.text if footer is not None else "",
            "showGridLines": sheet.sheet_view.showGridLines is not False,
            "printGridLines": bool(sheet.print_options.gridLines)}


def read(path, checked=True):
    with zipfile.ZipFile(path) as archive:
        parts = {name: ElementTree.fromstring(archive.read(name)) for name in archive.namelist()}
        faults = list(check(archive, parts)) if checked else []
    if faults:
        sys.exit(f"{path}: " + "\n".join(faults))
    book = openpyxl.load_workbook(path)
    cached = openpyxl.load_workbook(path, data_only=True)
    return {"sheets": [read_sheet(sheet, cached[sheet.title],
                                  parts[f"xl/worksheets/sheet{number + 1}.xml"])
                       for number, sheet in enumerate(book.worksheets)]}
