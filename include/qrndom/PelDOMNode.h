// SPDX-License-Identifier: MIT
#pragma once

#include <qrndom/PelDOM.h>
#include <qrndom/export.h>

class PelDOMDocument;
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
    /// Takes ownership of `implementation`; a null handle (status NO_IMPLEMENTATION) without one.
    explicit PelDOMNode(PelDOMNodeImp* implementation = nullptr);

    /// A second handle to the same node, with the same status.
    PelDOMNode(const PelDOMNode& orig);

    /// Takes the node over and leaves `orig` a null handle.
    PelDOMNode(PelDOMNode&& orig) noexcept;

    /// Lets go of the node; the tree goes with the last handle into it.
    virtual ~PelDOMNode();

    /// Lets go of the own node and refers to that of `rhs`, as a copy would. The value of the
    /// expression is `rhs`, not this handle.
    PelDOMNode& operator=(PelDOMNode& rhs);

    /// The same for const handles and temporaries.
    const PelDOMNode& operator=(const PelDOMNode& rhs);

    /// Lets go of the own node, takes over that of `rhs` and leaves `rhs` a null handle. The value
    /// of the expression is this handle.
    PelDOMNode& operator=(PelDOMNode&& rhs) noexcept;

    /// 1 for a null handle, else 0.
    int isNull() const noexcept { return imp == nullptr ? 1 : 0; }

    /// Whether this is no null handle.
    explicit operator bool() const noexcept { return imp != nullptr; }

    /// Whether both handles refer to the same node, or both to none.
    bool isSameNode(const PelDOMNode& other) const noexcept;

    /// As isSameNode.
    friend bool operator==(const PelDOMNode& left, const PelDOMNode& right) noexcept {
        return left.isSameNode(right);
    }

    /// Whether they refer to different nodes.
    friend bool operator!=(const PelDOMNode& left, const PelDOMNode& right) noexcept {
        return !left.isSameNode(right);
    }

    /// NO_IMPLEMENTATION for a null handle, else SUCCESS. Set when the handle is made or assigned;
    /// no operation changes it.
    PelDOM::Error getErrorStatus() const noexcept { return errorStatus; }

    /// The implementation object, which the handle keeps; null for a null handle.
    PelDOMNodeImp* getNodeImp() const noexcept { return imp; }

    /// The content object, which the handle keeps; null unless the node is an element, a text or
    /// a document.
    PelDOMNodeContentImp* getContentImp() const noexcept;

    /// The kind of node; NO_NODE for a null handle.
    PelDOM::NodeType getNodeType() const;

    /// Makes `out` a handle to the document that the node belongs to. NULL_NODE for a null handle,
    /// which leaves `out` as it was. A document belongs to none: its `out` is of type NO_NODE.
    PelDOM::Error getOwnerDocument(PelDOMDocument& out) const;

    /// Makes the node of `child` the last child of this node, taking it from its old parent if it
    /// has one. `child` goes on referring to it.
    ///
    /// NULL_NODE when either handle is null. Where the DOM forbids the append (a node into itself
    /// or its own descendants, a second root element, text other than white space at the top of a
    /// document, a node of another document), the engine's DOM exception reaches the caller and
    /// nothing has changed.
    PelDOM::Error appendChild(PelDOMNode& child);

    /// The same for const handles and temporaries.
    PelDOM::Error appendChild(const PelDOMNode& child);

    /// Puts the node of `child` in front of that of `before`, a child of this node; a null
    /// `before`: makes it the last child. A node that has a parent is taken from there; one in
    /// front of itself stays where it is.
    ///
    /// NULL_NODE when this handle or `child` is null. INVALID_VALUE where appendChild throws, where
    /// `before` is no child of this node, and where a document would get its root before its
    /// document type, or anything before its XML declaration. Nothing has changed then.
    ///
    /// Takes a few steps, whatever the number of children; a node with children is looked for among
    /// the ancestors of this one first, in a step for each.
    PelDOM::Error insertBefore(const PelDOMNode& child, const PelDOMNode& before);

    /// Puts the node of `child` into the place of that of `old`, a child of this node, which is
    /// left without a parent. A node that replaces itself stays where it is.
    ///
    /// NULL_NODE when one of the handles is null; otherwise as insertBefore.
    PelDOM::Error replaceChild(const PelDOMNode& child, const PelDOMNode& old);

    /// Takes the node of `child`, with all below it, from this node. It belongs to the document
    /// still, without a parent, and may be put back elsewhere.
    ///
    /// NULL_NODE when one of the handles is null, INVALID_VALUE when it is no child of this node.
    PelDOM::Error removeChild(const PelDOMNode& child);

    /// A copy of this node, with its attributes and, if `deep`, with all below it, in the same
    /// document and without a parent. A null handle for a null handle, and for a document, a
    /// document type and an XML declaration, of which a document has one at most: to copy a whole
    /// document, create another and import the root.
    PelDOMNode cloneNode(bool deep) const;

    /// Makes `out` a handle to the parent; to none (type NO_NODE) for a node without one. NULL_NODE
    /// for a null handle, which leaves `out` as it was.
    PelDOM::Error getParentNode(PelDOMNode& out) const;

    /// Makes `out` the live list of this node's children. NULL_NODE for a null handle, which leaves
    /// `out` as it was.
    PelDOM::Error getChildNodes(PelDOMNodeList& out) const;

    /// The document that the node belongs to. Like each of the following, a null handle where there
    /// is none, and for a null handle; it costs one implementation object.
    PelDOMDocument getOwnerDocument() const;

    PelDOMNode getParentNode() const;      ///< The node that this one is a child of.
    PelDOMNode getFirstChild() const;      ///< The first of its children.
    PelDOMNode getLastChild() const;       ///< The last of its children.
    PelDOMNode getNextSibling() const;     ///< The child of its parent that follows this one.
    PelDOMNode getPreviousSibling() const; ///< The one that stands before this one.

    /// The live list of this node's children.
    PelDOMNodeList getChildNodes() const;

    /// Whether there is a child of any kind.
    bool hasChildNodes() const;

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

    /// Prints the subtree into the diagnostic log: a line for each node and attribute, children
    /// between brackets and two spaces further in. `level` is the depth of this node; 0 and 1 print
    /// it without indentation. Text of line breaks and spaces only is left out.
    void dump(long level) const;

    /// Prints the subtree as `dump` does, all text included, and gives every element in it the
    /// attribute PARSELEVEL with its depth, counted from `level`.
    void dumpParseLevel(long level);

protected:
    /// Refers to the node of `other` from now on, and takes its status. When no memory is left for
    /// that, the exception finds this handle unchanged.
    void assign(const PelDOMNode& other);

    /// What every assignment operator of a handle does: the trace, then `assign` unless `rhs` is
    /// this handle itself.
    void assignTraced(const char16_t* trace, const PelDOMNode& rhs);

    /// What every move assignment of a handle does: the trace, then it takes the node over.
    void takeTraced(const char16_t* trace, PelDOMNode& rhs) noexcept;

private:
    PelDOMNodeImp* imp;
    PelDOM::Error errorStatus;
};
