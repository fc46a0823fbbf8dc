# The mistakes that could be made in a source file, by its syntax tree.
import re
from typing import NamedTuple

from clang.cindex import CursorKind as K, Index

OPERATORS = {"==": "!=", "!=": "==", "<": "<=", "<=": "<", ">": ">=", ">=": ">", "&&": "||",
             "||": "&&", "+": "-", "-": "+", "*": "+", "/": "*", "%": "/", "|": "&", "&": "|",
             "<<": ">>", ">>": "<<", "+=": "-=", "-=": "+=", "=": "+="}
# Calls whose arguments may change places.
SYMMETRIC = {"calloc", "max", "memcmp", "min", "swap"}
# What `{}` is as well.
ZEROS = {"0", "NO_ERROR", "android::NO_ERROR", "false", "kZylKwoOk", "nullptr"}
EXPRESSIONS = (K.CALL_EXPR, K.BINARY_OPERATOR, K.COMPOUND_ASSIGNMENT_OPERATOR, K.UNARY_OPERATOR,
               K.UNEXPOSED_EXPR)


class Mistake(NamedTuple):
    path: str
    start: int  # bytes of the file that the mistake replaces
    end: int
    kind: str
    wrong: str
    statement: bool  # or an expression
    name: str  # what the mistake is in, where that is the declaration of a constant or function


