"""The code of an image: its instructions, and what every way through a function does to the stack and to
the registers that a function must keep."""

import functools
import struct
from collections import namedtuple

import capstone
from capstone import x86

# Registers go by names that don't tell the width: "ax" is al, ax, eax and rax.
_LEGACY = ["ax", "cx", "dx", "bx", "sp", "bp", "si", "di"]
_NUMBERED = [f"r{number}" for number in range(8, 16)]
_XMM = [f"xmm{number}" for number in range(16)]
REGISTERS = _LEGACY + _NUMBERED  # in the order of their numbers
KEPT = {
    4: ["bx", "bp", "si", "di"],
    8: ["bx", "bp", "si", "di", *_NUMBERED[4:], *_XMM[6:]],
}
HOME_SPACE = 32  # that a 64-bit function gives each function it calls

_WHOLE = {f"{register}{part}": register for register in _NUMBERED for part in ("", "d", "w", "b")}
_WHOLE |= {register: register for register in _XMM}
for _register in _LEGACY:
    _WHOLE |= {f"{prefix}{_register}": _register for prefix in ("", "e", "r")}
    _WHOLE[_register.rstrip("x") + "l"] = _register
    _WHOLE[_register.rstrip("x") + "h"] = _register

_MOVES = {"mov", "movabs", "movaps", "movups", "movdqa", "movdqu", "movapd", "movupd"}

Operand = namedtuple("Operand", "kind register value base index size writes")
Instruction = namedtuple(
    "Instruction", "address end mnemonic text groups operands written jumps returns absolutes"
)


@functools.cache
def _decoder(word):
    decoder = capstone.Cs(capstone.CS_ARCH_X86, capstone.CS_MODE_64 if word == 8 else capstone.CS_MODE_32)
    decoder.detail = True
    return decoder


def _operand(instruction, raw):
    writes = bool(raw.access & capstone.CS_AC_WRITE)
    if raw.type == x86.X86_OP_REG:
        name = instruction.reg_name(raw.reg)
        return Operand("register", _WHOLE.get(name), 0, None, None, raw.size, writes)
    if raw.type == x86.X86_OP_IMM:
        return Operand("number", None, raw.imm, None, None, raw.size, False)
    base = instruction.reg_name(raw.mem.base) if raw.mem.base else None
    index = instruction.reg_name(raw.mem.index) if raw.mem.index else None
    value = raw.mem.disp
    if base == "rip":
        base, value = None, value + instruction.address + instruction.size
    return Operand("memory", None, value, _WHOLE.get(base, base), _WHOLE.get(index, index), raw.size, writes)


@functools.lru_cache(maxsize=65536)
def decode(word, address, code):
    """The instruction at the front of `code`; None if there is none."""
    found = next(_decoder(word).disasm(code, address, 1), None)
    if found is None:
        return None
    names = {found.reg_name(register) for register in found.regs_access()[1]}
    return Instruction(
        address=found.address,
        end=found.address + found.size,
        mnemonic=found.mnemonic,
        text=f"{found.mnemonic} {found.op_str}".strip(),
        groups=frozenset(found.groups),
        operands=tuple(_operand(found, raw) for raw in found.operands),
        written=frozenset(_WHOLE[name] for name in names if name in _WHOLE),
        jumps=found.group(x86.X86_GRP_JUMP),
        returns=found.group(x86.X86_GRP_RET),
        # Where the instruction holds whole words, which may be addresses.
        absolutes=tuple(
            found.address + offset
            for offset, size in (
                (found.disp_offset, found.disp_size),
                (found.imm_offset, found.imm_size),
            )
            if offset != 0 and size == 4
        ),
    )


@functools.lru_cache(maxsize=8)
def sweep(word, address, code):
    """All instructions of a section by their addresses, and the complaint where one can't be read."""
    instructions = {}
    at = 0
    while at < len(code):
        found = decode(word, address + at, code[at : at + 15])
        if found is None:
            return instructions, [f"no instruction stands at {address + at:#x}"]
        instructions[found.address] = found
        at += found.end - found.address
    return instructions, []


