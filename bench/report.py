#!/usr/bin/env python3
"""Prints a summary of the rows that the program has measured, writes the whole table, and on request the page.

Usage: bench/report.py [--page | --rows] ROWS TIMED     (script/bench calls it)
"""
import fnmatch
import itertools
import os
import re
import statistics
import subprocess
import sys

SWEEP = 32  # sizes up to here make one line
ALLOWANCE = 0.03  # of the peer's time: what the noise may explain at most


class Row:
    """One size of one piece of work, beside one peer. Times are in nanoseconds."""

    def __init__(self, text):
        fields = text.rstrip('\n').split('\t')
        self.family, self.operation, self.input, size, self.peer, goal, *times = fields
        self.size, self.goal = int(size), float(goal)
        self.ours, self.platform, self.called, inlined, self.noise = (float(t or 'nan') for t in times)
        self.inlined = inlined

    def work(self):
        return self.family, self.operation, self.input, self.peer


class Line:
    """Rows of one work: one size, or the sweep of small sizes, whose times are means."""

    def __init__(self, rows):
        self.rows = rows
        first = rows[0]
        self.family, self.operation, self.input, self.peer = first.work()
        self.goal = first.goal
        for name in ('ours', 'platform', 'called', 'inlined', 'noise'):
            setattr(self, name, statistics.fmean(getattr(row, name) for row in rows))

    def own(self):
        """Our time without that of the platform's calls."""
        return max(self.ours - self.platform, 0)

    def ratio(self):
        return self.own() / self.called

    def is_noise(self):
        return self.platform > 0 and self.own() < self.noise

    def sizes(self):
        first, last = self.rows[0].size, self.rows[-1].size
        return f'{first:,} to {last:,}' if first != last else f'{first:,}' if first else ''

    def worst(self):
        """The length of a sweep with the highest ratio."""
        return max((Line([row]) for row in self.rows), key=Line.ratio)

    def outcome(self):
        if self.goal == 0:
            return 'stated'
        outcomes = {line.own_outcome() for line in [self] + [Line([row]) for row in self.rows]}
        return next(o for o in ('lost', 'within noise', 'met') if o in outcomes)

    def own_outcome(self):
        above = self.own() - self.goal * self.called
        if self.is_noise():
            return 'met' if self.noise <= self.goal * self.called else 'lost'
        if above <= 0.005 * self.called:  # by the two decimals that are printed
            return 'met'
        return 'within noise' if above <= min(self.noise, ALLOWANCE * self.called) else 'lost'

    def cells(self):
        ratio = f'<={self.noise / self.called:.2f}' if self.is_noise() else f'{self.ratio():.2f}'
        worst = self.worst()
        return [self.operation, ', '.join(filter(None, [self.sizes(), self.input])), time(self.ours),
                time(self.platform) if self.platform else '', self.peer, time(self.called),
                '' if self.inlined != self.inlined else time(self.inlined), ratio,
                f'{self.ours / self.called:.2f}',
                f'{worst.ratio():.2f} at {worst.sizes()}' if len(self.rows) > 1 else '',
                f'{self.goal:.1f}' if self.goal else '', self.outcome()]


TITLES = ['operation', 'input', 'ours', 'platform', 'peer', 'called', 'inlined', 'ratio', 'raw', 'worst', 'goal',
          'outcome']


def time(nanoseconds):
    for limit, unit, name in ((999.5, 1, 'ns'), (999_500, 1_000, 'us'), (float('inf'), 1_000_000, 'ms')):
        if nanoseconds < limit:
            return f'{nanoseconds / unit:.{1 if unit == 1 else 2}f} {name}'


def lines_of(rows):
    """The lines in the order in which the works were first done, each work with its sizes together."""
    works = {}
    for row in rows:
        works.setdefault(row.work(), []).append(row)
    for work in works.values():
        for _, same in itertools.groupby(sorted(work, key=lambda row: row.size),
                                         lambda row: min(row.size, 1) if row.size <= SWEEP else row.size):
            yield Line(list(same))


def columns(rows):
    """Rows of cells as aligned text."""
    widths = [max(map(len, column)) for column in zip(*rows)]
    return ''.join('  '.join(cell.ljust(width) for cell, width in zip(row, widths)).rstrip() + '\n' for row in rows)


def markdown(rows):
    rows = [rows[0], ['---'] * len(rows[0])] + rows[1:]
    return ''.join('| ' + ' | '.join(cell.replace('|', '\\|') for cell in row) + ' |\n' for row in rows)


def summary(lines):
    rows = [['family', 'rows', 'with a goal', 'within noise', 'lost', 'median ratio', 'worst ratio']]
    families = list(dict.fromkeys(line.family for line in lines))
    for family in families + ['all']:
        own = [line for line in lines if family in (line.family, 'all')]
        goals = [line for line in own if line.goal]
        ratios = [line.ratio() for line in goals]
        outcomes = [line.outcome() for line in goals]
        rows.append([family, str(len(own)), str(len(goals)), str(outcomes.count('within noise')),
                     str(outcomes.count('lost')), f'{statistics.median(ratios):.2f}' if ratios else '',
                     f'{max(line.worst().ratio() for line in goals):.2f}' if ratios else ''])
    return rows


