"""Each check is shown releases with one fault each, and must be the only one to fail."""

import os
import struct

from checks import CHECKS, outcome
from image import EXPORTS, IMPORTS

FAULTS = []  # the check that must fail, what is wrong, the function that does it, the widths


def fault(failing, what, words=(4, 8)):
    def add(function):
        FAULTS.append((failing, what, function, words))
        return function

    return add


def planted(release):
    """Shows the faults to the checks: for each check its name, and what went wrong with them. A fault may
    give words, each of which a complaint must have."""
    results = {name: [] for name in CHECKS}
    shown = set()
    for failing, what, function, widths in FAULTS:
        if release.width.word not in widths:
            continue
        shown.add(failing)
        victim = Victim(release)
        try:
            words = function(victim)
        except StopIteration:
            results[failing].append(f"{what}: the image has no place for it")
            continue
        found = failures(victim.finish(mends=failing != CHECKSUM))
        if found.keys() != {failing}:
            failed = [f"{name} ({complaints[0]})" for name, complaints in found.items()]
            results[failing].append(f"{what}: what fails is {', '.join(failed) or 'nothing'}")
        for word in words or ():
            if not any(word in complaint for complaint in found.get(failing, [])):
                results[failing].append(f"{word} passes")
    for name in CHECKS:
        if name in shown:
            yield name, results[name]
        elif name != UNWINDING:
            yield name, ["no fault is planted for this check"]


def failures(release):
    outcomes = ((name, outcome(function, release)) for name, function in CHECKS.items())
    return {name: complaints for name, complaints in outcomes if complaints}


class Victim:
    """A copy of a release to be damaged; its image is what it was until the damage is done."""

    def __init__(self, release):
        self.release = release.copy()
        self.image, self.word = release.image, release.width.word
        self.data = bytearray(release.image.data)

    def finish(self, mends):
        if mends:
            self.put(self.field(self.image.header, "CheckSum"), "I", 0)
            self.release.load(self.data)
            self.put(self.field(self.image.header, "CheckSum"), "I", self.release.image.checksum())
        self.release.load(self.data)
        return self.release

    def field(self, structure, name):
        return structure.get_field_absolute_offset(name)

    def put(self, offset, kind, *values):
        struct.pack_into(f"<{kind}", self.data, offset, *values)

    def get(self, offset, kind):
        return struct.unpack_from(f"<{kind}", self.data, offset)[0]

    def change(self, structure, name, kind, change):
        """Gives a field of a header another value, worked out from the old one."""
        offset = self.field(structure, name)
        self.put(offset, kind, change(self.get(offset, kind)))

    def at(self, address):
        """The place in the file of an address."""
        return self.image.pe.get_offset_from_rva(address - self.image.base)

    def replace(self, old, new):
        offset = self.data.find(old)
        if offset < 0:
            raise StopIteration
        self.data[offset : offset + len(old)] = new

    def write(self, instruction, code):
        """Other code in the place of an instruction."""
        size = instruction.end - instruction.address
        offset = self.at(instruction.address)
        self.data[offset : offset + size] = code.ljust(size, b"\x90")

    def code_of(self, instruction):
        return bytes(self.data[self.at(instruction.address) :][: instruction.end - instruction.address])

    def instructions(self, mnemonic=None):
        """The instructions that functions lead to, in order."""
        for address, instruction in self.image.instructions[0].items():
            if address in self.image.code.reached and mnemonic in (None, instruction.mnemonic):
                yield instruction

    def following(self, instruction):
        return self.image.instructions[0].get(instruction.end)

    def exports(self):
        """Exports that no code of the DLL calls: name, address of the slot, address of the function."""
        for (ordinal, name), rva in self.image.exports.items():
            place = self.image.export_table.AddressOfFunctions + 4 * (ordinal - self.image.export_table.Base)
            address = self.image.base + rva
            calls = (
                instruction
                for instruction in self.instructions()
                if instruction.operands and instruction.operands[0].value == address
            )
            if next(calls, None) is None:
                yield name, self.image.base + place, address

    def padding(self, address):
        """Makes the padding before a function single bytes; gives where it begins."""
        begin = address
        instructions = self.image.instructions[0]
        before = {instruction.end: instruction for instruction in instructions.values()}
        while begin in before and before[begin].mnemonic in ("nop", "int3"):
            begin = before[begin].address
        self.data[self.at(begin) : self.at(address)] = b"\x90" * (address - begin)
        return begin


def name_table(victim, column):
    table = victim.image.export_table
    rva = getattr(table, column)
    return victim.at(victim.image.base + rva)


