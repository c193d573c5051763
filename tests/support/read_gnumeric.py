"""A workbook's cells as gnumeric finds them: a second opinion on what they hold."""
import re
import subprocess
import sys
import xml.etree.ElementTree as ElementTree

from openpyxl.utils import get_column_letter

SPACE = "{http://www.gnumeric.org/v10.dtd}"
NUMBER, TEXT = "40", "60"


def export(path):
    # It complains about every formula that it does not understand; what it read is what counts.
    run = subprocess.run(["ssconvert", "-T", "Gnumeric_XmlIO:sax:0", path, "fd://1"],
                         capture_output=True, check=False)
    if run.returncode:
        sys.exit(f"{path}: gnumeric: {run.stderr.decode()}")
    return ElementTree.fromstring(run.stdout)


def read_cell(cell):
    kind = cell.get("ValueType")
    if kind == NUMBER:
        return {"type": "number", "value": float(cell.text)}
    if kind == TEXT:
        # It does not know the escape that .xlsx has for what only looks like an escape.
        return {"type": "text", "value": re.sub("_x005F_(?=x...._)", "_", cell.text or "")}
    return {"type": "other", "value": None}


def place(cell):
    return get_column_letter(int(cell.get("Col")) + 1) + str(int(cell.get("Row")) + 1)


def read(path):
    return {"sheets": [{"cells": {place(cell): read_cell(cell)
                                  for cell in sheet.iter(f"{SPACE}Cell")}}
                       for sheet in export(path).iter(f"{SPACE}Sheet")]}
