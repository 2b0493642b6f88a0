// SPDX-License-Identifier: MIT
#pragma once

#include <qrndom/PelDOMDocument.h>
#include <qrndom/PelDOMElement.h>
#include <qrndom/PelDOMNode.h>
#include <qrndom/PelString.h>
#include <qrndom/export.h>

/// A builder: fills a document through a cursor, without handling nodes.
///
/// Owns     three handles: the document, the current node and the current element, to which it
///          adds. The tree is shared with every handle into it.
/// Lives    as long as the caller likes, and keeps the tree alive as handles do.
/// Threads  one thread at a time for the filer and all handles into its tree.
/// Errors   codes of PelDOM::Error from the current element; the engine's DOM exceptions pass
///          through from names that XML forbids.
/// Cost     as the current element's operations.
class QRNDOM_API PelDOMFiler {
public:
    /// A null element handle, there from the library's load to its unload.
    static PelDOMElement InvalidElement;

    /// Starts on `document` as the current node and its root element as the current element.
    explicit PelDOMFiler(PelDOMDocument& document);

    /// A copy has a cursor of its own in the same document.
    PelDOMFiler(const PelDOMFiler& other);

    /// Lets go of its handles; what it built stays.
    virtual ~PelDOMFiler();

    /// Takes over the document and the place of the cursor.
    PelDOMFiler& operator=(const PelDOMFiler& other);

    /// The document's handle itself: assigning to it changes nothing else here.
    PelDOMDocument& document() noexcept { return documentField; }

    /// The current node's handle itself: assigning to it does not move the current element.
    PelDOMNode& currentNode() noexcept { return currentNodeField; }

    /// The handle to which appendElement and setAttribute add: assigning to it moves it.
    PelDOMElement& currentElement() noexcept { return currentElementField; }

    /// Moves the cursor to `node`, and the current element too if it is an element. Always SUCCESS.
    PelDOM::Error setCurrentNode(PelDOMNode& node);

    /// Adds a last child element `name` holding `value` to the current element; the cursor stays.
    /// INVALID_VALUE for an empty name or value, NULL_NODE when the current element is null. Names
    /// and values end at their first U+0000, here and below.
    PelDOM::Error appendElement(const PelString& name, const PelString& value);

    /// The same with a number, printed by `format` (see PelString::format) or, when that is empty,
    /// as plain decimal. A format is refused with INVALID_VALUE unless it holds exactly one
    /// conversion, for whole numbers here and for reals below, with a width and precision up to
    /// 100,000; its length modifier does not matter.
    PelDOM::Error appendElement(const PelString& name, long value, PelString format = {});

    /// The same with an int.
    PelDOM::Error appendElement(const PelString& name, int value, PelString format = {});

    /// The same with a real, by default in fixed notation with six digits after the decimal point.
    PelDOM::Error appendElement(const PelString& name, double value, PelString format = {});

    /// Sets an attribute of the current element, replacing its earlier value. INVALID_VALUE for an
    /// empty name or value, NULL_NODE when the current element is null.
    PelDOM::Error setAttribute(const PelString& name, const PelString& value);

    /// The same with a number, printed as by appendElement.
    PelDOM::Error setAttribute(const PelString& name, long value, PelString format = {});

    /// The same with an int.
    PelDOM::Error setAttribute(const PelString& name, int value, PelString format = {});

    /// The same with a real.
    PelDOM::Error setAttribute(const PelString& name, double value, PelString format = {});

private:
    PelDOMDocument documentField;
    PelDOMNode currentNodeField;
    PelDOMElement currentElementField;
};