# Exports.
DECLARED = "the headers declare the table of exports"
TABLE = "the table of exports has the right slots, and names in order"
SLOTS = "exports have their names and ordinals, and all other slots are holes"


@fault(DECLARED, "a declaration is missing")
def _(victim):
    victim.release.declared_exports = victim.release.declared_exports[1:]


@fault(TABLE, "the DLL names itself otherwise")
def _(victim):
    victim.replace(b"TAVKIT.DLL\0", b"TAVKIT.DLK\0")


@fault(TABLE, "two names stand in the wrong order")
def _(victim):
    for column, kind in (("AddressOfNames", "2I"), ("AddressOfNameOrdinals", "2H")):
        offset = name_table(victim, column)
        first, second = struct.unpack_from(f"<{kind}", victim.data, offset)
        victim.put(offset, kind, second, first)


@fault(SLOTS, "a hole leads to a function")
def _(victim):
    functions = name_table(victim, "AddressOfFunctions")
    victim.put(functions + 4 * (24 - 15), "I", victim.get(functions, "I"))


@fault(SLOTS, "a name is wrong")
def _(victim):
    victim.replace(b"utCharNext\0", b"utCharNexs\0")


@fault(SLOTS, "two names have each other's ordinals")
def _(victim):
    names = victim.image.export_names
    ordinals = name_table(victim, "AddressOfNameOrdinals")
    one, two = (ordinals + 2 * names.index(name) for name in ("utCharNext", "utCharLast"))
    first, second = victim.get(one, "H"), victim.get(two, "H")
    victim.put(one, "H", second)
    victim.put(two, "H", first)


LIBRARY = "the import library gives the exports their names"


@fault(LIBRARY, "a symbol is wrong")
def _(victim):
    data = victim.release.files["tavkit.lib"]
    victim.release.files["tavkit.lib"] = data[::-1].replace(b"utCharNext"[::-1], b"utCharNexu"[::-1], 1)[::-1]


@fault(LIBRARY, "its machine is wrong")
def _(victim):
    data = victim.release.files["tavkit.lib"]
    mark = b"\0\0\xff\xff\0\0"
    machine = struct.pack("<H", victim.release.width.machine)
    victim.release.files["tavkit.lib"] = data.replace(mark + machine, mark + b"\xc4\x01", 1)


# Imports.
PLATFORM = "the platform's header declares the table of imports"
IMPORTED = "the DLL imports the table, and nothing else"
USED = "the code uses every import"


@fault(PLATFORM, "a declaration is missing")
def _(victim):
    victim.release.declared_imports = victim.release.declared_imports[1:]


@fault(IMPORTED, "a module is another one")
def _(victim):
    victim.replace(b"USER32.dll\0", b"USER33.dll\0")


@fault(USED, "the one call of an operation is a call of another")
def _(victim):
    slots = victim.image.imports
    sizes = {slots[key]: size for key, size in IMPORTS.items()}
    uses = {}
    for instruction in victim.instructions():
        for operand in instruction.operands:
            if operand.kind == "memory" and operand.value in sizes:
                uses.setdefault(operand.value, []).append(instruction)
    slot, other = next(
        (slot, other)
        for slot in uses
        for other in uses
        if len(uses[slot]) == 1 and other != slot and sizes[other] == sizes[slot]
    )
    place = victim.at(uses[slot][0].end - 4)
    victim.put(place, "I", victim.get(place, "I") + other - slot)


# Headers.
HEADERS = "machine, flags and versions"
for _name, _bit, _words in (
    ("ASLR", 0x40, (4, 8)),
    ("DEP", 0x100, (4, 8)),
    ("CFG", 0x4000, (4, 8)),
    ("no handlers", 0x400, (4,)),
    ("high entropy", 0x20, (8,)),
):
    fault(HEADERS, f"not marked: {_name}", _words)(
        lambda victim, bit=_bit: victim.change(
            victim.image.header, "DllCharacteristics", "H", lambda flags: flags ^ bit
        )
    )
for _structure, _name, _kind in (
    ("FILE_HEADER", "Characteristics", "H"),
    ("FILE_HEADER", "NumberOfSymbols", "I"),
    ("OPTIONAL_HEADER", "MinorSubsystemVersion", "H"),
    ("OPTIONAL_HEADER", "MinorOperatingSystemVersion", "H"),
    ("OPTIONAL_HEADER", "MajorImageVersion", "H"),
    ("OPTIONAL_HEADER", "Subsystem", "H"),
):
    fault(HEADERS, f"{_name} is wrong")(
        lambda victim, structure=_structure, name=_name, kind=_kind: victim.change(
            getattr(victim.image.pe, structure), name, kind, lambda value: value + 1
        )
    )


