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
    /// Takes ownership of `implementation`; a null handle without one.
    explicit PelDOMText(PelDOMNodeImp* implementation = nullptr);

    /// A second handle to the same node.
    PelDOMText(const PelDOMText& orig);

    /// A handle to the node of `node` as a text, after its type was found to be TEXT_NODE. Where it
    /// is of another kind, the operations below answer as those of a null handle do.
    explicit PelDOMText(const PelDOMNode& node);

    /// Takes the node over and leaves `orig` a null handle.
    PelDOMText(PelDOMText&& orig) noexcept;

    /// The same from a node handle, with the kinds that fit as above.
    explicit PelDOMText(PelDOMNode&& node) noexcept;

    /// Lets go of the node; the tree goes with the last handle into it.
    ~PelDOMText() override;

    /// As PelDOMNode's: the value of the expression is `rhs`.
    PelDOMText& operator=(PelDOMText& rhs);

    /// The same for const handles and temporaries.
    const PelDOMText& operator=(const PelDOMText& rhs);

    /// The same from a node handle, as by the conversion above: `text = node`.
    PelDOMNode& operator=(PelDOMNode& rhs);

    /// The same for const handles and temporaries.
    const PelDOMNode& operator=(const PelDOMNode& rhs);

    /// Takes the node of `rhs` over and leaves `rhs` a null handle. The value is this handle.
    PelDOMText& operator=(PelDOMText&& rhs) noexcept;

    /// The same from a node handle.
    PelDOMText& operator=(PelDOMNode&& rhs) noexcept;

    /// Replaces the text. INVALID_VALUE for an empty one, which changes nothing: a text cannot be
    /// emptied. INTERNAL_ERROR for a null handle.
    virtual PelDOM::Error setValue(const PelString& value);

    /// The whole text, white space and line breaks included; empty for a null handle.
    virtual const PelString getValue();

private:
    PelDOMTextImp* imp() const;
};
