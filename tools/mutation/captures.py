"""Changes of what a lambda holds: weakly what it held strongly, and the other way round."""
import re

from clang.cindex import CursorKind as Kind

# Stands before the file. Whoever uses what nobody else holds any more ends the program, and so the test.
PRELUDE = ("#include <cstdlib>\n#include <memory>\nnamespace { template <typename T> struct Unheld {"
           " std::weak_ptr<T> target; explicit Unheld(std::shared_ptr<T> held) : target(held) {}"
           " T* operator->() const { if (target.expired()) std::abort(); return target.lock().get(); }"
           " T& operator*() const { return *operator->(); }"
           " explicit operator bool() const { return true; } }; }\n#line 1\n")


def change(finder, cursor, children):
    start = cursor.extent.start.offset
    for begin, end in parts(finder, start, cursor.extent.end.offset):
        text = finder.between(begin, end)
        name, _, value = (part.strip() for part in text.partition("="))
        if re.fullmatch(r"&?\w*|\*this", text) and not value:
            kinds = [child.type.get_canonical().spelling for child in children
                     if child.kind == Kind.VARIABLE_REF and child.extent.start.offset == begin]
            kind, value = (kinds[0] if kinds else ""), name
        else:
            kind = "std::weak_ptr<" if re.search(r"weak_from_this|weak_ptr\b", value) else ""
            kind = "std::shared_ptr<" if "shared_from_this" in value else kind
        kind = kind.removeprefix("const ")
        if kind.startswith("std::weak_ptr<"):
            finder.replace("capture", begin, begin, f"held = ({value}).lock(), ")
        elif kind.startswith("std::shared_ptr<"):
            finder.replace("capture", begin, end, f"{name} = Unheld({value})")


def parts(finder, start, end):
    """Where each capture of the lambda begins and ends."""
    depth = 0
    begin = None
    for _, text, left, right in finder.tokens:
        if not start <= left < end:
            continue
        if depth == 1 and text in (",", "]") and begin is not None:
            yield begin, last
            begin = None
        elif depth >= 1 and begin is None:
            begin = left
        depth += {"[": 1, "(": 1, "{": 1, "]": -1, ")": -1, "}": -1}.get(text, 0)
        if depth == 0:
            return
        last = right
