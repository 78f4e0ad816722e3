#!/usr/bin/env python3
"""Prints what a database file holds, in the form of "database_tool dump".

Written from doc/file-format.md alone, to prove that the document suffices.
"""
import struct
import sys
import zipfile

HEADER = "File\tDeflated\tSize\tDigestType\tDigestValue\tAlgorithm\tIV\tKey\tSalt\tIterations"
ERRORS = {"#VALUE!", "#NAME?", "#REF!", "#NULL!", "#MEMORY!", "#DATA!", "#SYNTAX!"}
TEXT, NUMBER, LONG_TEXT, FILES, CODE = 1, 2, 4, 8, 16
TEXT_NAMES = ("formula", "validation", "default", "list", "format")


class Items:
    def __init__(self, data):
        self.data, self.at = data, 0

    def number(self, size):
        if self.at + size > len(self.data):
            raise ValueError("configuration ends early")
        value = int.from_bytes(self.data[self.at:self.at + size], "little")
        self.at += size
        return value

    def text(self):
        size = self.number(4)
        if self.at + size > len(self.data):
            raise ValueError("configuration ends early")
        value = self.data[self.at:self.at + size].decode("utf-8")
        self.at += size
        return value

    def many(self, read):
        return [read() for _ in range(self.number(4))]


def read_field(items):
    field = {"name": items.text(), "type": items.number(1), "bits": items.number(1)}
    for name in TEXT_NAMES:
        field[name] = items.text()
    field["width"] = items.number(2)
    field["position"] = items.number(2)
    if field["bits"] & 2:
        field["encryption"] = items.text()
    return field


def read_flag_types(items, config):
    config["flag types"] = items.many(lambda: (items.text(), items.number(4)))


def read_lists(items, config):
    config["lists"] = items.many(lambda: (items.text(), items.many(items.text)))


def read_keys(items, table):
    table["keys"] = items.many(
        lambda: (items.text(), items.many(lambda: (items.number(2), items.text()))))


def read_arrangement(items, table):
    table["lines"], table["frozen"] = items.number(2), (items.number(2), items.number(4))


def read_blocks(items, kinds, owner):
    """Kinds and versions that are not known are stepped over."""
    last = 0
    for _ in range(items.number(4)):
        kind, version, size = items.number(2), items.number(2), items.number(4)
        if kind <= last or version == 0 or items.at + size > len(items.data):
            raise ValueError("block of kind %d" % kind)
        last = kind
        if version == 1 and kind in kinds:
            block = Items(items.data[items.at:items.at + size])
            kinds[kind](block, owner)
            if block.at != size:
                raise ValueError("surplus bytes in the block of kind %d" % kind)
        items.at += size


def read_database_objects(items, layout, config):
    config.update({"flag types": [], "lists": []})
    if layout == 5:
        items.number(1)  # the protection
        read_blocks(items, {1: read_flag_types, 2: read_lists}, config)
        return
    read_flag_types(items, config)
    read_lists(items, config)
    if layout > 1:
        items.number(1)


def read_table_objects(items, layout, table):
    table.update({"keys": [], "lines": 1, "frozen": (0, 0)})
    if layout == 5:
        read_blocks(items, {1: read_keys, 2: read_arrangement}, table)
    if layout in (3, 4):
        read_keys(items, table)
    if layout == 4:
        read_arrangement(items, table)


def read_config(data):
    items = Items(data)
    layout = items.number(2)
    if not 1 <= layout <= 5:
        raise ValueError("unknown layout")
    config = {"name": items.text()}
    read_database_objects(items, layout, config)
    folders = [""]
    for _ in range(items.number(4)):
        parent = folders[items.number(4)]
        folders.append(parent + items.text() + "/")
    config["tables"] = []
    for _ in range(items.number(4)):
        name = items.text()
        table = {"name": name, "path": folders[items.number(4)] + name, "records": items.number(4)}
        table["fields"] = items.many(lambda: read_field(items))
        table["runs"] = items.many(lambda: (items.number(4), items.number(2)))
        read_table_objects(items, layout, table)
        config["tables"].append(table)
    if items.at != len(data):
        raise ValueError("surplus bytes in the configuration")
    return config


def read_records(text):
    """All lines of a table, as lists of cells."""
    at, records, record, end = 0, [], [], len(text)
    while at < end:
        while at < end and text[at] == " ":
            at += 1
        cell = ""
        if at < end and text[at] == '"':
            at += 1
            while at < end:
                if text[at] != '"':
                    cell += text[at]
                    at += 1
                elif text[at + 1:at + 2] == '"':
                    cell += '"'
                    at += 2
                else:
                    at += 1
                    break
        else:
            start = at
            while at < end and text[at] not in ",\r\n":
                at += 1
            cell = text[start:at]
        record.append(cell)
        if at < end and text[at] == ",":
            at += 1
            continue
        at += 2 if text[at:at + 2] == "\r\n" else 1
        records.append(record)
        record = []
    return records


