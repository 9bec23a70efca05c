"""The small changes that tools/mutate makes to a file: found with clang, and not yet made."""
import re
from dataclasses import dataclass
from pathlib import Path

from clang.cindex import CursorKind as Kind
from clang.cindex import Diagnostic, Index, TokenKind, TranslationUnitLoadError

from mutation import captures, literals

FUNCTIONS = {Kind.FUNCTION_DECL, Kind.CXX_METHOD, Kind.CONSTRUCTOR, Kind.DESTRUCTOR, Kind.FUNCTION_TEMPLATE,
             Kind.CONVERSION_FUNCTION}
CLASSES = {Kind.CLASS_DECL, Kind.STRUCT_DECL, Kind.CLASS_TEMPLATE}
# Between blanks they are operators: tools/format sets none around those of types and templates.
OPERATORS = {"==": "!=", "!=": "==", "<": "<=", "<=": "<", ">": ">=", ">=": ">", "+": "-", "-": "+", "*": "/", "/": "*",
             "&": "|", "|": "&", "+=": "-=", "-=": "+=", ">>=": "<<=", "<<=": ">>="}
LEVELS = {"error": "debug", "debug": "error"}


@dataclass(frozen=True)
class Change:
    """Bytes START to END of a file become TEXT."""
    file: str
    line: int
    function: str  # in which it is made, without namespaces; empty outside of all
    kind: str
    start: int
    end: int
    text: str
    old: tuple  # the lines that it changes, without the blanks around them, and what they become
    new: tuple

    def apply(self, source):
        prelude = captures.PRELUDE if self.kind == "capture" else ""
        return prelude.encode() + source[:self.start] + self.text.encode() + source[self.end:]

    @property
    def key(self):
        """Stays the same when the file is edited elsewhere."""
        return self.file, self.function, self.old, self.new


def differing_lines(before, after):
    """What two texts do not share at their begin and end."""
    old, new = ([line.strip() for line in text.splitlines()] for text in (before, after))
    while old and new and old[0] == new[0]:
        del old[0], new[0]
    while old and new and old[-1] == new[-1]:
        del old[-1], new[-1]
    return tuple(filter(None, old)), tuple(filter(None, new))


