"""The work of script/mutate: finds the one-place changes, builds and tests each, and tells the figures."""
import argparse
import collections
import concurrent.futures
import json
import os
import queue
import random
import re
import resource
import shlex
import shutil
import subprocess
import sys
import time

NOT_COPIED = {".git", "build", "dist"}
WORK = os.path.abspath("build/mutate")
TREE = os.path.join(WORK, "tree")
BUILD = os.path.join(TREE, "build/native64")
MEMORY = 6 << 30  # a change may make a loop endless that allocates

Change = collections.namedtuple("Change", "file start end text kind")

# ---- Which changes there are ----

TOKEN = re.compile(
    r"""(?P<skip>//[^\n]*|/\*.*?\*/|^[ ]*\#(?:[^\n\\]|\\.)*)
      | (?P<string>"(?:[^"\\\n]|\\.)*")
      | (?P<char>'(?:[^'\\\n]|\\.)+')
      | (?P<number>\b(?:0[xX][0-9a-fA-F']+|[0-9][0-9']*)[uUlL]*)
      | (?P<name>[A-Za-z_]\w*)
      | (?P<op><<=|>>=|<=>|->|::|\+\+|--|&&|\|\||[-+*/%&|^!=<>]=|<<|>>|[-+*/%&|^!~<>=?:;,.(){}\[\]])""",
    re.VERBOSE | re.DOTALL | re.MULTILINE)
Token = collections.namedtuple("Token", "kind text start end")

BINARY = {"==": ["!="], "!=": ["=="], "<": ["<=", ">="], "<=": ["<", ">"], ">": [">=", "<="],
          ">=": [">", "<"], "&&": ["||"], "||": ["&&"], "+": ["-"], "-": ["+"], "*": ["+"], "/": ["*"],
          "%": ["/"], "&": ["|"], "|": ["&"], "^": ["|"], "<<": [">>"], ">>": ["<<"], "+=": ["-="],
          "-=": ["+="], "&=": ["|="], "|=": ["&="], "^=": ["|="], "<<=": [">>="], ">>=": ["<<="]}
OPENING = {"(": ")", "[": "]", "{": "}"}
DECLARES = re.compile(r"[\w>*&]\s+[*&]*\w+$|^const\b|^Text\{\}$")


def tokens_of(source):
    found = (Token(m.lastgroup, m.group(), m.start(), m.end()) for m in TOKEN.finditer(source))
    return [token for token in found if token.kind != "skip"]


def partners_of(tokens):
    """The index of the bracket that closes each opening one, and the bracket that each token stands in."""
    partners, around, open_ones = {}, [], []
    for i, token in enumerate(tokens):
        around.append(tokens[open_ones[-1]].text if open_ones else "{")
        if token.text in OPENING and token.kind == "op":
            open_ones.append(i)
        elif token.text in OPENING.values() and open_ones:
            partners[open_ones.pop()] = i
    return partners, around


def looks_swappable(first, second):
    """Whether two arguments seem to be of one type, by the prefixes of their names."""
    prefix = re.compile(r"[&*]?[a-z]*")
    return first != second and not DECLARES.search(first) and not DECLARES.search(second) and \
        prefix.match(first).group() == prefix.match(second).group()


def other_numbers(text):
    digits = text.rstrip("uUlL")
    suffix, value = text[len(digits):], int(digits.replace("'", ""), 0)
    write = hex if digits.lower().startswith("0x") else str
    others = {value + 1, max(value - 1, 0)} - {value}
    return [write(other) + suffix for other in sorted(others)]


