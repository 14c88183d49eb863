"""What must hold of a release. A check is a function that takes the release and gives complaints."""

import os
import pathlib
import re
import struct
import uuid

import pefile
from capstone import x86

from image import BASE_ORDINAL, EXPORTS, IMPORTS

CHECKS = {}


def check(name):
    def add(function):
        CHECKS[name] = function
        return function

    return add


def differences(what, found, wanted):
    """What two collections have and lack, as complaints."""
    found, wanted = set(found), set(wanted)
    for item in sorted(found - wanted, key=str):
        yield f"{what}: {item} is too much"
    for item in sorted(wanted - found, key=str):
        yield f"{what}: {item} is missing"


def unequal(what, found, wanted):
    if found != wanted:
        yield f"{what}: {found}, not {wanted}"


def outcome(function, release):
    """The complaints of a check. An image that can't even be read gives one."""
    try:
        return list(function(release))
    except (
        AttributeError,
        IndexError,
        KeyError,
        struct.error,
        UnicodeDecodeError,
        pefile.PEFormatError,
    ) as error:
        return [f"can't be read: {error!r}"]


# Exports.
@check("the headers declare the table of exports")
def declared_exports(release):
    found = {(name, int(ordinal), int(size)) for ordinal, name, size in release.declared_exports}
    yield from differences("exports", found, ((name, *row) for name, row in EXPORTS.items()))


@check("the table of exports has the right slots, and names in order")
def export_table(release):
    table = release.image.export_table
    yield from unequal("name", release.image.text_at(table.Name), "TAVKIT.DLL")
    yield from unequal("ordinal base", table.Base, BASE_ORDINAL)
    last = max(ordinal for ordinal, _ in EXPORTS.values())
    yield from unequal("slots", table.NumberOfFunctions, last - BASE_ORDINAL + 1)
    yield from unequal("names", table.NumberOfNames, len(EXPORTS))
    names = release.image.export_names
    for one, next_one in zip(names, names[1:]):
        if not one.encode() < next_one.encode():
            yield f"{one} precedes {next_one}"


@check("exports have their names and ordinals, and all other slots are holes")
def exports(release):
    found = release.image.exports
    wanted = ((ordinal, name) for name, (ordinal, _) in EXPORTS.items())
    yield from differences("exports", (key for key in found if found[key] != 0), wanted)
    yield from unequal("functions", len(set(found.values())), len(found))


@check("the import library gives the exports their names")
def import_library(release):
    width, kinds = release.width, {0: "code", 1: "data", 2: "constant"}
    symbols, index, machines = [], [], set()
    for name, member in release.library_members():
        if name == "/" and not index:
            (count,) = struct.unpack_from(">I", member)
            index = member[4 + 4 * count :].decode().split("\0")[:count]
        elif member[:4] == b"\0\0\xff\xff":
            machine, ordinal, flags = struct.unpack_from("<H8xHH", member, 6)
            symbol, module = member[20:].decode().split("\0")[:2]
            machines.add(machine)
            symbols.append((symbol, module, kinds[flags & 3], flags >> 2))
        elif not name.startswith("/"):
            machines.add(struct.unpack_from("<H", member)[0])
    yield from unequal("machines", machines, {width.machine})
    # By which name the DLL is asked: the symbol itself, or the symbol without its mark and its bytes.
    wanted = {
        (f"_{name}@{size}", "TAVKIT.DLL", "code", 3) if width.word == 4 else (name, "TAVKIT.DLL", "code", 1)
        for name, (_, size) in EXPORTS.items()
    }
    yield from differences("import library", symbols, wanted)
    names = {symbol for symbol, *_ in wanted}
    found = {name for name in index if "ut" in name and "IMPORT_DESCRIPTOR" not in name}
    yield from differences(
        "symbols of the import library", found, names | {f"__imp_{name}" for name in names}
    )


# Imports. An operation that is declared and never called would not be among them.
@check("the platform's header declares the table of imports")
def declared_imports(release):
    found = {(f"{module}.dll", name, int(size)) for module, name, size in release.declared_imports}
    yield from differences("imports", found, ((*key, size) for key, size in IMPORTS.items()))


@check("the DLL imports the table, and nothing else")
def imports(release):
    yield from differences("imports", release.image.imports, IMPORTS)


@check("the code uses every import")
def used_imports(release):
    mentioned = {
        operand.value
        for instruction in release.image.instructions[0].values()
        for operand in instruction.operands
        if operand.kind == "memory"
    }
    for name, address in release.image.imports.items():
        if address not in mentioned:
            yield f"{name} is not used"


