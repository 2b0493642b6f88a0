// SPDX-License-Identifier: MIT
#pragma once

#include <qrndom/PelDOMElement.h>
#include <qrndom/PelDOMNode.h>
#include <qrndom/PelDOMText.h>

class PelDOMDocumentImp;

/// A handle to a whole document: its root element, and new nodes for it.
///
/// Owns     one implementation object, or none; the tree is shared with every handle into it.
/// Lives    as long as the caller likes; the tree outlives it while other handles into it are left.
/// Threads  one thread at a time for all handles into one tree; separate trees are independent.
/// Errors   null handles from a null document; the engine's DOM exceptions pass through from names
///          that XML forbids.
/// Cost     each operation makes one implementation object.
class QRNDOM_API PelDOMDocument : public PelDOMNode {
public:
    PelDOMDocument(const PelDOMDocument& orig);     ///< A second handle to the same node.
    PelDOMDocument(PelDOMDocument&& orig) noexcept; ///< Leaves `orig` a null handle.

    /// A handle to the node of `node` as a document. Where it is of another kind than
    /// DOCUMENT_NODE, the operations below answer as those of a null handle do.
    explicit PelDOMDocument(const PelDOMNode& node);
    explicit PelDOMDocument(PelDOMNode&& node) noexcept; ///< The same; leaves `node` a null handle.

    /// A null handle. The library's own calls pass an object, which the handle then owns.
    explicit PelDOMDocument(PelDOMNodeImp* implementation = nullptr);

    /// Lets go of the node; the tree goes with the last handle into it.
    ~PelDOMDocument() override;

    /// As PelDOMNode's: the value of the expression is `rhs`, of a move this handle. From a node
    /// handle as by the constructor above: `document = node`.
    PelDOMDocument& operator=(PelDOMDocument& rhs);
    const PelDOMDocument& operator=(const PelDOMDocument& rhs); ///< For const handles.
    PelDOMNode& operator=(PelDOMNode& rhs);                     ///< From a node handle.
    const PelDOMNode& operator=(const PelDOMNode& rhs);         ///< From a const node handle.
    PelDOMDocument& operator=(PelDOMDocument&& rhs) noexcept;   ///< Leaves `rhs` a null handle.
    PelDOMDocument& operator=(PelDOMNode&& rhs) noexcept;       ///< The same from a node handle.

    /// The live list of all elements with a tag name ("*": all), in document order. A null document
    /// gives an empty handle.
    PelDOMNodeList getElementsByTagName(const PelString& name) const;

    /// The encoding that the document was read in: "UTF-8". Empty for a document that was created
    /// and for a null one.
    PelString getInputEncoding() const;

    /// The root element. A document without one gives a handle of type NO_NODE, a null document a
    /// null handle.
    PelDOMElement getDocumentElement() const;

    /// A new element that belongs to this document and has no parent yet; see
    /// PelDOMNode::appendChild. A name that XML forbids, an empty one included, ends with the
    /// engine's DOM exception; it ends at its first U+0000. A null document gives a null handle.
    virtual PelDOMElement createElement(const PelString& tagName);

    /// A new text node, possibly empty, that belongs to this document and has no parent yet. A null
    /// document gives a null handle. The text ends at its first U+0000; setNodeValue refuses one.
    virtual PelDOMText createTextNode(const PelString& text);

    /// A copy of a node of this or any other document, with its attributes and, if `deep`, with all
    /// below it, that belongs to this document and has no parent yet. Attributes that came from the
    /// other document's type are left out, those that this one's type adds are there. A null handle
    /// as from PelDOMNode::cloneNode, for a null document, and where a name or a character in it
    /// is only allowed in the other document's version of XML.
    PelDOMNode importNode(const PelDOMNode& source, bool deep);

    /// A new comment that has no parent yet. A null handle for a null document, and for text that
    /// XML forbids in a comment: `--`, `-` at its end, or characters such as U+0000.
    PelDOMNode createComment(const PelString& data);

    /// A new CDATA section in the same way; `]]>` is forbidden in it.
    PelDOMNode createCDATASection(const PelString& data);

    /// A new processing instruction in the same way; the target has to be a name other than `xml`,
    /// and `?>` is forbidden in the data.
    PelDOMNode createProcessingInstruction(const PelString& target, const PelString& data);

private:
    PelDOMDocumentImp* imp() const;
};