def changes_of(file, source):
    tokens = tokens_of(source)
    partners, around = partners_of(tokens)
    heads = {closing: tokens[opening - 1].text for opening, closing in partners.items()}
    changes = []

    def change(kind, start, end, text):
        changes.append(Change(file, start, end, text, kind))

    def end_at_depth(i, stops):
        """The first token from i on, outside brackets, that is one of the stops or closes a bracket."""
        while i < len(tokens) and tokens[i].text not in stops and tokens[i].text not in OPENING.values():
            i = partners.get(i, i) + 1
        return i

    def arguments(opening):
        starts, i, closing = [], opening + 1, partners[opening]
        while i < closing:
            end = end_at_depth(i, {",", ";"})
            starts.append((tokens[i].start, tokens[end - 1].end))
            if tokens[end].text == ";":
                return []
            i = end + 1
        return starts

    for i, token in enumerate(tokens):
        before = tokens[i - 1] if i else token
        after = tokens[i + 1] if i + 1 < len(tokens) else token
        spaced = source[token.start - 1].isspace() and source[token.end:token.end + 1].isspace()
        if token.kind == "op" and token.text in BINARY and spaced and before.text != "operator":
            for other in BINARY[token.text]:
                change("operator", token.start, token.end, other)
        elif token.text in ("++", "--"):
            change("operator", token.start, token.end, "--" if token.text == "++" else "++")
        elif token.text in ("!", "~", "-") and token.kind == "op" and not spaced:
            change("operator", token.start, token.end, "")
        elif token.kind == "number":
            for other in other_numbers(token.text):
                change("constant", token.start, token.end, other)
        elif token.kind == "char":
            other = "'y'" if token.text == "'x'" else "'x'"
            change("constant", token.start, token.end, other)
        elif token.kind == "string" and len(token.text) > 2:
            change("constant", token.end - 2 if token.text[-3] != "\\" else token.end - 3, token.end - 1, "")
        elif token.text in ("true", "false"):
            change("constant", token.start, token.end, "false" if token.text == "true" else "true")
        elif token.text in ("if", "while"):
            opening = i + 1 + (after.text == "constexpr")
            if tokens[opening].text == "(":
                closing = partners[opening]
                start, end = tokens[opening].end, tokens[closing].start
                if ";" not in source[start:end]:
                    change("condition", start, end, "false")
                    if token.text == "if":
                        change("condition", start, end, "true")
        elif token.text == "?":
            colon = end_at_depth(i + 1, {":"})
            end = end_at_depth(colon + 1, {";", ","})
            first = source[after.start:tokens[colon - 1].end]
            second = source[tokens[colon + 1].start:tokens[end - 1].end]
            between = source[tokens[colon - 1].end:tokens[colon + 1].start]
            change("branches", after.start, tokens[end - 1].end, second + between + first)
        elif token.text == "return" and after.text not in (";", "{", "true", "false", "nullptr", "0"):
            end = end_at_depth(i + 1, {";"})
            change("result", after.start, tokens[end - 1].end, "{}")
        elif token.text == "(" and (before.kind == "name" or before.text == ">") and \
                not before.text.startswith("_mm_"):
            ends = arguments(i)
            for (s1, e1), (s2, e2) in zip(ends, ends[1:]):
                first, second = source[s1:e1], source[s2:e2]
                if looks_swappable(first, second):
                    change("arguments", s1, e2, second + source[e1:s2] + first)
        starts = before.text in (";", "{", "}", "else") or heads.get(i - 1) in ("if", "for", "while")
        begins = token.kind == "name" and token.text not in NO_EXPRESSION or token.text in ("*", "++", "--")
        if starts and begins and around[i] == "{":
            end = end_at_depth(i, {";"})
            statement = source[token.start:tokens[min(end, len(tokens) - 1)].start]
            if end < len(tokens) and tokens[end].text == ";" and not DECLARATION.match(statement):
                change("statement", token.start, tokens[end].start, "")
    return [c for c in changes if source[c.start:c.end] != c.text]


NO_EXPRESSION = {"return", "if", "else", "for", "while", "do", "switch", "case", "using", "namespace",
                 "template", "struct", "class", "enum", "extern", "static", "static_assert", "constexpr",
                 "const", "inline", "auto", "public", "private", "typedef", "friend", "explicit"}
DECLARATION = re.compile(r"[\w:]+(<[^;=]*>)?[ ]*[*&]?[ ][*&]?\w+[ ]*($|[={(;,\[])|[\w:<>]+\*? UT_API ")

# ---- One change, built and tested ----


