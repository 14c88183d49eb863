"""The release of one width as the checks look at it: the DLL, its symbols, its import library, and the
tables that say what they must be. Each is read once."""

import copy
import functools
import pathlib
import re
import struct
import subprocess
from array import array
from collections import namedtuple
from dataclasses import dataclass

import pefile

import machine_code

BASE_ORDINAL = 15

# The end of the export directory, with the names that its fields have in <winnt.h>.
ExportTable = namedtuple(
    "ExportTable",
    "Name Base NumberOfFunctions NumberOfNames AddressOfFunctions " "AddressOfNames AddressOfNameOrdinals",
)


@dataclass(frozen=True)
class Width:
    """What differs between the releases."""

    name: str
    word: int
    bin: str  # folders below the project's
    lib: str
    build: str
    machine: int
    characteristics: int  # of the file header: a linked DLL, relocatable
    dll_flags: int
    system: tuple  # the oldest version of Windows that takes the image
    relocation: int  # the one kind
    record: int  # bytes of the load-configuration record
    sections: str
    directories: str
    limit: int  # bytes of the DLL


WIDTHS = [
    Width(
        "32-bit",
        4,
        "dist/bin",
        "dist/lib",
        "build/product",
        0x14C,
        0x2102,
        0x4540,  # CFG, no handlers, DEP, ASLR
        (5, 1),
        3,
        92,
        ".text:rx .rdata:r .data:rw .rsrc:r .reloc:r",
        "EXPORT IMPORT RESOURCE BASERELOC DEBUG LOAD_CONFIG IAT",
        44 * 1024,
    ),
    Width(
        "64-bit",
        8,
        "dist/x64/bin",
        "dist/x64/lib",
        "build/product64",
        0x8664,
        0x2022,
        0x4160,  # CFG, DEP, ASLR with high entropy
        (5, 2),
        10,
        148,
        ".text:rx .rdata:r .data:rw .pdata:r .rsrc:r .reloc:r",
        "EXPORT IMPORT RESOURCE EXCEPTION BASERELOC DEBUG LOAD_CONFIG IAT",
        48 * 1024,
    ),
]


def table(path):
    """The lines of a table kept by hand, cut at its tabs."""
    return [tuple(line.split("\t")) for line in pathlib.Path(path).read_text().splitlines()]


EXPORTS = {name: (int(ordinal), int(size)) for ordinal, name, size in table("tests/image/exports.tsv")}
IMPORTS = {(module, name): int(size) for module, name, size in table("tests/image/imports.tsv")}


@functools.cache
def declared(mark, *headers):
    """The declarations of headers, as the build reads them: tag, name, bytes of arguments."""
    lines = subprocess.run(
        [
            "awk",
            "-v",
            f"mark={mark}",
            "-v",
            "form=entries",
            "-f",
            "cmake/declarations.awk",
            *headers,
        ],
        capture_output=True,
        check=True,
        text=True,
    ).stdout
    return re.findall(r"UT_ENTRY\((\w+), (\w+), (\d+)\)", lines)