@fault(HEADERS, "the machine is wrong")
def _(victim):
    victim.change(victim.image.pe.FILE_HEADER, "Machine", "H", lambda machine: 0x1C4)


DIRECTORIES = "there is no directory but those that are needed"


@fault(DIRECTORIES, "a descriptor of managed code")
def _(victim):
    directory = victim.image.directory("COM_DESCRIPTOR")
    victim.put(directory.get_file_offset(), "II", victim.image.sections[".rdata"].VirtualAddress, 8)


@fault(DIRECTORIES, "bytes after the last section")
def _(victim):
    victim.data += bytes(16)


CHECKSUM = "the checksum is right"


@fault(CHECKSUM, "one bit is another")
def _(victim):
    victim.change(victim.image.header, "CheckSum", "I", lambda value: value ^ 1)


@fault("the DLL is small", "it reaches the limit")
def _(victim):
    last = victim.image.pe.sections[-1]
    more = victim.release.width.limit - len(victim.data)
    victim.change(last, "SizeOfRawData", "I", lambda value: value + more)
    victim.data += bytes(more)


SYMBOLS = "the symbols are those of this DLL, named without a folder"


@fault(SYMBOLS, "another build's symbols")
def _(victim):
    victim.put(victim.data.find(b"RSDS") + 4, "I", 1)


@fault(SYMBOLS, "the same number but for its end")
def _(victim):
    victim.put(victim.data.find(b"RSDS") + 19, "B", 1)


@fault(SYMBOLS, "a name with a folder")
def _(victim):
    victim.replace(b"TAVKIT.pdb\0", b"\\AVKIT.pdb\0")


ANONYMOUS = "neither time nor folder of the build stands in the release"


@fault(ANONYMOUS, "a time")
def _(victim):
    victim.change(victim.image.pe.FILE_HEADER, "TimeDateStamp", "I", lambda value: value ^ 1)


@fault(ANONYMOUS, "no mark of a repeatable build")
def _(victim):
    victim.change(victim.image.parsed("DEBUG")[1].struct, "Type", "I", lambda kind: 13)


@fault(ANONYMOUS, "a folder in the symbols")
def _(victim):
    victim.release.files["TAVKIT.pdb"] += os.getcwd().encode()


# Sections.
RIGHTS = "code can't be written, data can't be run, no section is shared"
for _section, _bit, _name in (
    (".text", 0x80000000, "code can be written"),
    (".rdata", 0x20000000, "data can be run"),
    (".rdata", 0x80000000, "constants can be written"),
    (".data", 0x10000000, "a section is shared"),
):
    fault(RIGHTS, _name)(
        lambda victim, section=_section, bit=_bit: victim.change(
            victim.image.sections[section], "Characteristics", "I", lambda flags: flags | bit
        )
    )

WRITABLE = "the one thing that can be written is the module handle"


@fault(WRITABLE, "there is more room")
def _(victim):
    victim.change(victim.image.sections[".data"], "Misc_VirtualSize", "I", lambda size: size + 4)


@fault(WRITABLE, "it has another name")
def _(victim):
    section = list(victim.image.sections).index(".data") + 1
    victim.release.symbols = [
        (number, offset, "?g_state@tavkit@@3HA" if number == section else name)
        for number, offset, name in victim.release.symbols
    ]


RELOCATIONS = "relocations are of one kind and change code and read-only data alone"
RELOCATED = "every address in the code and in the load-configuration record is relocated"


def relocation(victim, test):
    """The place of the first relocation of whose target a test holds."""
    return victim.at(victim.image.base + next(at for rva, _, at in victim.image.relocations if test(rva)))


@fault(RELOCATIONS, "one is of another kind")
def _(victim):
    offset = relocation(victim, lambda rva: True)
    victim.put(offset, "H", victim.get(offset, "H") & 0xFFF | 0x1000)


@fault(RELOCATIONS, "one changes what can be written")
def _(victim):
    directory, section = victim.image.directory("BASERELOC"), victim.image.sections[".reloc"]
    block = victim.at(victim.image.base + directory.VirtualAddress) + directory.Size
    page = victim.image.sections[".data"].VirtualAddress
    victim.data[block : block + 12] = struct.pack("<IIHH", page, 12, victim.release.width.relocation << 12, 0)
    victim.put(directory.get_file_offset() + 4, "I", directory.Size + 12)
    victim.change(section, "Misc_VirtualSize", "I", lambda size: size + 12)