# Headers.
@check("machine, flags and versions")
def headers(release):
    width, file, header = release.width, release.image.pe.FILE_HEADER, release.image.header
    yield from unequal("machine", hex(file.Machine), hex(width.machine))
    yield from unequal("characteristics", hex(file.Characteristics), hex(width.characteristics))
    yield from unequal("magic", hex(header.Magic), "0x20b" if width.word == 8 else "0x10b")
    yield from unequal("DLL flags", hex(header.DllCharacteristics), hex(width.dll_flags))
    yield from unequal("subsystem", header.Subsystem, pefile.SUBSYSTEM_TYPE["IMAGE_SUBSYSTEM_WINDOWS_GUI"])
    for part, version in (
        ("Subsystem", width.system),
        ("OperatingSystem", width.system),
        ("Image", (1, 2)),
    ):
        found = getattr(header, f"Major{part}Version"), getattr(header, f"Minor{part}Version")
        yield from unequal(f"{part} version", found, version)
    yield from unequal("COFF symbols", file.NumberOfSymbols, 0)


# Thread-local storage, bound and delayed imports, certificates: none of them is there.
@check("there is no directory but those that are needed")
def directories(release):
    image = release.image
    present = [entry for entry in image.header.DATA_DIRECTORY if entry.VirtualAddress or entry.Size]
    names = [entry.name.removeprefix("IMAGE_DIRECTORY_ENTRY_") for entry in present]
    yield from unequal("directories", " ".join(names), release.width.directories)
    for entry in present:
        if not any(image.is_in(name, entry.VirtualAddress, entry.Size) for name in image.sections):
            yield f"{entry.name} lies outside the sections"
    yield from unequal("bytes after the last section", image.pe.get_overlay(), None)


@check("the checksum is right")
def checksum(release):
    yield from unequal("checksum", release.image.header.CheckSum, release.image.checksum())


@check("the DLL is small")
def size(release):
    if len(release.image.data) >= release.width.limit:
        yield f"{len(release.image.data)} bytes, not below {release.width.limit}"


# A digest stands for the time, and the symbols are named without a folder.
@check("the symbols are those of this DLL, named without a folder")
def symbols_named(release):
    entries = release.image.parsed("DEBUG")
    views = [entry.entry for entry in entries if entry.struct.Type == 2]
    yield from unequal(
        "names of symbols", [view.PdbFileName.rstrip(b"\0") for view in views], [b"TAVKIT.pdb"]
    )
    for view in views:
        guid = uuid.UUID(
            bytes_le=struct.pack("<IHH", view.Signature_Data1, view.Signature_Data2, view.Signature_Data3)
            + release.image.bytes_at(entries[0].struct.AddressOfRawData + 12, 8)
        )
        yield from unequal("GUID of the symbols", str(guid).upper(), release.guid)


@check("neither time nor folder of the build stands in the release")
def anonymous(release):
    entries = release.image.parsed("DEBUG")
    yield from unequal("kinds of debug data", [entry.struct.Type for entry in entries], [2, 16])
    times = {entry.struct.TimeDateStamp for entry in entries} | {release.image.pe.FILE_HEADER.TimeDateStamp}
    yield from unequal("digests", len(times), 1)
    folder = os.getcwd()
    for name, data in release.files.items():
        for encoding in ("utf-8", "utf-16-le"):
            if folder.encode(encoding) in data:
                yield f"{name} names the folder {folder}"


# Sections.
@check("code can't be written, data can't be run, no section is shared")
def rights(release):
    def letters(section):
        flags = (
            ("r", section.IMAGE_SCN_MEM_READ),
            ("w", section.IMAGE_SCN_MEM_WRITE),
            ("x", section.IMAGE_SCN_MEM_EXECUTE),
            ("s", section.IMAGE_SCN_MEM_SHARED),
        )
        return "".join(letter for letter, is_set in flags if is_set)

    found = " ".join(f"{name}:{letters(section)}" for name, section in release.image.sections.items())
    yield from unequal("sections", found, release.width.sections)


# Threads share nothing that can be written but one pointer.
@check("the one thing that can be written is the module handle")
def writable(release):
    sections = list(release.image.sections)
    yield from unequal("bytes of .data", release.image.sections[".data"].Misc_VirtualSize, release.width.word)
    found = [name.split("@")[0] for section, _, name in release.symbols if sections[section - 1] == ".data"]
    yield from unequal("symbols in .data", found, ["?g_hModule"])


