"""The places of a C++ source where one operator, constant or condition can be altered, and what into."""
import re
from dataclasses import dataclass

TOKEN = re.compile(
    r"""(?P<comment>//[^\n]*|/\*.*?\*/)
      | (?P<line>^[ \t]*\#(?:[^\n]*\\\n)*[^\n]*)
      | (?P<text>(?:u8|u|U|L)?"(?:\\.|[^"\\\n])*"|(?:u8|u|U|L)?'(?:\\.|[^'\\\n])*')
      | (?P<number>\b(?:0[xX][0-9A-Fa-f']+|\d[\d']*)[uUlLzZ]*\b(?![.\w]))
      | (?P<float>\b\d[\d'.eE+-]*[fFlL]?)
      | (?P<word>[A-Za-z_]\w*)
      | (?P<sign><<=|>>=|<=>|->\*|\.\.\.|::|->|\+\+|--|<<|<=|>=|==|!=|&&|\|\||[-+*/%&|^]=|[-+*/%&|^<>!=~?:;,.(){}\[\]])
    """, re.X | re.S | re.M)

# Signs between two operands; those that could begin a type or a name stand between spaces there.
OTHERS = {
    "<": ["<=", ">="], ">": [">=", "<="], "<=": ["<", ">"], ">=": [">", "<"], "==": ["!="], "!=": ["=="],
    "+": ["-"], "-": ["+"], "*": ["/"], "/": ["*"], "%": ["*"], "<<": [">>"], ">>": ["<<"],
    "&": ["|"], "|": ["&"], "^": ["|"], "&&": ["||"], "||": ["&&"],
    "+=": ["-="], "-=": ["+="], "*=": ["/="], "/=": ["*="], "%=": ["*="], "&=": ["|="], "|=": ["&="],
    "^=": ["|="], "<<=": [">>="], ">>=": ["<<="],
}
STEPS = {"++": "--", "--": "++"}


@dataclass(frozen=True)
class Site:
    """One piece of a source, and the texts that may stand in its place."""
    path: str
    begin: int
    end: int
    others: tuple


def tokens_of(text):
    """The words, numbers and signs of a source; not comments, texts, and lines of the preprocessor."""
    return [match for match in TOKEN.finditer(text) if match.lastgroup in ("number", "word", "sign")]


def is_between_spaces(text, token):
    """Whether the sign stands between two operands: the layout of the sources has spaces there."""
    return text[token.start() - 1].isspace() and text[token.end():token.end() + 1].isspace()


def numbers_beside(literal):
    """The number above the literal and the one below."""
    digits = re.match(r"0[xX][0-9A-Fa-f']+|[\d']+", literal).group()
    suffix = literal[len(digits):]
    plain = digits.replace("'", "")
    base = 16 if plain[:2] in ("0x", "0X") else 8 if len(plain) > 1 and plain[0] == "0" else 10
    value = int(plain, base)
    form = "0x{:X}" if base == 16 else "0{:o}" if base == 8 else "{}"
    return tuple(form.format(other) + suffix for other in (value + 1, value - 1) if other >= 0)


def matching(tokens, first):
    """The index of the bracket that closes the one at an index; None without one."""
    depth = 0
    for index in range(first, len(tokens)):
        depth += {"(": 1, ")": -1}.get(tokens[index].group(), 0)
        if depth == 0:
            return index
    return None


def condition_at(text, tokens, index):
    """The whole condition behind an `if` or a `while`, as begin, end and what may stand there."""
    if index + 1 >= len(tokens) or tokens[index + 1].group() != "(":
        return None
    last = matching(tokens, index + 1)
    if last is None or last == index + 2:
        return None
    inside = [token.group() for token in tokens[index + 2:last]]
    if ";" in inside or "=" in inside:
        return None
    begin, end = tokens[index + 2].start(), tokens[last - 1].end()
    lines = "\n" * text.count("\n", begin, end)
    others = ["false" + lines]
    if tokens[index].group() == "if":
        others += ["true" + lines, f"!({text[begin:end]})"]
    return begin, end, tuple(others)


def others_of(text, token):
    """What may stand in the place of one token; nothing for most."""
    word = token.group()
    if token.lastgroup == "number":
        return numbers_beside(word)
    if word in ("true", "false"):
        return ("false" if word == "true" else "true",)
    if word in STEPS:
        return (STEPS[word],)
    if word == "!":
        return (" ",)
    if word in OTHERS and is_between_spaces(text, token):
        return tuple(OTHERS[word])
    return ()


def skipped(tokens):
    """The indexes of what compilers check for themselves, and of what is declared about functions."""
    result = set()
    for index, token in enumerate(tokens):
        if token.group() in ("static_assert", "noexcept", "alignas") and index + 1 < len(tokens):
            last = matching(tokens, index + 1) if tokens[index + 1].group() == "(" else None
            result.update(range(index, (last or index) + 1))
        if token.group() in ("default", "delete", "0") and tokens[index - 1].group() == "=":
            # A pure function's 0 looks like a value; a value 0 of an array's or an object's stays in.
            if tokens[index - 2].group() in (")", "const", "noexcept", "override"):
                result.add(index)
    return result


def sites_of(path, text):
    """All places of a source; none of one that a script has made, as that is compared with its data."""
    if re.search(r"^// (Made|Generated) by", text[:400], re.M):
        return []
    tokens = tokens_of(text)
    left_out = skipped(tokens)
    sites = []
    for index, token in enumerate(tokens):
        if index in left_out:
            continue
        if others := others_of(text, token):
            sites.append(Site(path, token.start(), token.end(), others))
        if token.group() in ("if", "while"):
            if condition := condition_at(text, tokens, index):
                sites.append(Site(path, *condition))
    return sites