@fault(RELOCATED, "one address is not relocated")
def _(victim):
    slot = victim.image.record.GuardCFCheckFunctionPointer - victim.image.base
    victim.put(relocation(victim, lambda rva: rva == slot), "H", 0)


@fault(RELOCATED, "one address in the code is not relocated", words=(4,))
def _(victim):
    victim.put(relocation(victim, lambda rva: victim.image.is_in(".text", rva)), "H", 0)


# Control Flow Guard.
GUARD = "the load-configuration record lists the exports and the entry as call targets"
for _name in (
    "Size",
    "GuardFlags",
    "SecurityCookie",
    "GuardCFDispatchFunctionPointer",
    "SEHandlerTable",
):
    fault(GUARD, f"{_name} is wrong")(
        lambda victim, name=_name: victim.change(victim.image.record, name, "I", lambda value: value + 16)
    )


@fault(GUARD, "a target is missing")
def _(victim):
    victim.change(victim.image.record, "GuardCFFunctionCount", "I", lambda count: count - 1)


@fault(GUARD, "a target is another function's middle")
def _(victim):
    offset = victim.at(victim.image.record.GuardCFFunctionTable)
    victim.put(offset, "I", victim.get(offset, "I") + 1)


@fault("every function that is called from outside begins at a multiple of 16", "one begins elsewhere")
def _(victim):
    starts = {unwind.begin for unwind in victim.image.unwinds}
    targets = victim.image.guard_targets
    for _, slot, address in victim.exports():
        if address in starts or victim.padding(address) == address:
            continue
        rva = address - victim.image.base
        victim.put(victim.at(slot), "I", rva - 1)
        guard = victim.image.record.GuardCFFunctionTable + 4 * targets.index(rva)
        victim.put(victim.at(guard), "I", rva - 1)
        text = victim.image.sections[".text"].VirtualAddress
        victim.release.symbols = [
            symbol for symbol in victim.release.symbols if symbol[:2] != (1, rva - text)
        ]
        return
    raise StopIteration


# Code.
INSTRUCTIONS = "no instruction is newer than SSE2"
NEWER = {
    "blsr": "c4e278f3c9",
    "mulx": "c4e27bf6c1",
    "shlx": "c4e271f7c1",
    "vpxor": "c5f9efc1",
    "haddps": "f20f7cc1",
    "pshufb": "660f3800c1",
    "pmulld": "660f3840c1",
    "crc32": "f20f38f1c1",
    "popcnt": "f30fb8c1",
    "lzcnt": "f30fbdc1",
    "movbe": "0f38f001",
    "adcx": "660f38f6c1",
    "rdrand": "0fc7f0",
    "fld1": "d9e8",
    "emms": "0f77",
    "rdtsc": "0f31",
}


@fault(INSTRUCTIONS, ", ".join(NEWER))
def _(victim):
    """Each in the place of an instruction that gives eax, ecx or edx a number."""
    places = (
        instruction
        for instruction in victim.instructions("mov")
        if victim.code_of(instruction)[0] in b"\xb8\xb9\xba" and instruction.operands[1].value < 0x10000
    )
    for code in NEWER.values():
        victim.write(next(places), bytes.fromhex(code))
    return NEWER


WAYS = "every way out of a function restores the stack pointer and the registers to be kept"


@fault(WAYS, "a register is not restored")
def _(victim):
    instruction = next(
        instruction for instruction in victim.instructions("pop") if victim.code_of(instruction) == b"\x5b"
    )
    victim.write(instruction, b"\x59")


@fault(WAYS, "the stack pointer is not restored")
def _(victim):
    instruction = next(
        instruction
        for instruction in victim.instructions("add")
        if instruction.operands[0].register == "sp"
        and victim.following(instruction).mnemonic in ("pop", "ret")
        and victim.code_of(instruction)[-2] in (0xC4, 0xC0 | 4)
    )
    offset = victim.at(instruction.end - 1)
    victim.put(offset, "B", victim.get(offset, "B") + victim.word)