class Finder:
    def __init__(self, path, arguments):
        self.path = path
        self.source = path.read_bytes()
        self.found = []
        unit = Index.create().parse(str(path), arguments)
        for cursor in unit.cursor.get_children():
            if cursor.location.file and cursor.location.file.name == str(path):
                self.walk(cursor, None, "")

    def text(self, start, end):
        return self.source[start:end].decode()

    def of(self, cursor):
        return self.text(cursor.extent.start.offset, cursor.extent.end.offset)

    def add(self, cursor, kind, wrong, name, statement=False, end=None):
        end = end or cursor.extent.end.offset
        self.found.append(Mistake(self.path, cursor.extent.start.offset, end, kind, wrong, statement, name))

    def behind(self, cursor):
        """The end of a statement, its semicolon included; 0 where none follows."""
        gap = re.match(rb"\s*;", self.source[cursor.extent.end.offset:])
        return cursor.extent.end.offset + gap.end() if gap else 0

    def walk(self, cursor, parent, name):
        if cursor.kind in (K.VAR_DECL, K.FUNCTION_DECL, K.CXX_METHOD, K.ENUM_CONSTANT_DECL, K.FIELD_DECL,
                           K.CONSTRUCTOR, K.DESTRUCTOR):
            name = cursor.spelling or name
        if cursor.kind in (K.STATIC_ASSERT, K.TYPE_ALIAS_DECL):
            return
        handler = getattr(self, "in_" + cursor.kind.name.lower(), None)
        if handler:
            handler(cursor, parent, name)
        for child in cursor.get_children():
            self.walk(child, cursor, name)

    def in_binary_operator(self, cursor, _, name):
        left, right = cursor.get_children()
        begin, end = left.extent.end.offset, right.extent.start.offset
        operator = self.text(begin, end).strip()
        if operator in OPERATORS:
            wrong = f"{self.of(left)} {OPERATORS[operator]} {self.of(right)}"
            self.add(cursor, "operator", wrong, name)

    in_compound_assignment_operator = in_binary_operator

    def in_cxx_bool_literal_expr(self, cursor, _, name):
        self.add(cursor, "constant", {"true": "false", "false": "true"}.get(self.of(cursor), "!"), name)

    def in_integer_literal(self, cursor, _, name):
        number = self.of(cursor)
        if re.fullmatch(r"[\dA-Fa-fxXuUlL']+", number):
            self.add(cursor, "constant", f"({number} + 1)", name)
            self.add(cursor, "constant", f"({number} - 1)", name)

    def in_enum_constant_decl(self, cursor, _, name):
        if not list(cursor.get_children()):
            self.add(cursor, "constant", f"{name} = {cursor.enum_value + 1}", name)

    def in_string_literal(self, cursor, parent, name):
        literal = self.of(cursor)
        if len(literal) > 3 and literal[0] == '"' and "\\" not in literal[:3] and "%" not in literal[:3]:
            self.add(cursor, "text", '"' + chr(ord(literal[1]) ^ 1) + literal[2:], name)

    def in_if_stmt(self, cursor, _, name):
        condition = next(cursor.get_children())
        self.add(condition, "condition", f"!({self.of(condition)})", name)

    in_while_stmt = in_if_stmt

    def in_conditional_operator(self, cursor, _, name):
        condition, yes, no = map(self.of, cursor.get_children())
        self.add(cursor, "swap", f"{condition} ? {no} : {yes}", name)

    def in_return_stmt(self, cursor, _, name):
        end = self.behind(cursor)
        value = "".join(map(self.of, cursor.get_children()))
        if end and value and value not in ZEROS:
            self.add(cursor, "return", "return {};", name, True, end)

    def in_compound_stmt(self, cursor, _, name):
        children = list(cursor.get_children())
        for child in children:
            if child.kind == K.DECL_STMT and re.match(r"(const )?ScopedLock\b", self.of(child)):
                self.add(child, "lock", "", name, True)
            elif child.kind in EXPRESSIONS and self.behind(child):
                self.add(child, "deletion", "", name, True, self.behind(child))
        for first, second in zip(children, children[1:]):
            if all(c.kind in EXPRESSIONS and self.behind(c) for c in (first, second)):
                one, two = (self.text(c.extent.start.offset, self.behind(c)) for c in (first, second))
                self.add(first, "order", f"{two} {one}", name, True, self.behind(second))

    def in_call_expr(self, cursor, _, name):
        if cursor.spelling in SYMMETRIC:
            return
        arguments = [a for a in cursor.get_arguments() if a is not None and a.extent.end.offset]
        for one, two in zip(arguments, arguments[1:]):
            same = one.type.get_canonical().spelling == two.type.get_canonical().spelling
            start, end = cursor.extent.start.offset, cursor.extent.end.offset
            places = [one.extent.start.offset, one.extent.end.offset,
                      two.extent.start.offset, two.extent.end.offset]
            if same and self.of(one) != self.of(two) and [start, *places, end] == sorted([start, *places, end]):
                a, b, c, d = places
                wrong = "".join((self.text(start, a), self.text(c, d), self.text(b, c), self.text(a, b),
                                 self.text(d, end)))
                self.add(cursor, "swap", wrong, name)

    def in_member_ref_expr(self, cursor, _, name):
        field = cursor.referenced
        if not field or field.kind != K.FIELD_DECL or not self.of(cursor).endswith(field.spelling):
            return
        like = [f.spelling for f in field.semantic_parent.get_children()
                if f.kind == K.FIELD_DECL and f.type.spelling == field.type.spelling]
        other = like[(like.index(field.spelling) + 1) % len(like)]
        if other != field.spelling:
            self.add(cursor, "swap", self.of(cursor)[:-len(field.spelling)] + other, name)

    def in_decl_ref_expr(self, cursor, parent, name):
        constant = cursor.referenced
        if not constant or constant.kind != K.ENUM_CONSTANT_DECL or parent.kind == K.CASE_STMT:
            return
        like = [c.spelling for c in constant.semantic_parent.get_children()]
        other = like[(like.index(constant.spelling) + 1) % len(like)]
        if other != constant.spelling and self.of(cursor).endswith(constant.spelling):
            self.add(cursor, "constant", self.of(cursor)[:-len(constant.spelling)] + other, name)


def mistakes_in(path, arguments):
    """All of them, in the order of the file, each place once for each way."""
    found = {(m.start, m.end, m.wrong): m for m in Finder(path, arguments).found if m.end > m.start}
    return [found[key] for key in sorted(found)]