class Unwind:
    """What the unwind data say of one function: the depth of its stack and where it keeps registers."""

    def __init__(self, begin, end, info):
        self.begin, self.end = begin, end
        version_flags, self.prologue, count, self.frame = struct.unpack_from("<4B", info)
        self.complaint = None
        if version_flags != 1:
            self.complaint = f"unwind data of {begin:#x} have version and flags {version_flags:#x}"
        if len(info) < 4 + 2 * count:
            self.complaint = f"unwind data of {begin:#x} have no end"
            count = 0
        self.raw = begin, end, info[: 4 + 2 * count]
        self.steps = []  # offset of the next instruction, bytes of stack, register, its offset in the frame
        slots = iter(struct.unpack_from(f"<{count}H", info, 4))
        for slot in slots:
            self._read(slot & 0xFF, slot >> 8 & 0xF, slot >> 12, slots)
        self.steps.reverse()

    def _read(self, offset, operation, number, slots):
        wide = lambda: next(slots, 0) | next(slots, 0) << 16
        if operation == 0:
            self.steps.append((offset, 8, REGISTERS[number], None))
        elif operation == 1:
            self.steps.append((offset, 8 * next(slots, 0) if number == 0 else wide(), None, None))
        elif operation == 2:
            self.steps.append((offset, 8 * number + 8, None, None))
        elif operation in (4, 5):
            place = 8 * next(slots, 0) if operation == 4 else wide()
            self.steps.append((offset, 0, REGISTERS[number], place))
        elif operation in (8, 9):
            place = 16 * next(slots, 0) if operation == 8 else wide()
            self.steps.append((offset, 0, _XMM[number], place))
        else:
            self.complaint = f"unwind data of {self.begin:#x} have the operation {operation}"

    @functools.cache
    def at(self, address):
        """The stack's depth below the return address there, and where registers are kept, from the top."""
        done = [step for step in self.steps if step[0] <= address - self.begin]
        depth, kept = 0, {}
        for _, size, register, place in done:
            depth += size
            if register and place is None:
                kept[register] = -depth
        for _, _, register, place in done:
            if register and place is not None:
                kept[register] = place - depth
        return depth, kept


class State:
    """Known values of registers and of words on the stack, by their distance to the return address.

    A value is ("entry", register), what the register held at the function's entry; ("stack", ground, offset);
    ("import", name); ("address", address); ("step", table) or ("jump", table) for a jump by table. The
    ground is 0, or the address of the instruction that aligned the stack pointer."""

    def __init__(self, registers, slots):
        self.registers, self.slots = registers, slots

    def copy(self):
        return State(dict(self.registers), dict(self.slots))

    def joined(self, other):
        common = lambda one, two: {key: one[key] for key in one if key in two and one[key] == two[key]}
        return State(common(self.registers, other.registers), common(self.slots, other.slots))

    def __eq__(self, other):
        return self.registers == other.registers and self.slots == other.slots

    @property
    def top(self):
        return self.registers.get("sp")

    def depth(self):
        """Bytes on the stack below the return address; None if that isn't known."""
        return -self.top[2] if self.top and self.top[1] == 0 else None

    def place(self, operand, extra=0):
        """Where on the stack a memory operand stands; None if it doesn't, or if that isn't known."""
        base = self.registers.get(operand.base)
        if operand.index is not None or base is None or base[0] != "stack":
            return None
        return base[1], base[2] + operand.value + extra

    def set(self, register, value):
        if value is None:
            self.registers.pop(register, None)
        else:
            self.registers[register] = value

    def forget(self, place, size):
        ground, offset = place
        self.slots = {
            key: value
            for key, value in self.slots.items()
            if key[0] != ground
            or key[1] + 16 <= offset
            or key[1] >= offset + size
            or (value[1] not in _XMM and key[1] + 8 <= offset)
        }

    def store(self, place, size, value):
        self.forget(place, size)
        if value is not None:
            self.slots[place] = value

    def move_top(self, value):
        """What lies below the stack pointer is lost."""
        self.set("sp", value)
        if value is not None:
            self.slots = {
                key: kept for key, kept in self.slots.items() if key[0] != value[1] or key[1] >= value[2]
            }