def floors(lines):
    """The lost rows by operation and peer, each with the sentence that bench/notes.md has for them."""
    notes = dict(re.findall(r'^- `([^`]+)`: (.+(?:\n  .+)*)', open('bench/notes.md').read(), re.M))
    unused = set(notes)
    rows = [['operation', 'peer', 'rows', 'ratio', 'goal', 'floor']]
    groups = {}
    for line in lines:
        if line.outcome() == 'lost':
            groups.setdefault((line.operation, line.peer, line.goal), []).append(line)
    for (operation, peer, goal), lost in groups.items():
        ratios = [f'{line.worst().ratio():.2f}' for line in lost]
        inputs = {}
        for line in lost:
            inputs.setdefault(line.input, []).append(line.sizes())
        key = next((key for key in notes if fnmatch.fnmatchcase(f'{operation}, {peer}', key)), None)
        unused.discard(key)
        if key is None:
            print(f'bench/notes.md has no sentence for "{operation}, {peer}"', file=sys.stderr)
        rows.append([f'`{operation}`', f'`{peer}`',
                     '; '.join(': '.join(filter(None, [name, ', '.join(sizes)])) for name, sizes in inputs.items()),
                     ' to '.join(dict.fromkeys([min(ratios, key=float), max(ratios, key=float)])), f'{goal:.1f}',
                     re.sub(r'\s+', ' ', notes.get(key, ''))])
    for key in unused:
        print(f'bench/notes.md: no row is lost that "{key}" speaks of', file=sys.stderr)
    return rows


CURVES = [('build', 'utCopyNextAsciiz', 'build a list'), ('count', 'utMultiAsciizStringCount', ''),
          ('size', 'utMultiAsciizSize', ''), ('scan', 'utScanMultiAsciiz', 'no match'),
          ('append one', 'utAppendMultiAsciiz', 'one string, and take it back')]


def curve(rows, operation, work):
    """Our times by the count of strings; one for all peers."""
    return {row.size: row.ours for row in rows if (row.operation, row.input) == (operation, work)}


def plot(rows, path):
    commands = [f'set terminal svg size 720,360 font "sans-serif,12"; set output "{path}"',
                'set logscale xy; set grid; set key outside right',
                'set xlabel "strings in the list"; set ylabel "ns for each string"', 'set format x "%.0f"']
    commands.append('plot ' + ', '.join(f'"-" with linespoints title "{name}"' for name, _, _ in CURVES))
    for _, operation, work in CURVES:
        commands += [f'{size} {ours / size}' for size, ours in curve(rows, operation, work).items()] + ['e']
    subprocess.run(['gnuplot'], input='\n'.join(commands), text=True, check=True)


def machine():
    names = re.findall(r'^model name\s*: (.*)$', open('/proc/cpuinfo').read(), re.M)
    return f'{names[0] if names else "unknown processor"}, {len(names)} processors'


def page(rows, lines, timed):
    compiler = subprocess.run(['clang++-19', '--version'], capture_output=True, text=True, check=True)
    append = curve(rows, *CURVES[4][1:])
    slope = (append[100_000] - append[1_000]) / 99_000
    lost = floors(lines)
    return f'''# Speed

Written by `script/bench --page`, the plot too; what is said of lost rows stands in `bench/notes.md`.

- Timed: {timed}.
- Machine: {machine()}; compiler: {compiler.stdout.splitlines()[0]}.
- Size of TAVKIT.DLL: {os.path.getsize('dist/bin/TAVKIT.DLL'):,} bytes.

Each row is one piece of work, done by an export and by a peer that a user would pick instead. The answers are
compared first. Then both are timed in turn, in 25 batches of at least 0.04 ms, and the lower quartile of each
counts. An export is called through an address, as a program calls an imported function; its peer is a called
function too. What a peer takes where the compiler works it into its caller stands beside it in the whole table,
without a goal. Where an export calls `CharNextA`, `lstrlenA`, `lstrcpyA` or `LocalAlloc`, these very calls are recorded,
made again alone in the same run, and taken off our time; `raw` in the whole table is the ratio with them. A
change of a list is taken back in the same piece of work, and a text to be trimmed is put back first, on both
sides and in both times. Lengths of 1 to 32 make one row, which is lost if any of them is. Noise is how far the
lower quartile lies above the shortest batch. A row is within noise if it misses its goal by less than that, and
by at most {ALLOWANCE:.0%} of the peer's time. `script/bench` leaves the whole table in `build/bench/table.txt`.

{markdown(summary(lines))}
## Rows that are lost

{markdown(lost) if len(lost) > 1 else 'None.' + chr(10)}
## Growth

![Time for each string of a list, by its length](growth.svg)

An append walks the list: each string in the list adds {slope:.2f} ns to it (from 1,000 to 100,000 strings).
'''


def main(arguments):
    option = arguments.pop(0) if arguments[0].startswith('--') else ''
    path, timed = arguments
    rows = [Row(text) for text in open(path)]
    if not rows:
        sys.exit('bench: no row has such a name')
    lines = list(lines_of(rows))
    table = columns([TITLES] + [line.cells() for line in lines])
    print(f'Timed: {timed}.\n')
    if option == '--rows':
        print(table)
    else:
        open(os.path.join(os.path.dirname(path), 'table.txt'), 'w').write(f'Timed: {timed}.\n\n{table}')
    print(columns(summary(lines)), end='')
    if option == '--page':
        open('docs/speed.md', 'w').write(page(rows, lines, timed))
        plot(rows, 'docs/growth.svg')


main(sys.argv[1:])