class Builder:
    """Compiles the library's sources from folders of its own and links them with the tests' objects."""

    def __init__(self):
        with open(os.path.join(BUILD, "compile_commands.json")) as file:
            commands = json.load(file)
        prefix = os.path.join(TREE, "src") + os.sep
        self.compile = {os.path.relpath(c["file"], TREE): shlex.split(c["command"]) for c in commands
                        if c["file"].startswith(prefix) and "tavkit.dir" in c["command"]}
        link = ninja("-t", "commands", "library_tests").splitlines()[-1]
        self.link = shlex.split(link.removeprefix(": && ").removesuffix(" && :"))
        self.users = self.dependants()

    def dependants(self):
        """Which sources are compiled anew when a file changes."""
        users, source = collections.defaultdict(list), None
        for line in ninja("-t", "deps").splitlines():
            if line.startswith(" "):
                path = os.path.relpath(os.path.normpath(os.path.join(BUILD, line.strip())), TREE)
                if source and path.startswith("src" + os.sep):
                    users[path].append(source)
            else:
                match = re.match(r".*tavkit\.dir/(src/.*)\.o: ", line)
                source = match.group(1) if match else None
        return users

    @staticmethod
    def object_of(folder, source):
        return os.path.join(folder, source.replace(os.sep, "_") + ".o")

    def compiles(self, folder, source):
        """Leaves the object in the folder, whose src/ stands in the place of the tree's."""
        out = self.object_of(folder, source)
        command, skip = [], False
        for word in self.compile[source]:
            if skip:
                skip = False
            elif word in ("-MT", "-MF", "-o"):
                skip = True
            elif word != "-MD":
                command.append(word.replace(os.path.join(TREE, "src"), os.path.join(folder, "src")))
        return run(command + ["-o", out]) == 0

    def links(self, folder, objects):
        program = os.path.join(folder, "library_tests")
        command = [program if word == "library_tests" else word for word in self.link]
        at = command.index("libtavkit.a")
        command[at:at + 1] = objects
        return run(command) == 0

    @staticmethod
    def tests(folder, seconds):
        """True: passed, False: failed, None: hung."""
        command = [os.path.join(folder, "library_tests"), "--gtest_fail_fast", "--gtest_brief=1"]
        try:
            return run(command, seconds, limited=True) == 0
        except subprocess.TimeoutExpired:
            return None


def run(command, seconds=300, limited=False):
    return subprocess.run(command, cwd=BUILD, timeout=seconds, stdin=subprocess.DEVNULL,
                          stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                          preexec_fn=limit if limited else None).returncode


def limit():
    resource.setrlimit(resource.RLIMIT_DATA, (MEMORY, MEMORY))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def ninja(*arguments):
    return subprocess.run(["ninja", *arguments], cwd=BUILD, check=True, text=True,
                          stdout=subprocess.PIPE).stdout


def read(path):
    with open(path, newline="") as file:
        return file.read()


def read_bytes(path):
    with open(path, "rb") as file:
        return file.read()


class Trial:
    """Applies changes one after the other in the folders of the workers."""

    def __init__(self, builder, workers):
        self.builder, self.folders = builder, queue.Queue()
        self.base = self.fresh_folder("base")
        with concurrent.futures.ThreadPoolExecutor(workers) as pool:
            compiled = pool.map(lambda source: builder.compiles(self.base, source), builder.compile)
            if not all(compiled) or not builder.links(self.base, self.objects({})):
                fail("the sources as they are don't build")
        begin = time.monotonic()
        if not builder.tests(self.base, 300):
            fail(f"the tests fail on the sources as they are: {self.base}/library_tests")
        self.seconds = max(10, 10 * (time.monotonic() - begin))
        for worker in range(workers):
            self.folders.put(self.fresh_folder(str(worker)))

    @staticmethod
    def fresh_folder(name):
        folder = os.path.join(WORK, name)
        shutil.rmtree(folder, ignore_errors=True)
        shutil.copytree(os.path.join(TREE, "src"), os.path.join(folder, "src"))
        return folder

    def objects(self, changed):
        base = ((source, self.builder.object_of(self.base, source)) for source in self.builder.compile)
        return [changed.get(source, out) for source, out in base]

    def result(self, change):
        folder = self.folders.get()
        path = os.path.join(folder, change.file)
        source = read(path)
        try:
            with open(path, "w", newline="") as file:
                file.write(source[:change.start] + change.text + source[change.end:])
            return self.outcome(folder, change)
        finally:
            with open(path, "w", newline="") as file:
                file.write(source)
            self.folders.put(folder)

    def outcome(self, folder, change):
        changed = {}
        for source in self.builder.users[change.file]:
            if not self.builder.compiles(folder, source):
                return "not compiling"
            out = self.builder.object_of(folder, source)
            if read_bytes(out) != read_bytes(self.builder.object_of(self.base, source)):
                changed[source] = out
        if not changed:
            return "identical"
        if not self.builder.links(folder, self.objects(changed)):
            return "not compiling"
        return {True: "survived", False: "noticed", None: "hung"}[self.builder.tests(folder, self.seconds)]


# ---- The command ----


def fail(reason):
    print("mutate: " + reason, file=sys.stderr)
    sys.exit(2)


