# SPDX-License-Identifier: MIT
"""Shows the library's strings and handles in gdb, which loads this with the library.

Nothing of the program is called, and neither the library nor the engine needs debug information: a
handle's node is found by the layout of this release, the node's kind by the name of its class's
virtual table, and the node's name by the layout that the engine's SONAME stands for. Where gdb has
nothing that names the tables, a handle says so; what else does not look as expected is shown by its
type alone.
"""

import re

import gdb

try:
    import gdb.printing
except ImportError as error:
    raise gdb.GdbError(f"QRNDOM's strings and handles are shown as they lie in memory: this gdb lacks "
                       f"Python modules of its own ({error})")

# Places are counted in words, of four or eight bytes.
NODE_IN_IMP = 3  # of PelXercesDOMNode: after its table, content and tree
NODE_IN_LIST = 2  # of PelXercesDOMNodeList: after its table and tree
KIND_IN_LIST = 5  # after two links to other references; 0 is the children
TAG_NAME_IN_LIST = 6
LONGEST_TEXT = 60
NO_SYMBOLS = "what it stands for is not known, since gdb has no symbols of libxerces-c"

# Class of the engine: what it is, and where its name is or, for "text", its characters.
NODES = {
    "DOMElementImpl": ("element", 17),
    "DOMElementNSImpl": ("element", 17),
    "DOMAttrImpl": ("attribute", 12),
    "DOMAttrNSImpl": ("attribute", 12),
    "DOMTextImpl": ("text", 8),
    "DOMCDATASectionImpl": ("CDATA section", 8),
    "DOMCommentImpl": ("comment", 8),
    "DOMProcessingInstructionImpl": ("processing instruction", 10),
    "DOMDocumentTypeImpl": ("document type", 15),
    "DOMEntityReferenceImpl": ("entity reference", 15),
    "DOMEntityImpl": ("entity", 12),
    "DOMNotationImpl": ("notation", 5),
    "DOMDocumentImpl": ("document", None),
    "DOMDocumentFragmentImpl": ("document fragment", None),
}
WITH_TEXT = {"text", "CDATA section", "comment"}


def at(address, type_name):
    return gdb.Value(address).cast(gdb.lookup_type(type_name).pointer()).dereference()


def place(begin, words):
    return begin + words * gdb.lookup_type("void").pointer().sizeof


def pointer_at(begin, words=0):
    return int(at(place(begin, words), "unsigned long"))


def quoted(address, length=-1):
    """The UTF-16 text at an address, cut when it is long; to its NUL without a length."""
    text = gdb.Value(address).cast(gdb.lookup_type("char16_t").pointer())
    order = "be" if "big endian" in gdb.execute("show endian", to_string=True) else "le"
    cut = text.string("utf-16-" + order, "replace", min(length, LONGEST_TEXT))
    return f'"{cut}"' + ("..." if length > LONGEST_TEXT else "")


def table_of(address):
    """The name of the class whose virtual table the object at an address has."""
    symbol = gdb.execute(f"info symbol {pointer_at(address)}", to_string=True)
    found = re.match(r"vtable for (?:xercesc_\w+::)?(\w+) ", symbol)
    return found.group(1) if found else None


def describe_node(node):
    """What a node of the engine is, or None if that is not known."""
    if node == 0:
        return "no node"
    table = table_of(node)
    if table is None:
        return NO_SYMBOLS
    kind, words = NODES.get(table, (None, None))
    if words is None:
        return kind
    if kind in WITH_TEXT:
        buffer = pointer_at(node, words)
        return f"{kind} {quoted(pointer_at(buffer), pointer_at(buffer, 1))}"
    return f"{kind} {quoted(pointer_at(node, words))}"


def describe_list(imp):
    # The table tells the library's own lists from a user's; in a library without symbols, it has no
    # name, and then the list must hold a node.
    if table_of(imp) not in (None, "PelXercesDOMNodeList"):
        return None
    node = describe_node(pointer_at(imp, NODE_IN_LIST))
    if node in (None, NO_SYMBOLS):
        return node
    if at(place(imp, KIND_IN_LIST), "int") == 0:
        return f"children of {node}"
    name = place(imp, TAG_NAME_IN_LIST)
    return f"elements {quoted(pointer_at(name), pointer_at(name, 1))} in {node}"


class Handle:
    def __init__(self, value, describe):
        self.value = value
        self.describe = describe

    def to_string(self):
        imp = int(self.value["imp"])
        if imp == 0:
            return "null"
        try:
            return self.describe(imp) or str(self.value.type.unqualified())
        except gdb.error:  # memory that cannot be read, among others
            return str(self.value.type.unqualified())


class NodeHandle(Handle):
    def __init__(self, value):
        super().__init__(value, lambda imp: describe_node(pointer_at(imp, NODE_IN_IMP)))


class ListHandle(Handle):
    def __init__(self, value):
        super().__init__(value, describe_list)


class String:
    def __init__(self, value):
        self.text = value["text"]

    def to_string(self):
        units = self.text["_M_dataplus"]["_M_p"]
        return units.lazy_string(length=int(self.text["_M_string_length"]))

    def display_hint(self):
        return "string"


def printers():
    collection = gdb.printing.RegexpCollectionPrettyPrinter("QRNDOM")
    collection.add_printer("string", "^PelString$", String)
    collection.add_printer("node", "^PelDOM(Node|Document|Element|Text)$", NodeHandle)
    collection.add_printer("list", "^PelDOMNodeList$", ListHandle)
    return collection


gdb.printing.register_pretty_printer(gdb.current_objfile(), printers(), replace=True)