class Image:
    """A PE image in memory. `symbols` are the addresses of functions that no table of the image names."""

    def __init__(self, data, width, symbols=()):
        self.data, self.width = bytes(data), width
        self.pe = pefile.PE(data=self.data, fast_load=True)
        self.header = self.pe.OPTIONAL_HEADER
        self.base = self.header.ImageBase
        self.functions_named = tuple(symbols)
        self.sections = {
            section.Name.rstrip(b"\0").decode("ascii", "replace"): section for section in self.pe.sections
        }

    def checksum(self):
        """The sum of all 16-bit words but the field itself, with the carries folded in, plus the size."""
        words = array("H", self.data + bytes(len(self.data) % 2))
        field = self.header.get_field_absolute_offset("CheckSum") // 2
        total = sum(words) - words[field] - words[field + 1]
        while total > 0xFFFF:
            total = (total & 0xFFFF) + (total >> 16)
        return total + len(self.data)

    def directory(self, name):
        return self.header.DATA_DIRECTORY[pefile.DIRECTORY_ENTRY[f"IMAGE_DIRECTORY_ENTRY_{name}"]]

    @functools.cache
    def parsed(self, name):
        """A directory as pefile reads it."""
        self.pe.parse_data_directories(pefile.DIRECTORY_ENTRY[f"IMAGE_DIRECTORY_ENTRY_{name}"])
        return getattr(self.pe, f"DIRECTORY_ENTRY_{name}", [])

    def bytes_at(self, rva, size):
        """Bytes of the mapped image, or too few of them where it ends."""
        for section in self.pe.sections:
            if section.VirtualAddress <= rva < section.VirtualAddress + section.Misc_VirtualSize:
                offset = section.PointerToRawData + rva - section.VirtualAddress
                return self.data[offset : offset + size]
        return b""

    def numbers(self, rva, count, kind="I"):
        size = struct.calcsize(f"<{count}{kind}")
        return struct.unpack(f"<{count}{kind}", self.bytes_at(rva, size).ljust(size, b"\0"))

    def text_at(self, rva):
        return self.bytes_at(rva, 512).split(b"\0")[0].decode("latin-1")

    def is_in(self, name, rva, size=1):
        section = self.sections.get(name)
        return section is not None and (
            section.VirtualAddress <= rva <= section.VirtualAddress + section.Misc_VirtualSize - size
        )

    @functools.cached_property
    def exports(self):
        """(ordinal, name) -> RVA, as a caller finds functions; a slot without a name has the name ""."""
        table = self.export_table
        functions = self.numbers(table.AddressOfFunctions, min(table.NumberOfFunctions, 65536))
        names = self.numbers(table.AddressOfNames, min(table.NumberOfNames, 65536))
        slots = self.numbers(table.AddressOfNameOrdinals, len(names), "H")
        found = {
            (slot + table.Base, self.text_at(name)): functions[slot] if slot < len(functions) else 0
            for slot, name in zip(slots, names)
        }
        named = {ordinal for ordinal, _ in found}
        for slot, rva in enumerate(functions):
            if rva != 0 and slot + table.Base not in named:
                found[slot + table.Base, ""] = rva
        return found

    @functools.cached_property
    def export_table(self):
        return ExportTable(*self.numbers(self.directory("EXPORT").VirtualAddress + 12, 7))

    @functools.cached_property
    def export_names(self):
        names = self.numbers(self.export_table.AddressOfNames, min(self.export_table.NumberOfNames, 65536))
        return [self.text_at(name) for name in names]

    @functools.cached_property
    def imports(self):
        """(module, name) -> address of the slot."""
        return {
            (
                module.dll.decode(),
                operation.name.decode() if operation.name else f"#{operation.ordinal}",
            ): operation.address
            for module in self.parsed("IMPORT")
            for operation in module.imports
        }

    @functools.cached_property
    def relocations(self):
        """RVA, kind and the RVA of the entry itself, without the padding."""
        directory, found, at = self.directory("BASERELOC"), [], 0
        while at < directory.Size:
            page, size = self.numbers(directory.VirtualAddress + at, 2)
            start = directory.VirtualAddress + at + 8
            entries = self.numbers(start, max(size - 8, 0) // 2, "H")
            found += [
                (page + (entry & 0xFFF), entry >> 12, start + 2 * i)
                for i, entry in enumerate(entries)
                if entry >> 12 != 0
            ]
            at += max(size, 8)
        return found

    @functools.cached_property
    def record(self):
        """The load-configuration record, with the names that its fields have in <winnt.h>."""
        directory = self.directory("LOAD_CONFIG")
        form = (
            self.pe.__IMAGE_LOAD_CONFIG_DIRECTORY64_format__
            if self.width.word == 8
            else self.pe.__IMAGE_LOAD_CONFIG_DIRECTORY_format__
        )
        offset = self.pe.get_offset_from_rva(directory.VirtualAddress)
        record = pefile.Structure(form, file_offset=offset)
        record.__unpack__(
            self.bytes_at(directory.VirtualAddress, record.sizeof()).ljust(record.sizeof(), b"\0")
        )
        return record

    @functools.cached_property
    def guard_targets(self):
        count = min(self.record.GuardCFFunctionCount, 4096)
        return list(self.numbers(self.record.GuardCFFunctionTable - self.base, count))

    @functools.cached_property
    def guard_stand_in(self):
        """The RVA of the function that the pointer to the guard's check leads to."""
        slot = self.record.GuardCFCheckFunctionPointer - self.base
        return self.numbers(slot, 1, "Q" if self.width.word == 8 else "I")[0] - self.base

    @functools.cached_property
    def entries(self):
        """The RVAs that a caller or the platform can reach."""
        return [*self.exports.values(), self.header.AddressOfEntryPoint, self.guard_stand_in]

    @functools.cached_property
    def unwinds(self):
        if self.width.word == 4:
            return []
        directory = self.directory("EXCEPTION")
        numbers = self.numbers(directory.VirtualAddress, directory.Size // 12 * 3)
        rows = zip(*[iter(numbers)] * 3)
        return [
            machine_code.Unwind(self.base + begin, self.base + end, self.bytes_at(info, 4 + 2 * 255))
            for begin, end, info in rows
        ]

    @functools.cached_property
    def instructions(self):
        text = self.sections[".text"]
        code = self.bytes_at(text.VirtualAddress, text.Misc_VirtualSize)
        return machine_code.sweep(self.width.word, self.base + text.VirtualAddress, code)

    @functools.cached_property
    def code(self):
        """The followed code. Images that differ elsewhere share it."""
        sizes = {name: size for (_, name), size in IMPORTS.items()}
        imports = {
            address: (name, sizes.get(name) if self.width.word == 4 else 0)
            for (_, name), address in self.imports.items()
        }

        def table_word(address, size):
            rva = address - self.base
            if not self.is_in(".rdata", rva, size):
                return None
            return self.numbers(rva, 1, "i" if self.width.word == 8 else "I")[0]

        starts = frozenset(self.base + rva for rva in (*self.entries, *self.functions_named))
        text = self.sections[".text"]
        key = (
            self.bytes_at(text.VirtualAddress, text.Misc_VirtualSize),
            starts,
            tuple(imports.items()),
            tuple(unwind.raw for unwind in self.unwinds),
        )
        code = _followed.get(key)
        if code is None or any(table_word(*at) != number for at, number in code.table_words.items()):
            code = _followed[key] = machine_code.Code(
                self.width.word, self.instructions[0], starts, imports, table_word, self.unwinds
            )
        return code


_followed = {}


class Release:
    """What script/build leaves of one width. `data` may be changed; the image follows."""

    def __init__(self, width):
        self.width = width
        self.dll = pathlib.Path(width.bin, "TAVKIT.DLL")
        self.files = {
            path.name: path.read_bytes()
            for path in (
                self.dll,
                self.dll.with_suffix(".pdb"),
                pathlib.Path(width.lib, "tavkit.lib"),
            )
        }
        self._read_symbols()
        self.image = None
        self.objects = [path.read_bytes() for path in pathlib.Path(width.build).rglob("*.obj")]
        self.declared_exports = declared(
            "UT_EXPORT", *sorted(map(str, pathlib.Path("include/tavkit").glob("*.h")))
        )
        self.declared_imports = declared("UT_IMPORT", "platform/win32.h")
        self.load(self.files["TAVKIT.DLL"])

    def load(self, data):
        self.files["TAVKIT.DLL"] = bytes(data)
        text = pefile.PE(data=self.files["TAVKIT.DLL"], fast_load=True).sections[0]
        functions = (text.VirtualAddress + offset for section, offset, _ in self.symbols if section == 1)
        self.image = Image(data, self.width, sorted(functions))

    def copy(self):
        other = copy.copy(self)
        other.files, other.symbols, other.modules = (
            dict(self.files),
            list(self.symbols),
            list(self.modules),
        )
        return other

    def _read_symbols(self):
        pdb = self.dll.with_suffix(".pdb")
        told = subprocess.run(
            ["llvm-pdbutil-19", "dump", "--summary", "--modules", "--publics", str(pdb)],
            capture_output=True,
            check=True,
            text=True,
        ).stdout
        self.guid = re.search(r"GUID: \{(.*)\}", told)[1]
        self.modules = re.findall(r"Mod \d+ \| `(.*)`", told)
        # The linker notes exported functions twice.
        publics = re.findall(r"S_PUB32 .*`(.*)`\n.*addr = (\d+):(\d+)", told)
        self.symbols = sorted({(int(section), int(offset), name) for name, section, offset in publics})

    def library_members(self):
        """The import library's members for functions: machine, ordinal or hint, kind, symbol and DLL."""
        data = self.files["tavkit.lib"]
        offset = 8
        while offset + 60 <= len(data):
            size = int(data[offset + 48 : offset + 58])
            yield data[offset : offset + 16].decode().strip(), data[offset + 60 : offset + 60 + size]
            offset += 60 + size + size % 2
