// SPDX-License-Identifier: MIT
#pragma once

#include <qrndom/PelDOMNode.h>

class PelDOMTextImp;

/// A handle to one text node: its character data.
///
/// Owns     one implementation object, or none; the tree is shared with every handle into it.
/// Lives    as long as the caller likes; the tree outlives the document handle it came from.
/// Threads  one thread at a time for all handles into one tree; separate trees are independent.
/// Errors   codes of PelDOM::Error.
/// Cost     reading copies the text.
class QRNDOM_API PelDOMText : public PelDOMNode {
public:
    PelDOMText(const PelDOMText& orig);     ///< A second handle to the same node.
    PelDOMText(PelDOMText&& orig) noexcept; ///< Leaves `orig` a null handle.

    /// A handle to the node of `node` as a text. Where it is of another kind than TEXT_NODE,
    /// the operations below answer as those of a null handle do.
    explicit PelDOMText(const PelDOMNode& node);
    explicit PelDOMText(PelDOMNode&& node) noexcept; ///< The same; leaves `node` a null handle.

    /// A null handle. The library's own calls pass an object, which the handle then owns.
    explicit PelDOMText(PelDOMNodeImp* implementation = nullptr);

    /// Lets go of the node; the tree goes with the last handle into it.
    ~PelDOMText() override;

    /// As PelDOMNode's: the value of the expression is `rhs`, of a move this handle. From a node
    /// handle as by the constructor above: `text = node`.
    PelDOMText& operator=(PelDOMText& rhs);
    const PelDOMText& operator=(const PelDOMText& rhs); ///< For const handles.
    PelDOMNode& operator=(PelDOMNode& rhs);             ///< From a node handle.
    const PelDOMNode& operator=(const PelDOMNode& rhs); ///< From a const node handle.
    PelDOMText& operator=(PelDOMText&& rhs) noexcept;   ///< Leaves `rhs` a null handle.
    PelDOMText& operator=(PelDOMNode&& rhs) noexcept;   ///< The same from a node handle.

    /// Replaces the text. INVALID_VALUE for an empty one, which changes nothing: a text cannot be
    /// emptied. INTERNAL_ERROR for a null handle. The text ends at its first U+0000, and what
    /// follows is lost with SUCCESS; setNodeValue refuses it.
    virtual PelDOM::Error setValue(const PelString& value);

    /// The whole text, white space and line breaks included; empty for a null handle.
    virtual const PelString getValue();

private:
    PelDOMTextImp* imp() const;
};
