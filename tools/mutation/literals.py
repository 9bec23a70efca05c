"""Changes of numbers, characters and texts."""
import re

from clang.cindex import CursorKind as Kind

NUMBERS = {Kind.INTEGER_LITERAL, Kind.FLOATING_LITERAL, Kind.CHARACTER_LITERAL}
WHOLE_NUMBER = re.compile(r"(0x[0-9a-fA-F']+|[0-9']+)([uUlLzZ]*)")


def change_number(finder, cursor):
    text = finder.text(cursor)
    whole = WHOLE_NUMBER.fullmatch(text)
    if cursor.kind == Kind.CHARACTER_LITERAL:
        if re.fullmatch(r"'[ -&(-Z^-}]'", text):  # neither a quotation mark nor a backslash, also afterwards
            finder.replace_cursor("constant", cursor, f"'{chr(ord(text[1]) + 1)}'")
    elif cursor.kind == Kind.FLOATING_LITERAL:
        finder.replace_cursor("constant", cursor, f"({text} + 0.1)")
    elif whole:
        digits = whole[1].replace("'", "")
        base, write = 10, str
        if digits.startswith("0x"):
            base, write = 16, hex
        elif digits.startswith("0") and digits != "0":
            base, write = 8, "0{:o}".format
        number = int(digits, base)
        finder.replace_cursor("constant", cursor, write(number + 1) + whole[2])
        if number > 0:
            finder.replace_cursor("constant", cursor, write(number - 1) + whole[2])


def change_text(finder, text, start):
    """A letter of each line of it, in its middle; another sign where there is no letter."""
    raw = re.fullmatch(r'\w*R"([^(]*)\((.*)\)\1"', text, re.DOTALL)
    begin, inner = (raw.start(2), raw[2]) if raw else (text.index('"') + 1, text[text.index('"') + 1:-1])
    position = start + len(text[:begin].encode())
    if not inner:
        finder.replace("text", position, position, "x")
    for line in inner.splitlines(keepends=True):
        escaped = set()
        if not raw:
            for found in re.finditer(r"\\(x[0-9a-fA-F]+|[0-7]+|u[0-9a-fA-F]{4}|.)|%\w", line):
                escaped |= set(range(found.start(), found.end()))
        plain = [i for i, c in enumerate(line) if i not in escaped and c not in '\\"\n']
        letters = [i for i in plain if line[i].isascii() and line[i].isalpha()] or plain
        if letters:
            at = letters[len(letters) // 2]
            where = position + len(line[:at].encode())
            finder.replace("text", where, where + len(line[at].encode()), other_sign(line[at]))
        position += len(line.encode())


def other_sign(sign):
    if not (sign.isascii() and sign.isalnum()):
        return "!" if sign != "!" else "?"
    return {"z": "a", "Z": "A", "9": "0"}.get(sign) or chr(ord(sign) + 1)
