"""Shows columns, texts and values of Rowvane in gdb as users see them:

    (gdb) source tools/gdb/rowvane.py
    (gdb) print table.data().columns[2]
    (gdb) print cell

A column prints its first 20 cells; "set print elements" sets another number. Numbers that are empty or errors are NaNs
with fixed payloads (src/core/values/number_cell.h); texts are codes into a pool (src/core/table/text_pool.h).
"""
import struct

import gdb
import gdb.printing

SHOWN_CELLS = 20
BLOCK_BITS = 20
LENGTH_BITS = 16


def vector_items(vector):
    start, end = vector["_M_impl"]["_M_start"], vector["_M_impl"]["_M_finish"]
    return start, int(end - start)


def first_cells(vector):
    start, size = vector_items(vector)
    limit = gdb.parameter("print elements") or size
    return size, [start[i] for i in range(min(size, limit, SHOWN_CELLS))]


def column_text(kind, size, cells):
    rest = ", ..." if size > len(cells) else ""
    return f"{kind} of {size}: {', '.join(cells)}{rest}"


def number_text(value):
    bits = struct.unpack("<Q", struct.pack("<d", float(value)))[0]
    if bits >> 52 & 0x7FF != 0x7FF or bits & (1 << 52) - 1 == 0:
        return repr(float(value))
    payload = bits & 0xFFFFFFFF
    return "empty" if payload == 0 else f"error {payload}"


def pool_text(pool, code):
    entries, size = vector_items(pool["entries_"])
    if not 0 <= code < size:
        return f"no text {code}"
    entry = int(entries[code])
    offset, length = entry >> LENGTH_BITS, entry & (1 << LENGTH_BITS) - 1
    blocks, _ = vector_items(pool["arena_"]["blocks_"])
    block = blocks[offset >> BLOCK_BITS]["_M_t"]["_M_t"]["_M_head_impl"]
    if length == 0:
        return '""'
    return (block + (offset & (1 << BLOCK_BITS) - 1)).string("utf-8", "replace", length=length).__repr__()


class NumberColumn:
    def __init__(self, column):
        self.column = column

    def to_string(self):
        size, cells = first_cells(self.column["cells"])
        return column_text("numbers", size, [number_text(cell) for cell in cells])


class TextColumn:
    def __init__(self, column):
        self.column = column

    def to_string(self):
        size, cells = first_cells(self.column["cells"])
        pool = self.column["pool"]["_M_ptr"].dereference()
        return column_text("texts", size, [pool_text(pool, int(cell)) for cell in cells])


class ReferenceColumn:
    def __init__(self, column):
        self.column = column

    def to_string(self):
        size, cells = first_cells(self.column["cells"])
        _, values = vector_items(self.column["values"])
        kind = f"references to {values} values"
        return column_text(kind, size, ["empty" if int(cell) == 0 else f"value {int(cell) - 1}" for cell in cells])


def printers():
    found = gdb.printing.RegexpCollectionPrettyPrinter("rowvane")
    found.add_printer("NumberColumn", "^rowvane::NumberColumn$", NumberColumn)
    found.add_printer("TextColumn", "^rowvane::TextColumn$", TextColumn)
    found.add_printer("ReferenceColumn", "^rowvane::ReferenceColumn<.*>$", ReferenceColumn)
    return found


gdb.printing.register_pretty_printer(None, printers(), replace=True)
