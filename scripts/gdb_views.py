"""What gdb shows for the engine's packed values: `source scripts/gdb_views.py`, or a line in ~/.gdbinit.

  CellWord                a cell's kind and its row in that kind's table
  RkCell                  place, format and the number that the RK form stands for
  XLUnicodeString         the text, also of the short form
  packed_cell             reference, style, type and value of an .xlsx cell
"""
import struct

import gdb
import gdb.printing

CELL_KINDS = ("none", "rk", "number", "labelSst", "blank", "boolErr", "formula", "label")
CELL_TYPES = ("n", "b", "n", "e", "s", "str", "inlineStr", "d")
NUMBER_CHARACTERS = "0123456789.-+Ee"
SHORT_VALUE, MOST_PACKED = 13, 26
TEXTS, EXTRA = MOST_PACKED + 2, MOST_PACKED + 3
NO_TEXT = (1 << 32) - 1


def address(row, column):
    letters = ""
    column += 1
    while column:
        column, digit = divmod(column - 1, 26)
        letters = chr(ord("A") + digit) + letters
    return f"{letters}{row + 1}"


def rk_number(rk):
    if rk & 2:
        value = (rk - (1 << 32) if rk & 0x80000000 else rk) >> 2
    else:
        value = struct.unpack("<d", struct.pack("<Q", (rk & ~3) << 32))[0]
    return value / 100 if rk & 1 else value


class CellWord:
    def __init__(self, value):
        self.bits = int(value["bits"])

    def to_string(self):
        if not self.bits & 1:
            return "no cell"
        return f"{CELL_KINDS[self.bits >> 1 & 7]} {self.bits >> 4}"


class RkCell:
    def __init__(self, value):
        self.value = value

    def to_string(self):
        cell = self.value
        return f"{address(int(cell['row']), int(cell['col']))} xf {int(cell['xf'])} = {rk_number(int(cell['rk'])):g}"


class UnicodeString:
    def __init__(self, value):
        self.value = value

    def to_string(self):
        if int(self.value["text"]) == 0:
            return '""'
        length = 2 * int(self.value["cch"])
        units = gdb.selected_inferior().read_memory(int(self.value["text"]), length).tobytes()
        return '"' + units.decode("utf-16-le", "replace") + '"'


class PackedCell:
    def __init__(self, value):
        self.value = value

    @staticmethod
    def pointer_at(address):
        return int(gdb.Value(address).cast(gdb.lookup_type("void").pointer().pointer()).dereference())

    def text_beside(self, form, address):
        if form == EXTRA:
            extra = gdb.lookup_type("rubrica::ooxml::packed_cell::extra").pointer()
            address = self.pointer_at(int(gdb.Value(address).cast(extra)["texts"].address))
        if address == 0:
            return None
        inferior = gdb.selected_inferior()
        size, = struct.unpack("<I", inferior.read_memory(address, 4).tobytes())
        if size == NO_TEXT:
            return None
        return inferior.read_memory(address + 8, size).tobytes().decode("utf-8", "replace")

    def text(self):
        form = int(self.value["_form"])
        if form == 0:
            return None
        if form >= TEXTS:
            at = int(self.value["_text"].address) + SHORT_VALUE - gdb.lookup_type("void").pointer().sizeof
            return self.text_beside(form, self.pointer_at(at))
        data = bytes(int(self.value["_text"]["_M_elems"][i]) & 0xFF for i in range(SHORT_VALUE))
        length = form - 1
        if length <= SHORT_VALUE:
            return data[:length].decode("utf-8", "replace")
        return "".join(NUMBER_CHARACTERS[data[i // 2] >> 4 * (i % 2) & 15] for i in range(length))

    def to_string(self):
        word = int(self.value["_word"])
        place = address(word & (1 << 21) - 1, int(self.value["_column"])) if word & 1 << 28 else "no reference"
        style = f" s={int(self.value['_style'])}" if word & 1 << 27 else ""
        text = self.text()
        return f"{place}{style} t={CELL_TYPES[word >> 29]}" + ("" if text is None else f" v={text}")


def views():
    found = gdb.printing.RegexpCollectionPrettyPrinter("rubrica")
    found.add_printer("CellWord", "^rubrica::CellWord$", CellWord)
    found.add_printer("RkCell", "^rubrica::RkCell$", RkCell)
    found.add_printer("XLUnicodeString", "^rubrica::(Short)?XLUnicodeString$", UnicodeString)
    found.add_printer("packed_cell", "^rubrica::(ooxml::packed_cell|(sheet|strict)::c_CT_Cell)$", PackedCell)
    return found


gdb.printing.register_pretty_printer(gdb.current_objfile(), views(), replace=True)