class Code:
    """Follows the functions of an image. `imports` gives the name and the bytes of arguments of each
    slot of the import table; `table_word` reads a number from the read-only data, or gives None."""

    def __init__(self, word, instructions, starts, imports, table_word, unwinds=()):
        self.word, self.instructions, self.imports = word, instructions, imports
        self.read_table, self.table_words = table_word, {}
        self.unwinds = {unwind.begin: unwind for unwind in unwinds}
        called = {
            instruction.operands[0].value
            for instruction in instructions.values()
            if instruction.mnemonic == "call" and instruction.operands[0].kind == "number"
        }
        self.starts = set(starts) | called | set(self.unwinds)
        self.referred = {
            operand.value
            for instruction in instructions.values()
            for operand in instruction.operands
            if operand.kind == "memory" and operand.base is None
        }
        self.taken = {}  # by function: the bytes that its ways out take off the stack
        self.reached = set()
        self.complaints = {}  # by kind ("ways", "unwind")
        todo = sorted(self.starts)
        while todo:
            for start in todo:
                self.pops(start)
            todo = sorted(self.starts - self.taken.keys())

    def complain(self, kind, address, text):
        self.complaints.setdefault(kind, {}).setdefault((address, text))

    def told(self, kind):
        return [f"{address:#x}: {text}" for address, text in self.complaints.get(kind, {})]

    def pops(self, start):
        """The bytes that a function takes off the stack; None if its ways out differ."""
        if start not in self.taken:
            self.taken[start] = set()  # for a function that leads to itself
            _Function(self, start).follow()
        taken = self.taken[start]
        return next(iter(taken)) if len(taken) == 1 else None

    def entries_of(self, table, size, base):
        """The addresses that a table of jumps leads to: up to the next thing that code refers to."""
        at = table
        while at == table or at not in self.referred:
            number = self.table_words[at, size] = self.read_table(at, size)
            if number is None or (base + number) % (1 << 8 * self.word) not in self.instructions:
                return
            yield (base + number) % (1 << 8 * self.word)
            at += size


