"""Finds in a C++ source the places where tools/mutate changes one thing, and what it puts there.

The sources are formatted, so that blanks tell a comparison from a template's brackets and a product
from a pointer. What is taken for a place by mistake does not compile, and does not count.
"""

import dataclasses
import itertools
import random
import re

# What is passed over comes first, then literals.
QUIET = re.compile(r"""
    (?P<skipped> //[^\n]* | /\*.*?\*/ | ^[ \t]*\#(?:[^\n\\]|\\.)* | \[\[.*?\]\]
               | \bstatic_assert\b[^;]*; | \btemplate\ <[^{;]*?>\n )
  | (?P<text> "(?:[^"\\\n]|\\.)*" )
  | (?P<character> (?<!\w)[LuU]?'(?:[^'\\\n]|\\.)+' )""", re.X | re.S | re.M)
NUMBER = re.compile(r"(?<![\w.'])(0[xX][\da-fA-F']+|\d[\d']*(?:\.\d*)?(?:[eE][-+]?\d+)?)"
                    r"([uUlLfFzZ]*)(?![\w.'])")
BETWEEN = re.compile(r"(?<=[^\s(,]\s)"
                     r"(<<=|>>=|[-+*/%&|^]=|<<|>>|[<>=!]=|&&|\|\||[-+*/%&|^<>])(?=\s)")
BEFORE = re.compile(r"(?<=[\s(\[!])(!|-|\+\+|--)(?=[\w(])")
BEHIND = re.compile(r"(?<=[\w\])])(\+\+|--)")
CALL = re.compile(r"\b(?!(?:if|for|while|switch|return|catch|sizeof|decltype|noexcept|alignas)\b)"
                  r"\w+\(")
STATEMENT = re.compile(r"(?:(?<=[;{})]\s)|(?<=\belse\s))\s*(?!return\b|throw\b|delete\b)"
                       r"([\w:]+(?:(?:\.|->)\w+)*\([^;{}]*\));")
# Their arguments may stand in any order.
SYMMETRIC = re.compile(r"(?:max|min|Add|Multiply|_mm_(?:add|mul|and|or|xor|max|min)_\w+)\($")
PARAMETER = re.compile(r"(?:const )?[\w:]+(?:<[^()]*>)?[&*]* \w+(?: = .*)?$", re.S)

COMPARISONS = {"==": ["!="], "!=": ["=="], "<": ["<=", ">="], "<=": ["<", ">"],
               ">": [">=", "<="], ">=": [">", "<"]}
OPERATORS = {"+": ["-"], "-": ["+"], "*": ["/"], "/": ["*"], "%": ["*"], "&&": ["||"],
             "||": ["&&"], "&": ["|"], "|": ["&"], "^": ["|"], "<<": [">>"], ">>": ["<<"],
             "+=": ["-="], "-=": ["+="], "*=": ["/="], "/=": ["*="], "|=": ["&="], "&=": ["|="],
             "<<=": [">>="], ">>=": ["<<="], "++": ["--"], "--": ["++"]}


@dataclasses.dataclass(frozen=True)
class Mutant:
    """One change: what stands between two places of a file is replaced."""
    file: str
    kind: str
    start: int
    end: int
    text: str
    line: int
    change: str  # the lines that it touches, before -> after

    def apply(self, source):
        return source[:self.start] + self.text + source[self.end:]

    def __str__(self):
        return f"{self.file}:{self.line}: {self.change}"


def quietened(source):
    """(code, literals): the source with comments, directives and the insides of literals blanked,
    and what stands within quotes."""
    literals = []

    def blank(match):
        if match.lastgroup == "skipped":
            return re.sub(r"\S", " ", match[0])
        quote = re.search("[\"']", match[0]).start() + match.start()
        literals.append((match.lastgroup, quote + 1, match.end() - 1))
        return re.sub(r"[^\n]", "_", match[0])

    return QUIET.sub(blank, source), literals