def reframe(victim, size):
    """Gives the frame of a function that keeps nothing and calls others another size."""
    for unwind in victim.image.unwinds:
        body = [
            instruction
            for instruction in victim.instructions()
            if unwind.begin <= instruction.address < unwind.end
        ]
        moves = [
            instruction
            for instruction in body
            if instruction.mnemonic in ("sub", "add") and instruction.operands[0].register == "sp"
        ]
        calls = any(instruction.mnemonic == "call" for instruction in body)
        if len(unwind.steps) == 1 and unwind.steps[0][1] == 0x28 and calls:
            break
    else:
        raise StopIteration
    for instruction in moves:
        victim.put(victim.at(instruction.end - 1), "B", size)
    (info,) = [
        info
        for begin, _, info in struct.iter_unpack(
            "<3I",
            victim.image.bytes_at(
                victim.image.directory("EXCEPTION").VirtualAddress,
                victim.image.directory("EXCEPTION").Size,
            ),
        )
        if begin + victim.image.base == unwind.begin
    ]
    victim.put(victim.at(victim.image.base + info) + 5, "B", 2 | (size // 8 - 1) << 4)


@fault(WAYS, "the stack is misaligned at a call", words=(8,))
def _(victim):
    reframe(victim, 0x30)


@fault(WAYS, "a call gets no home space", words=(8,))
def _(victim):
    reframe(victim, 0x18)


@fault(
    "every way out of an export takes its arguments off the stack, or leaves them to the caller",
    "one takes more",
)
def _(victim):
    for name, _, address in victim.exports():
        for instruction in victim.instructions("ret"):
            place = victim.at(instruction.address)
            if instruction.address < address or instruction.address > address + 200:
                continue
            if victim.word == 4 and instruction.operands and name in EXPORTS:
                return victim.put(place + 1, "H", instruction.operands[0].value + 4)
            if victim.word == 8 and victim.data[place + 1 : place + 3] == b"\xcc\xcc":
                return victim.put(place, "BH", 0xC2, 8)
    raise StopIteration


@fault("all code belongs to a function", "code that nothing leads to")
def _(victim):
    for _, _, address in victim.exports():
        begin = victim.padding(address)
        if address - begin >= 2:
            victim.put(victim.at(begin), "BB", 0x31, 0xC0)
            return
    raise StopIteration


UNWINDING = "unwind data tell where each function keeps the stack and the registers"


def unwind_info(victim, test):
    """The place of the first unwind data of which a test holds."""
    directory = victim.image.directory("EXCEPTION")
    raw = victim.image.bytes_at(directory.VirtualAddress, directory.Size)
    for (_, _, info), unwind in zip(struct.iter_unpack("<3I", raw), victim.image.unwinds):
        if test(unwind):
            return victim.at(victim.image.base + info)
    raise StopIteration


@fault(UNWINDING, "a function has none", words=(8,))
def _(victim):
    directory = victim.image.directory("EXCEPTION")
    index = next(i for i, unwind in enumerate(victim.image.unwinds) if unwind.steps)
    begin, end = (
        victim.at(victim.image.base + directory.VirtualAddress) + at for at in (12 * index, directory.Size)
    )
    victim.data[begin:end] = victim.data[begin + 12 : end] + bytes(12)
    victim.put(directory.get_file_offset() + 4, "I", directory.Size - 12)


@fault(UNWINDING, "another version", words=(8,))
def _(victim):
    victim.put(unwind_info(victim, lambda unwind: True), "B", 2)


@fault(UNWINDING, "another register is kept", words=(8,))
def _(victim):
    place = unwind_info(victim, lambda unwind: any(step[1:3] == (8, "bx") for step in unwind.steps))
    operations = range(place + 5, place + 5 + 2 * victim.get(place + 2, "B"), 2)
    victim.put(next(offset for offset in operations if victim.data[offset] == 0x30), "B", 0xF0)


@fault(UNWINDING, "another depth of the stack", words=(8,))
def _(victim):
    place = unwind_info(victim, lambda unwind: unwind.steps == [(4, 0x28, None, None)])
    victim.put(place + 5, "B", 0x32)


@fault(UNWINDING, "a prologue that is told too late", words=(8,))
def _(victim):
    place = unwind_info(victim, lambda unwind: unwind.steps == [(4, 0x28, None, None)])
    victim.put(place + 4, "B", 8)


# Symbols and resources.
@fault("the DLL is linked from src/ alone", "another object")
def _(victim):
    victim.release.modules.append("printf.obj")


RUNTIME = "no symbol belongs to a C runtime"


@fault(RUNTIME, "a function of one")
def _(victim):
    victim.release.symbols.append((2, 0, "_printf"))


@fault(RUNTIME, "an object asks for one")
def _(victim):
    victim.release.objects = [*victim.release.objects, b"/DEFAULTLIB:libcmt"]


VERSION = "the version block is the only resource and tells name, description and version"


@fault(VERSION, "another number")
def _(victim):
    victim.put(victim.data.find(b"\xbd\x04\xef\xfe") + 8, "I", 0x10003)


@fault(VERSION, "another text")
def _(victim):
    victim.replace("Utility library".encode("utf-16-le"), "Utility librarz".encode("utf-16-le"))
