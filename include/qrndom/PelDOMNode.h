// SPDX-License-Identifier: MIT
#pragma once

#include <qrndom/PelDOM.h>
#include <qrndom/export.h>

#include <vector>

class PelDOMDocument;
class PelDOMElement;
class PelDOMNodeContentImp;
class PelDOMNodeImp;
class PelDOMNodeList;

/// A handle to one node of a tree, of any kind; the base of the document, element and text handles.
///
/// Owns     one implementation object, or none: then it is a null handle. The tree is shared with
///          every other handle into it, and changes through one are seen through all.
/// Lives    as long as the caller likes; the tree lives as long as any handle into it, whether or
///          not a document handle is left and whether or not the engine was terminated.
/// Threads  one thread at a time for all handles into one tree; separate trees are independent.
/// Errors   codes of PelDOM::Error; exceptions of the engine's DOM pass through (see appendChild).
/// Cost     a copy makes a new implementation object over the same node, never a copy of the tree.
class QRNDOM_API PelDOMNode {
public:
    PelDOMNode(const PelDOMNode& orig);     ///< A second handle to the same node.
    PelDOMNode(PelDOMNode&& orig) noexcept; ///< Leaves `orig` a null handle.

    /// A null handle (status NO_IMPLEMENTATION). The library's own calls pass an implementation
    /// object, which the handle then owns.
    explicit PelDOMNode(PelDOMNodeImp* implementation = nullptr);

    /// Lets go of the node; the tree goes with the last handle into it.
    virtual ~PelDOMNode();

    /// Refers to the node of `rhs` from now on. The value of the expression is `rhs`, not this
    /// handle; that of a move is this handle, and `rhs` is null then.
    PelDOMNode& operator=(PelDOMNode& rhs);
    const PelDOMNode& operator=(const PelDOMNode& rhs); ///< For const handles.
    PelDOMNode& operator=(PelDOMNode&& rhs) noexcept;   ///< For temporaries and moves.

    int isNull() const noexcept { return imp == nullptr ? 1 : 0; }     ///< 1 or 0.
    explicit operator bool() const noexcept { return imp != nullptr; } ///< False for a null handle.

    /// Whether both handles refer to the same node, or both to none.
    bool isSameNode(const PelDOMNode& other) const noexcept;

    /// As isSameNode.
    friend bool operator==(const PelDOMNode& left, const PelDOMNode& right) noexcept {
        return left.isSameNode(right);
    }
    /// Not isSameNode.
    friend bool operator!=(const PelDOMNode& left, const PelDOMNode& right) noexcept {
        return !left.isSameNode(right);
    }

    /// NO_IMPLEMENTATION for a null handle, else SUCCESS; set when the handle is made or assigned.
    PelDOM::Error getErrorStatus() const noexcept { return errorStatus; }

    /// The kind of node; NO_NODE for a null handle.
    PelDOM::NodeType getNodeType() const;

    /// Makes `out` a handle to the document that the node belongs to. NULL_NODE for a null handle,
    /// which leaves `out` as it was. A document belongs to none: its `out` is of type NO_NODE.
    PelDOM::Error getOwnerDocument(PelDOMDocument& out) const;

    /// Makes the node of `child` the last child of this node, taking it from its old parent if it
    /// has one. NULL_NODE when either handle is null. Where the DOM forbids it (a node into itself
    /// or its own descendants, a second root element, text other than white space at the top of a
    /// document, a node of another document), the engine's DOM exception, and nothing has changed.
    PelDOM::Error appendChild(PelDOMNode& child);
    PelDOM::Error appendChild(const PelDOMNode& child); ///< For const handles and temporaries.

    /// Puts the node of `child` in front of that of `before`, a child of this node; with a null
    /// `before`, makes it the last child. A node that has a parent is taken from there; one in
    /// front of itself stays. NULL_NODE when this handle or `child` is null. INVALID_VALUE, and
    /// nothing changed, where appendChild throws, where `before` is not a child of this node, and
    /// where a document would get its root before its document type, or anything before its XML
    /// declaration. Takes a few steps, and one for each ancestor if `child` has children.
    PelDOM::Error insertBefore(const PelDOMNode& child, const PelDOMNode& before);

    /// Puts the node of `child` into the place of that of `old`, a child of this node, which is
    /// left without a parent. A node that replaces itself stays. NULL_NODE when a handle is null;
    /// otherwise as insertBefore.
    PelDOM::Error replaceChild(const PelDOMNode& child, const PelDOMNode& old);

    /// Takes the node of `child`, with all below it, from this node. It still belongs to the
    /// document and may be put back. NULL_NODE when a handle is null, INVALID_VALUE when it is not
    /// a child of this node.
    PelDOM::Error removeChild(const PelDOMNode& child);