class Finder:
    def __init__(self, tree, file, arguments):
        self.tree = Path(tree)
        self.file = file
        self.path = str(self.tree / file)
        self.source = Path(self.path).read_bytes()
        self.found = {}
        self.functions = []  # (start, end, name)
        try:
            self.unit = Index.create().parse(self.path, [*arguments, "-xc++", "-w"])
        except TranslationUnitLoadError:
            raise SystemExit(f"clang cannot parse {file}") from None
        errors = [each.spelling for each in self.unit.diagnostics if each.severity >= Diagnostic.Error]
        if errors:
            raise SystemExit(f"clang cannot parse {file}:\n" + "\n".join(errors))
        self.tokens = [(token.kind, token.spelling, token.extent.start.offset, token.extent.end.offset)
                       for token in self.unit.get_tokens(extent=self.unit.cursor.extent)]

    def changes(self):
        for cursor in self.unit.cursor.get_children():
            if cursor.location.file and cursor.location.file.name == self.path:
                self.visit(cursor, "")
        self.visit_tokens()
        return [change for _, change in sorted(self.found.items())]

    # What the methods below work with ------------------------------------------------------------------------------

    def text(self, cursor):
        return self.between(cursor.extent.start.offset, cursor.extent.end.offset)

    def between(self, start, end):
        return self.source[start:end].decode()

    def replace(self, kind, start, end, text):
        old = self.between(start, end)
        if old == text:
            return
        first = self.source.rfind(b"\n", 0, start) + 1
        last = self.source.find(b"\n", end) % (len(self.source) + 1)
        around = self.between(first, start), self.between(end, last)
        lines = differing_lines(old.join(around), text.join(around))
        inside = [function for function in self.functions if function[0] <= start < function[1]]
        name = min(inside, key=lambda each: each[1] - each[0])[2] if inside else ""
        number = self.source.count(b"\n", 0, start + len(old) - len(old.lstrip())) + 1
        self.found[start, end, text] = Change(self.file, number, name, kind, start, end, text, *lines)

    def replace_cursor(self, kind, cursor, text):
        self.replace(kind, cursor.extent.start.offset, cursor.extent.end.offset, text)

    # By the syntax tree --------------------------------------------------------------------------------------------

    def visit(self, cursor, owner):
        kind = cursor.kind
        if kind == Kind.STATIC_ASSERT:
            return
        if kind in FUNCTIONS:
            classes = []
            parent = cursor.semantic_parent
            while parent and parent.kind in CLASSES:
                classes.insert(0, parent.spelling)
                parent = parent.semantic_parent
            name = "::".join([*classes, re.sub("<.*>$", "", cursor.spelling)])
            self.functions.append((cursor.extent.start.offset, cursor.extent.end.offset, name))
        children = list(cursor.get_children())
        if kind == Kind.COMPOUND_STMT:
            self.drop_statements(children)
        elif kind in (Kind.IF_STMT, Kind.WHILE_STMT):
            self.negate_condition(cursor, children)
        elif kind == Kind.CONDITIONAL_OPERATOR:
            if not self.text(children[0]).startswith("!"):
                self.replace_cursor("condition", children[0], f"!({self.text(children[0])})")
        elif kind == Kind.RETURN_STMT and children and children[0].type.spelling == "bool":
            self.negate_result(children[0])
        elif kind == Kind.BINARY_OPERATOR:
            self.drop_operands(cursor, children)
        elif kind == Kind.CALL_EXPR:
            self.change_call(cursor)
        elif kind == Kind.INIT_LIST_EXPR:
            self.swap(children)
            self.hide(cursor)
        elif kind == Kind.LAMBDA_EXPR:
            captures.change(self, cursor, children)
        elif kind == Kind.DECL_REF_EXPR:
            self.exchange_enumerator(cursor)
        elif kind in literals.NUMBERS:
            literals.change_number(self, cursor)
        for child in children:
            self.visit(child, cursor)

    def drop_statements(self, statements):
        for statement in statements:
            inner = list(statement.get_children())
            if statement.kind in (Kind.DECL_STMT, Kind.NULL_STMT) or (statement.kind == Kind.RETURN_STMT and inner):
                continue
            end = statement.extent.end.offset
            rest = self.source[end:]
            if rest.lstrip().startswith(b";"):
                end += len(rest) - len(rest.lstrip()) + 1
            self.replace("statement", statement.extent.start.offset, end, "")

    def drop_else(self, branch):
        if branch.kind not in (Kind.COMPOUND_STMT, Kind.IF_STMT):
            self.replace_cursor("statement", branch, "{}")

    def negate_condition(self, cursor, children):
        """Also in `if (const auto x = f())`, which becomes `if (const auto x = f(); !x)`."""
        if self.between(children[-2].extent.end.offset, children[-1].extent.start.offset).strip("; \n") == "else":
            self.drop_else(children[-1])
        start = cursor.extent.start.offset
        tokens = [token for token in self.tokens if start <= token[2] < cursor.extent.end.offset]
        if tokens[1][1] != "(":  # if constexpr
            return
        depth = 0
        for token in tokens[1:]:
            depth += {"(": 1, ")": -1, "{": 1, "}": -1}.get(token[1], 0)
            if depth == 1 and token[1] in ("(", ";"):
                begin = token[3]
            if depth == 0:
                end = token[2]
                break
        condition = self.between(begin, end)
        names = [each.spelling for child in children for each in (child, *child.get_children())
                 if each.kind == Kind.VAR_DECL and begin <= each.extent.start.offset < end]
        if names:
            self.replace("condition", end, end, f"; !{names[0]}")
        elif not re.fullmatch(r"\s*![^&|]*", condition):  # whose sign is dropped with the tokens
            self.replace("condition", begin, end, f"{' ' if condition[0] == ' ' else ''}!({condition.strip()})")

    def negate_result(self, value):
        if value.kind != Kind.CXX_BOOL_LITERAL_EXPR and not re.fullmatch("![^&|]*", self.text(value)):
            self.replace_cursor("condition", value, f"!({self.text(value)})")

    def drop_operands(self, cursor, children):
        if len(children) != 2:
            return
        left, right = children
        between = self.between(left.extent.end.offset, right.extent.start.offset)
        if between.strip() not in ("&&", "||"):
            return
        self.replace("condition", left.extent.start.offset, right.extent.start.offset, "")
        self.replace("condition", left.extent.end.offset, cursor.extent.end.offset, "")

    def change_call(self, cursor):
        arguments = [each for each in cursor.get_arguments() if each]
        name = cursor.spelling
        callee = cursor.referenced
        owner = callee.semantic_parent.spelling if callee and callee.semantic_parent else ""
        if name == "post" and owner in ("MainQueue", "GlobalQueue"):
            self.exchange_queue(cursor, arguments[-1])
        elif name == "hidden" and owner == "Logger":
            self.replace_cursor("privacy", cursor, f"{{{self.text(arguments[0])}}}")
        elif not name.startswith("operator"):
            self.swap(arguments)

    def exchange_queue(self, cursor, task):
        """At once and on this thread, or on the other queue."""
        self.replace_cursor("queue", cursor, f"({self.text(task)})()")
        target = self.between(cursor.extent.start.offset, task.extent.start.offset).split(".post")[0]
        if re.search(r"(\.|->)mainQueue$", target):
            other = target.replace("mainQueue", "globalQueue.post(QualityOfService::standard, ")
        elif re.search(r"(\.|->)globalQueue$", target):
            other = target.replace("globalQueue", "mainQueue.post(")
        else:
            return
        self.replace("queue", cursor.extent.start.offset, task.extent.start.offset, other)

    def swap(self, values):
        for first, second in zip(values, values[1:]):
            texts = self.text(first), self.text(second)
            between = self.between(first.extent.end.offset, second.extent.start.offset)
            if between.strip() != "," or any(not text or text.startswith(".") for text in texts):
                continue
            types = [re.sub(r"\b(const|volatile) |\s*[&]+$", "", each.type.get_canonical().spelling)
                     for each in (first, second)]
            if types[0] == types[1]:
                self.replace("arguments", first.extent.start.offset, second.extent.end.offset,
                             texts[1] + between + texts[0])

    def hide(self, cursor):
        if cursor.type.spelling.endswith("LogPiece") and self.text(cursor).startswith("{"):
            self.replace_cursor("privacy", cursor, f"Logger::hidden({self.text(cursor)[1:-1]})")

    def exchange_enumerator(self, cursor):
        value = cursor.referenced
        if not value or value.kind != Kind.ENUM_CONSTANT_DECL or not value.location.file:
            return
        if not Path(value.location.file.name).is_relative_to(self.tree):
            return
        names = [each.spelling for each in value.semantic_parent.get_children() if each.kind == value.kind]
        other = names[(names.index(value.spelling) + 1) % len(names)]
        end = cursor.extent.end.offset
        self.replace("value", end - len(value.spelling), end, other)

    # By the tokens -------------------------------------------------------------------------------------------------

    def visit_tokens(self):
        for before, token, after in zip(self.tokens, self.tokens[1:], self.tokens[2:]):
            kind, text, start, end = token
            if kind == TokenKind.LITERAL and text.endswith('"') and self.is_code(start):
                literals.change_text(self, text, start)
            elif kind == TokenKind.PUNCTUATION and text in OPERATORS and before[3] < start and end < after[2]:
                self.replace("operator", start, end, OPERATORS[text])
            elif kind == TokenKind.PUNCTUATION and text in ("++", "--"):
                self.replace("operator", start, end, "--" if text == "++" else "++")
            elif kind == TokenKind.PUNCTUATION and text == "!" and end == after[2]:
                self.replace("condition", start, end, "")
            elif kind == TokenKind.KEYWORD and text in ("true", "false") and self.is_code(start):
                self.replace("value", start, end, "false" if text == "true" else "true")
            elif text in LEVELS and before[1] in (".", "->") and self.between(0, before[2]).endswith("logger_"):
                self.replace("level", start, end, LEVELS[text])

    def is_code(self, position):
        """Whether it stands in no line for the preprocessor, and in no static_assert."""
        line = self.between(self.source.rfind(b"\n", 0, position) + 1, position).lstrip()
        return not line.startswith(("#", "static_assert"))