class _Function:
    def __init__(self, code, start):
        self.code, self.start, self.word = code, start, code.word
        self.unwind = code.unwinds.get(start)
        self.kept = KEPT[self.word]
        self.tells = False

    def complain(self, kind, address, text):
        if self.tells:
            self.code.complain(kind, address, text)

    def follow(self):
        """Finds the state in front of each instruction, joined over all ways to it, and then looks at it."""
        registers = {register: ("entry", register) for register in self.kept}
        states = {self.start: State(registers | {"sp": ("stack", 0, 0)}, {})}
        todo = [self.start]
        while todo:
            at = todo.pop()
            for target, state in self.step(at, states[at].copy()):
                if target in states:
                    state = states[target].joined(state)
                    if state == states[target]:
                        continue
                states[target] = state
                todo.append(target)
        self.tells = True
        self.code.reached |= states.keys()
        for at, state in sorted(states.items()):
            if self.word == 8:
                self.compare(at, state)
            self.step(at, state.copy())

    # What follows an instruction: a list of the next addresses, each with the state there.
    def step(self, at, state):
        instruction = self.code.instructions.get(at)
        if instruction is None or at in self.code.starts and at != self.start:
            self.complain("ways", at, "a function leads to where it must not")
            return []
        if instruction.mnemonic in ("int3", "ud2", "hlt"):
            return []
        if state.top is None:
            self.complain("ways", at, "the stack's depth isn't known")
            return []
        if instruction.returns:
            size = instruction.operands[0].value if instruction.operands else 0
            return self.leave(at, state, size)
        if instruction.jumps:
            return self.jump(instruction, state)
        if instruction.mnemonic == "call":
            return self.call(instruction, state)
        self.work(instruction, state)
        return [(instruction.end, state)]

    def leave(self, at, state, size):
        """A way out: the stack is as at the entry, and so are the registers to be kept."""
        if state.top != ("stack", 0, 0):
            self.complain("ways", at, "the function ends without its stack pointer restored")
        for register in self.kept:
            if state.registers.get(register) != ("entry", register):
                self.complain("ways", at, f"the function ends without {register} restored")
        if size is None:
            self.complain("ways", at, "the function ends with an unknown function")
        else:
            self.code.taken[self.start].add(size)
        return []

    def is_outside(self, address):
        unwind = self.unwind
        return (
            address in self.code.starts
            and address != self.start
            or (unwind is not None and not unwind.begin <= address < unwind.end)
        )

    def jump(self, instruction, state):
        operand = instruction.operands[0]
        if operand.kind == "number":
            if not self.is_outside(operand.value):
                ways = [(operand.value, state)]
            else:
                if operand.value in self.code.instructions:
                    self.code.starts.add(operand.value)
                ways = self.leave(instruction.address, state, self.code.pops(operand.value))
            if instruction.mnemonic != "jmp":
                ways.append((instruction.end, state.copy()))
            return ways
        target = self.target(operand, state)
        if target is not None and target[0] == "import":
            return self.leave(instruction.address, state, target[2])
        entries = []
        if target is not None and target[0] == "jump":
            entries = list(self.code.entries_of(target[1], 4, target[1]))
        elif self.word == 4 and operand.kind == "memory" and operand.base is None and operand.index:
            entries = list(self.code.entries_of(operand.value, 4, 0))
        if not entries:
            self.complain("ways", instruction.address, f"jumps to an unknown place: {instruction.text}")
        return [(entry, state.copy()) for entry in entries]

    def target(self, operand, state):
        """What is known of the place that an indirect jump or call leads to."""
        if operand.kind == "register":
            return state.registers.get(operand.register)
        if operand.base is None and operand.index is None:
            return self.import_at(operand.value)
        return state.slots.get(state.place(operand))

    def import_at(self, address):
        found = self.code.imports.get(address)
        return ("import", *found) if found else None

    def call(self, instruction, state):
        operand = instruction.operands[0]
        if operand.kind == "number":
            pops = self.code.pops(operand.value)
        else:
            target = self.target(operand, state)
            pops = target[2] if target is not None and target[0] == "import" else None
        if pops is None:
            self.complain("ways", instruction.address, f"calls an unknown function: {instruction.text}")
            pops = 0
        _, ground, offset = state.top
        if self.word == 8:
            if (offset + 8) % 16 != 0:
                self.complain("ways", instruction.address, "the stack isn't aligned at a call")
            if offset > -HOME_SPACE:
                self.complain("ways", instruction.address, "the function called gets no home space")
            state.forget((ground, offset), HOME_SPACE)
        state.registers = {
            register: value for register, value in state.registers.items() if register in (*self.kept, "sp")
        }
        state.move_top(("stack", ground, offset + pops))
        return [(instruction.end, state)]

    def work(self, instruction, state):
        """An instruction that leads to the next one."""
        operands, word = instruction.operands, self.word
        first, second = (
            operands[0] if operands else None,
            operands[1] if len(operands) > 1 else None,
        )
        name = instruction.mnemonic
        _, ground, offset = state.top
        if name == "push":
            state.move_top(("stack", ground, offset - word))
            value = state.registers.get(first.register) if first.kind == "register" else None
            state.store((ground, offset - word), word, value)
        elif name == "pop" and first.kind == "register":
            value = state.slots.get((ground, offset))
            state.move_top(("stack", ground, offset + word))
            state.set(first.register, value)
        elif name in _MOVES and first.kind == "memory":
            place = state.place(first)
            if place is not None:
                whole = second.kind == "register" and first.size in (word, 16)
                state.store(place, first.size, state.registers.get(second.register) if whole else None)
        elif name in _MOVES and second.kind in ("register", "memory"):
            self.load(first, second, state)
        elif name == "lea":
            place = state.place(second)
            value = ("stack", *place) if place else None
            if second.base is None and second.index is None:
                value = ("address", second.value)
            self.assign(first, value, state)
        elif name in ("add", "sub") and first.kind == "register" and second.kind == "number":
            value = state.registers.get(first.register)
            change = second.value if name == "add" else -second.value
            known = value is not None and value[0] == "stack" and first.size == word
            self.assign(first, ("stack", value[1], value[2] + change) if known else None, state)
        elif name == "and" and first.register == "sp" and second.kind == "number":
            self.assign(first, ("stack", instruction.address, 0), state)
        elif name == "movsxd" and second.kind == "memory" and second.index and second.value == 0:
            value = state.registers.get(second.base)
            self.assign(first, ("step", value[1]) if value and value[0] == "address" else None, state)
        elif name == "add" and second.kind == "register":
            values = state.registers.get(first.register), state.registers.get(second.register)
            pair = sorted(value for value in values if value)
            jumps = [value[0] for value in pair] == ["address", "step"] and pair[0][1] == pair[1][1]
            self.alter(instruction, state)
            if jumps:
                self.assign(first, ("jump", pair[0][1]), state)
        else:
            self.alter(instruction, state)

    def load(self, target, source, state):
        whole = target.size in (self.word, 16)
        if source.kind == "register":
            value = state.registers.get(source.register)
        elif source.base is None and source.index is None:
            value = self.import_at(source.value)
        else:
            value = state.slots.get(state.place(source))
        self.assign(target, value if whole else None, state)

    def assign(self, target, value, state):
        if target.register == "sp":
            state.move_top(value if value and value[0] == "stack" else None)
        else:
            state.set(target.register, value)

    def alter(self, instruction, state):
        """An instruction of which only what it writes is of interest."""
        for register in instruction.written:
            state.set(register, None)
        for operand in instruction.operands:
            place = state.place(operand) if operand.kind == "memory" and operand.writes else None
            if place is not None:
                state.forget(place, operand.size)

    # 64 bits: what the unwind data say of the place in front of an instruction.
    def compare(self, at, state):
        depth, kept = self.unwind.at(at) if self.unwind is not None else (0, {})
        if state.depth() != depth:
            if self.unwind is None:
                self.complain("unwind", self.start, "moves the stack pointer without unwind data")
            elif not self.is_epilogue(at):
                self.complain("unwind", at, f"unwind data tell of {depth} bytes on the stack")
            return
        for register in self.kept:
            is_kept = register in kept and state.slots.get((0, kept[register])) == (
                "entry",
                register,
            )
            if register in kept and not is_kept:
                self.complain("unwind", at, f"{register} isn't kept where the unwind data say")
            elif not is_kept and state.registers.get(register) != ("entry", register):
                self.complain("unwind", at, f"{register} is changed, and the unwind data don't tell of it")
        if self.unwind is None and self.code.instructions[at].mnemonic == "call":
            self.complain("unwind", at, "calls a function without unwind data")

    def is_epilogue(self, at):
        """Pops and the end of the function are all that the platform takes for an epilogue."""
        while (instruction := self.code.instructions.get(at)) and instruction.mnemonic == "pop":
            at = instruction.end
        if instruction is None:
            return False
        if instruction.mnemonic == "jmp":
            operand = instruction.operands[0]
            return operand.kind != "number" or self.is_outside(operand.value)
        return instruction.returns