def arguments():
    class Parser(argparse.ArgumentParser):
        def error(self, message):
            fail(message + "; script/mutate --help tells what there is")

    def positive(text):
        if not text.isdigit() or int(text) == 0:
            raise argparse.ArgumentTypeError(f"{text} is no number above 0")
        return int(text)

    parser = Parser(add_help=False, allow_abbrev=False)
    amount = parser.add_mutually_exclusive_group()
    amount.add_argument("--all", action="store_true")
    amount.add_argument("--sample", type=positive, default=100)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("files", nargs="*")
    return parser.parse_args(sys.argv[2:])


def sources(names):
    """The files to change, relative to the project."""
    if not names:
        found = (os.path.join(folder, name) for folder, _, files in os.walk("src") for name in files)
        return sorted(path for path in found if path.endswith((".h", ".cpp")))
    files = []
    for name in names:
        path = os.path.relpath(os.path.realpath(os.path.join(sys.argv[1], name)), os.path.realpath("."))
        if not (os.path.isfile(path) and path.startswith("src" + os.sep) and path.endswith((".h", ".cpp"))):
            fail(f"{name} is no source below src/")
        files.append(path)
    return sorted(set(files))


def copy_tree():
    """A copy with the times of the originals, so that what is built from it is built once."""
    os.makedirs(TREE, exist_ok=True)
    for part in sorted(set(os.listdir(".")) - NOT_COPIED):
        target = os.path.join(TREE, part)
        if os.path.isdir(part):
            shutil.rmtree(target, ignore_errors=True)
            shutil.copytree(part, target)
        else:
            shutil.copy2(part, target)


def build_tests():
    print("building: the library's tests, in build/mutate", flush=True)
    configure = ["cmake", "--preset", "native64", "-DTAVKIT_INSTRUMENTS=-O2;-g0;-w;-fno-finite-loops"]
    with open(os.path.join(WORK, "build.log"), "w") as log:
        for command in (configure, ["cmake", "--build", BUILD, "--target", "library_tests"]):
            if subprocess.run(command, cwd=TREE, stdout=log, stderr=log, check=False).returncode != 0:
                fail("the tests can't be built; all that was printed stands in build/mutate/build.log")


def describe(change, source):
    line = source.count("\n", 0, change.start) + 1
    old = " ".join(source[change.start:change.end].split())
    new = " ".join(change.text.split())
    begin, end = source.rfind("\n", 0, change.start) + 1, source.find("\n", change.start)
    told = f"`{old}` became `{new}`" if new else f"`{old}` was removed"
    return f"{change.file}:{line}", told, " ".join(source[begin:end].split())


def main():
    options = arguments()
    files = sources(options.files)
    copy_tree()
    texts = {file: read(os.path.join(TREE, file)) for file in files}
    every = sorted({(c.file, c.start, c.end, c.text): c for file in files
                    for c in changes_of(file, texts[file])}.values())
    chosen = every
    if not options.all and options.sample < len(every):
        chosen = sorted(random.Random(options.seed).sample(every, options.sample))

    build_tests()
    workers = os.cpu_count() or 1
    trial = Trial(Builder(), workers)
    counts, survivors = collections.Counter(), []
    with open(os.path.join(WORK, "results.tsv"), "w") as table, \
            concurrent.futures.ThreadPoolExecutor(workers) as pool:
        for done, (change, result) in enumerate(zip(chosen, pool.map(trial.result, chosen)), 1):
            counts[result] += 1
            place, told, line = describe(change, texts[change.file])
            print(result, change.kind, place, told, line, sep="\t", file=table, flush=True)
            if result == "survived":
                survivors.append(f"{place}: {told} in: {line}")
            if sys.stdout.isatty():
                print(f"\r{done} of {len(chosen)}, {counts['survived']} survived ", end="", flush=True)
    if sys.stdout.isatty():
        print()

    for survivor in survivors:
        print(survivor)
    noticed = counts["noticed"] + counts["hung"]
    altered = noticed + counts["survived"]
    share = f"{100 * noticed / altered:.1f} %" if altered else "none"
    print(f"{len(chosen)} of {len(every)} changes made: {counts['not compiling']} don't compile, "
          f"{counts['identical']} leave the object code as it was")
    print(f"{altered} alter it: {noticed} noticed ({counts['hung']} by the time limit), "
          f"{counts['survived']} survived; noticed {share}")


if __name__ == "__main__":
    main()