@check("relocations are of one kind and change code and read-only data alone")
def relocations(release):
    image, width = release.image, release.width
    yield from unequal("kinds of relocations", {kind for _, kind, _ in image.relocations}, {width.relocation})
    for rva, _, _ in image.relocations:
        if not image.is_in(".rdata", rva, width.word) and not (
            width.word == 4 and image.is_in(".text", rva, width.word)
        ):
            yield f"a relocation changes {rva:#x}"


@check("every address in the code and in the load-configuration record is relocated")
def relocated(release):
    image, word = release.image, release.width.word
    kind = "Q" if word == 8 else "I"
    places = [
        place - image.base
        for instruction in image.instructions[0].values()
        for place in instruction.absolutes
        if word == 4
    ]
    record = image.record
    places += [
        image.pe.get_rva_from_offset(record.get_field_absolute_offset(field))
        for field in ("GuardCFCheckFunctionPointer", "GuardCFFunctionTable")
    ] + [record.GuardCFCheckFunctionPointer - image.base]
    changed = {rva for rva, _, _ in image.relocations}
    for rva in places:
        (value,) = image.numbers(rva, 1, kind)
        if image.base <= value < image.base + image.header.SizeOfImage and rva not in changed:
            yield f"the address at {rva:#x} is not relocated"


# Control Flow Guard.
@check("the load-configuration record lists the exports and the entry as call targets")
def guard(release):
    image, record, width = release.image, release.image.record, release.width
    yield from unequal("size of the record", record.Size, width.record)
    yield from unequal("guard's flags", hex(record.GuardFlags), "0x500")
    for field in (
        "SecurityCookie",
        "SEHandlerTable",
        "SEHandlerCount",
        "GuardCFDispatchFunctionPointer",
    ):
        yield from unequal(field, getattr(record, field), 0)
    if not image.is_in(".rdata", record.GuardCFCheckFunctionPointer - image.base, width.word):
        yield "the pointer to the check lies outside .rdata"
    stand_in = image.instructions[0].get(image.base + image.guard_stand_in)
    yield from unequal("code of the stand-in", stand_in and stand_in.text, "ret")
    yield from unequal("number of targets", len(image.guard_targets), len(set(image.entries)))
    yield from differences("targets", map(hex, image.guard_targets), map(hex, image.entries))
    yield from unequal("targets in order", image.guard_targets, sorted(image.guard_targets))


@check("every function that is called from outside begins at a multiple of 16")
def aligned(release):
    for rva in release.image.entries:
        if rva % 16 != 0:
            yield f"{rva:#x}"


# Code.
_GROUPS = {
    x86.X86_GRP_JUMP,
    x86.X86_GRP_CALL,
    x86.X86_GRP_RET,
    x86.X86_GRP_INT,
    x86.X86_GRP_BRANCH_RELATIVE,
    x86.X86_GRP_CMOV,
    x86.X86_GRP_SSE1,
    x86.X86_GRP_SSE2,
    x86.X86_GRP_MODE64,
    x86.X86_GRP_NOT64BITMODE,
}
# Instructions that belong to no extension, as far as compiled code has them.
_GENERAL = re.compile(
    r"(rep(ne)? )?(movs|stos|lods|scas|cmps)[bwdq]|mov([sz]xd?|abs)?|push|pop|lea|leave|xchg|bswap|nop|"
    r"add|adc|sub|sbb|cmp|test|and|or|xor|not|neg|inc|dec|i?mul|i?div|cbw|cwde?|cdqe?|cqo|"
    r"sh[lr]d?|sar|ro[lr]|rc[lr]|bt[crs]?|bs[fr]|set[a-z]+"
)
_EXTENDED = _GROUPS & {
    x86.X86_GRP_SSE1,
    x86.X86_GRP_SSE2,
    x86.X86_GRP_CMOV,
    x86.X86_GRP_JUMP,
    x86.X86_GRP_CALL,
    x86.X86_GRP_RET,
    x86.X86_GRP_INT,
}


@check("no instruction is newer than SSE2")
def instruction_set(release):
    instructions, complaints = release.image.instructions
    yield from complaints
    for address, instruction in instructions.items():
        if instruction.mnemonic == "tzcnt":
            continue  # bsf with a prefix that older processors ignore
        is_known = instruction.groups & _EXTENDED or _GENERAL.fullmatch(instruction.mnemonic)
        if not is_known or instruction.groups - _GROUPS:
            yield f"{address:#x}: {instruction.text}"