def parse_object(line):
    if not line.startswith("|"):
        return line, ""
    first, mark, second = line[1:].partition("|")
    if mark:
        return first, second
    return first.replace("\\", "/").rsplit("/", 1)[-1], first


class Database:
    def __init__(self, path):
        self.archive = zipfile.ZipFile(path)
        if int(self.archive.read("min-version.txt")) > 2025:
            raise ValueError("newer version")
        self.check_manifest()
        self.config = read_config(self.archive.read("config.dat"))
        self.contents = {}
        for name in self.archive.namelist():
            folder, _, file = name.rpartition("/")
            self.contents.setdefault(folder, {})[file] = name

    def check_manifest(self):
        lines = self.archive.read("META-INF/manifest.txt").decode("utf-8").split("\r\n")
        if lines[0] != HEADER:
            raise ValueError("manifest")
        listed = [line.split("\t") for line in lines[1:]]
        if any(len(columns) != 2 for columns in listed):
            raise ValueError("encrypted or damaged")
        names = self.archive.namelist()
        if [columns[0] for columns in listed] != names[:-1] or names[-1] != "META-INF/manifest.txt":
            raise ValueError("manifest and archive differ")
        for name, deflated in listed:
            if (self.archive.getinfo(name).compress_type == zipfile.ZIP_DEFLATED) != (deflated == "1"):
                raise ValueError("method of " + name)

    def folder_names(self):
        taken, names = set(), []
        for table in self.config["tables"]:
            names.append(table["path"] if table["name"].casefold() in taken else table["name"])
            taken.add(table["name"].casefold())
        return names

    def cell(self, kind, text, folder):
        members = self.contents.get(folder, {})
        if kind == TEXT:
            return "text " + text.encode("utf-8").hex() if text else "empty"
        if kind == NUMBER:
            if text == "":
                return "empty"
            if text in ERRORS:
                return "error " + text
            return "number " + struct.pack(">d", float(text)).hex()
        if kind in (LONG_TEXT, CODE):
            for name in members.values():
                return "content " + self.archive.read(name).hex()
            return "empty"
        line = ""
        for name, shortcut in [parse_object(one) for one in text.split("\n") if one]:
            data = b"" if shortcut else self.archive.read(members[name])
            line += " %s/%s/%s" % (name.encode().hex(), shortcut.encode().hex(), data.hex())
        return "files" + line if line else "empty"

    def dump_table(self, table, folder_name):
        print("table", table["path"].encode("utf-8").hex())
        for field in table["fields"]:
            bits = field["bits"]
            print(" field %s type %d link %d encrypted %d hidden %d width %d position %d" % (
                field["name"].encode("utf-8").hex(), field["type"], bits & 1, bits >> 1 & 1, bits >> 2 & 1,
                field["width"], field["position"]) + "".join(
                    " [%s]" % field[name].encode("utf-8").hex() for name in TEXT_NAMES))
        for name, expressions in table["keys"]:
            print(" search key " + name.encode("utf-8").hex() + "".join(
                " %d:%s" % (field, criterion.encode("utf-8").hex()) for field, criterion in expressions))
        print(" lines %d frozen %d %d" % (table["lines"], *table["frozen"]))
        data = self.archive.read(table["path"] + ".txt")
        if not data.startswith(b"\xef\xbb\xbf"):
            raise ValueError("no byte-order mark")
        names, *records = read_records(data[3:].decode("utf-8"))
        if names != [field["name"] for field in table["fields"]]:
            raise ValueError("field names")
        flags = [flag for count, flag in table["runs"] for _ in range(count)]
        if len(flags) != len(records):
            flags = [0] * len(records)
        for number, record in enumerate(records, 1):
            print(" record %d flags %04x" % (number, flags[number - 1]))
            for index, field in enumerate(table["fields"]):
                folder = "%s.rvb-bin/%s.r%09df%05d" % (self.config["name"], folder_name, number, index + 1)
                print("  " + self.cell(field["type"], record[index], folder))

    def dump(self):
        for name, color in self.config["flag types"]:
            print("flag type %s %06x" % (name.encode("utf-8").hex(), color))
        for name, lists in self.config["lists"]:
            print("list " + name.encode("utf-8").hex() +
                  "".join(" [%s]" % item.encode("utf-8").hex() for item in lists))
        for table, folder_name in zip(self.config["tables"], self.folder_names()):
            self.dump_table(table, folder_name)


Database(sys.argv[1]).dump()