    /// A copy of this node, with its attributes and, if `deep`, with all below it, in the same
    /// document and without a parent. A null handle for a null handle, a document, a document type
    /// and an XML declaration: to copy a whole document, create another and import the root.
    PelDOMNode cloneNode(bool deep) const;

    /// Makes `out` a handle to the parent; to none (type NO_NODE) for a node without one. NULL_NODE
    /// for a null handle, which leaves `out` as it was; so for getChildNodes.
    PelDOM::Error getParentNode(PelDOMNode& out) const;
    PelDOM::Error getChildNodes(PelDOMNodeList& out) const; ///< The live list of the children.

    /// The document that the node belongs to. Like each of the following, a null handle where there
    /// is none, and for a null handle; it costs one implementation object.
    PelDOMDocument getOwnerDocument() const;
    PelDOMNode getParentNode() const;      ///< The node that this one is a child of.
    PelDOMNode getFirstChild() const;      ///< The first of its children.
    PelDOMNode getLastChild() const;       ///< The last of its children.
    PelDOMNode getNextSibling() const;     ///< The child of its parent that follows this one.
    PelDOMNode getPreviousSibling() const; ///< The one that stands before this one.
    PelDOMNodeList getChildNodes() const;  ///< The live list of its children.
    bool hasChildNodes() const;            ///< False for a null handle.

    /// The tag name of an element, the target of an instruction, the name of a document type; of
    /// other kinds "#text", "#cdata-section", "#comment" or "#document". Empty for a null handle.
    PelString getNodeName() const;

    /// The data of a text, CDATA section, comment or instruction; empty for other kinds and for a
    /// null handle.
    PelString getNodeValue() const;

    /// Replaces the data, also by nothing. INVALID_VALUE for other kinds of node and for what XML
    /// forbids: a character that it does not have, `--` or a last `-` in a comment, `]]>` in a
    /// CDATA section, `?>` in an instruction. NULL_NODE for a null handle.
    PelDOM::Error setNodeValue(const PelString& value);

    /// The texts and CDATA sections of an element and of the elements in it, in their order, as one
    /// string; for other kinds as getNodeValue.
    PelString getTextContent() const;

    /// Replaces all children of an element by one text, or by none when `text` is empty; for other
    /// kinds as setNodeValue, with the same codes.
    PelDOM::Error setTextContent(const PelString& text);

    /// Where the node stood in the file that was read, both from 1: of an element its `<`, of other
    /// kinds their first character, of what came from an entity the reference. Columns count
    /// characters, as those of messages do. 0 where it is not known: for new nodes, documents and
    /// null handles, and in a tree that was read without PelDOMReader::setKeepSource. The first
    /// call goes through the source once.
    unsigned long getLine() const;
    unsigned long getColumn() const; ///< Likewise, in that line.

    /// Asks from this node, as a PelDOMXPath of that expression does: the nodes in document order,
    /// or the first, which is a null handle where there is none; of all kinds, or elements only.
    /// What is wrong goes into the diagnostic log and to PelDOMXPath::getLastMessage. Each call
    /// compiles the expression.
    std::vector<PelDOMNode> selectNodes(const PelString& expression) const;
    PelDOMNode selectNode(const PelString& expression) const;                     ///< See above.
    std::vector<PelDOMElement> selectElements(const PelString& expression) const; ///< See above.
    PelDOMElement selectElement(const PelString& expression) const;               ///< See above.

    /// Prints the subtree into the diagnostic log: a line for each node and attribute, children
    /// between brackets and two spaces further in. `level` is the depth of this node; 0 and 1 print
    /// it without indentation. Text of line breaks and spaces only is left out.
    void dump(long level) const;

    /// Prints the subtree as `dump` does, all text included, and gives every element in it the
    /// attribute PARSELEVEL with its depth, counted from `level`.
    void dumpParseLevel(long level);

    /// For the library: the implementation object, which the handle keeps, or null.
    PelDOMNodeImp* getNodeImp() const noexcept { return imp; }

    /// For the library: the content of an element, text or document, which the handle keeps; else
    /// null.
    PelDOMNodeContentImp* getContentImp() const noexcept;

protected:
    /// Refers to the node of `other` from now on, and takes its status. When no memory is left for
    /// that, the exception finds this handle unchanged.
    void assign(const PelDOMNode& other);

    /// What the assignment operators do: the trace, then `assign` unless `rhs` is this handle.
    void assignTraced(const char16_t* trace, const PelDOMNode& rhs);

    /// What the move assignments do: the trace, then it takes the node over.
    void takeTraced(const char16_t* trace, PelDOMNode& rhs) noexcept;

private:
    PelDOMNodeImp* imp;
    PelDOM::Error errorStatus;
};