@check("every way out of a function restores the stack pointer and the registers to be kept")
def ways_out(release):
    yield from release.image.code.told("ways")


@check("every way out of an export takes its arguments off the stack, or leaves them to the caller")
def arguments_taken(release):
    image, word = release.image, release.width.word
    functions = [(name, rva, EXPORTS[name][1]) for (_, name), rva in image.exports.items() if name in EXPORTS]
    for name, rva, size in [*functions, ("DllMain", image.header.AddressOfEntryPoint, 12)]:
        taken = image.code.taken.get(image.base + rva, set())
        yield from unequal(f"bytes that {name} takes off", taken, {size if word == 4 else 0})


@check("all code belongs to a function")
def reached(release):
    code = release.image.code
    for address, instruction in release.image.instructions[0].items():
        if address not in code.reached and instruction.mnemonic not in ("nop", "int3"):
            yield f"{address:#x}: {instruction.text}"


@check("unwind data tell where each function keeps the stack and the registers")
def unwinding(release):
    if release.width.word == 8:
        unwinds = release.image.unwinds
        yield from (unwind.complaint for unwind in unwinds if unwind.complaint)
        for one, next_one in zip(unwinds, unwinds[1:]):
            if one.end > next_one.begin:
                yield f"unwind data of {one.begin:#x} and {next_one.begin:#x} overlap"
        for unwind in unwinds:
            if not unwind.begin < unwind.end or unwind.begin not in release.image.instructions[0]:
                yield f"unwind data of {unwind.begin:#x} belong to no function"
    yield from release.image.code.told("unwind")


# Symbols: all code comes from src/, and what a C runtime has is not asked for.
@check("the DLL is linked from src/ alone")
def modules(release):
    wanted = {str(path.relative_to("src")) for path in pathlib.Path("src").glob("*/*.cpp")}
    wanted |= {"* Linker *", "internal .obj file created from .res files"}
    own = re.compile(r"CMakeFiles\\tavkit\.dir\\src\\(.*)\.obj")
    found = {
        match[1].replace("\\", "/") if (match := own.fullmatch(module)) else module
        for module in release.modules
    }
    yield from differences("modules", found, wanted)


# Library and compiler give C++ names of `tavkit`, its texts and its constants. Of C's names the DLL has its
# entry and the three memory functions that the compiler calls, written in src/.
@check("no symbol belongs to a C runtime")
def runtime(release):
    mark = "_" if release.width.word == 4 else ""
    size = r"@\d+" if release.width.word == 4 else ""
    ours = re.compile(
        r"\?.*@tavkit@@.*|\?\?_C@.*|__xmm@[0-9a-f]+|"
        rf"__imp_{mark}[A-Za-z]+{size}|{mark}(ut[A-Za-z0-9_]+|DllMain){size}|{mark}mem(cpy|move|set)|"
        rf"{mark}(_load_config_used|__guard_(fids_table|check_icall_fptr))"
    )
    for _, _, name in release.symbols:
        if not ours.fullmatch(name):
            yield name
    for data in release.objects:
        if b"defaultlib" in data.lower():
            yield "an object asks for a default library"


@check("the version block is the only resource and tells name, description and version")
def version(release):
    pe = release.image.pe
    kinds = [
        (kind.id, sum(1 for name in kind.directory.entries for _ in name.directory.entries))
        for kind in release.image.parsed("RESOURCE").entries
    ]
    yield from unequal("resources", kinds, [(pefile.RESOURCE_TYPE["RT_VERSION"], 1)])
    (fixed,) = pe.VS_FIXEDFILEINFO
    for part in ("FileVersion", "ProductVersion"):
        found = getattr(fixed, f"{part}MS"), getattr(fixed, f"{part}LS")
        yield from unequal(part, found, (0x10002, 0x40000))
    texts = {
        key.decode(): value.decode()
        for block in pe.FileInfo[0]
        if block.Key == b"StringFileInfo"
        for strings in block.StringTable
        for key, value in strings.entries.items()
    }
    wanted = {
        "InternalName": "TAVKIT",
        "OriginalFilename": "TAVKIT.DLL",
        "FileDescription": "Utility library",
        "FileVersion": "1.02.004",
        "ProductVersion": "1.02.004",
    }
    yield from unequal("texts", texts, wanted)