def constants(code, literals):
    for kind, start, end in literals:
        yield (start, start, ["~"]) if kind == "text" else (start, end, ["~"])
    for match in NUMBER.finditer(code):
        number, suffix = match[1].replace("'", ""), match[2]
        if re.fullmatch(r"\d*[1-9]\d*[.eE].*|0\.\d*.*|\d+[eE].*", number):
            yield match.start(), match.end(), [f"{float(number) + 1}{suffix}"]
            continue
        value = int(number, 0) if number.lower().startswith("0x") else int(number)
        near = [value + 1, value - 1] if value > 0 else [1]
        yield match.start(), match.end(), [f"{other}{suffix}" for other in near]
    for match in re.finditer(r"\b(true|false)\b", code):
        yield match.start(), match.end(), ["false" if match[1] == "true" else "true"]


def operators(code, table):
    for match in itertools.chain(BETWEEN.finditer(code), BEFORE.finditer(code),
                                 BEHIND.finditer(code)):
        alone = match.re is BEFORE and match[1] in "!-"
        if alone and table is OPERATORS:
            yield match.start(), match.end(), [""]
        elif not alone and match[1] in table:
            yield match.start(), match.end(), table[match[1]]


def split_arguments(code, start):
    """The places of the arguments of a call; start is behind its bracket."""
    places, depth, begin = [], 0, start
    for place in range(start, len(code)):
        if code[place] in "([{":
            depth += 1
        elif code[place] in ")]}":
            depth -= 1
        if depth < 0 or (depth == 0 and code[place] == ","):
            places.append((begin, place))
            begin = place + 1
        if depth < 0:
            break
    inside = [(begin + len(code[begin:end]) - len(code[begin:end].lstrip()), end)
              for begin, end in places]
    return [(begin, end) for begin, end in inside if code[begin:end].strip()]


def arguments(code, source):
    for call in CALL.finditer(code):
        places = split_arguments(code, call.end())
        words = [source[begin:end] for begin, end in places]
        if any(PARAMETER.match(code[begin:end]) for begin, end in places):
            continue  # a declaration
        for (begin, end), word in zip(places, words):
            if not re.fullmatch(r"[\d.\w]*\d|nullptr|true|false|.*[\"'{}].*", word, re.S):
                yield begin, end, ["{}"]
        if SYMMETRIC.match(call[0]):
            continue
        for (first, last), (one, two) in zip(zip(places, places[1:]), zip(words, words[1:])):
            if one != two:
                yield first[0], last[1], [two + source[first[1]:last[0]] + one]


def calls(code):
    for match in STATEMENT.finditer(code):
        yield match.start(1), match.end(1), [""]


def find(file, source):
    """All mutants of a source, one for each place and each thing to put there."""
    code, literals = quietened(source)
    found = [("constant", constants(code, literals)), ("comparison", operators(code, COMPARISONS)),
             ("operator", operators(code, OPERATORS)), ("argument", arguments(code, source)),
             ("call", calls(code))]
    for kind, places in found:
        for start, end, texts in places:
            top, bottom = source.rfind("\n", 0, start) + 1, source.find("\n", end)
            line = source.count("\n", 0, start) + 1
            before = " ".join(source[top:bottom].split())
            for text in texts:
                after = " ".join((source[top:start] + text + source[end:bottom]).split())
                yield Mutant(file, kind, start, end, text, line, f"{before} -> {after}")


def in_order(mutants, seed):
    """The mutants in the order in which they are tried: by turns of each kind, at random, and no
    place twice."""
    chance, kinds, seen = random.Random(seed), {}, set()
    for mutant in mutants:
        kinds.setdefault(mutant.kind, []).append(mutant)
    for kind in kinds.values():
        chance.shuffle(kind)
    for mutant in itertools.chain(*itertools.zip_longest(*kinds.values())):
        place = mutant and (mutant.file, mutant.start, mutant.end)
        if mutant and place not in seen:
            seen.add(place)
            yield mutant
