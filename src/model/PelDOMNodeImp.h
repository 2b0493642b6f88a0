// SPDX-License-Identifier: MIT
#pragma once

#include <qrndom/PelDOM.h>

#include <type_traits>
#include <utility>

class PelDOMDocument;
class PelDOMNode;
class PelDOMNodeImp;
class PelDOMNodeList;
class PelDOMNodeListImp;

/// The base of the content interfaces: one for elements, texts and documents each. Its node is that
/// of the node implementation that owns it.
class PelDOMNodeContentImp {
public:
    explicit PelDOMNodeContentImp(PelDOMNodeImp* owner) noexcept : nodeImp(owner) {}
    PelDOMNodeContentImp(const PelDOMNodeContentImp&) = delete;
    PelDOMNodeContentImp& operator=(const PelDOMNodeContentImp&) = delete;
    virtual ~PelDOMNodeContentImp() = default;

    void setNodeImp(PelDOMNodeImp* owner) noexcept { nodeImp = owner; }
    PelDOMNodeImp* getNodeImp() const noexcept { return nodeImp; }

private:
    PelDOMNodeImp* nodeImp;
};

/// What stands behind a node handle. The order of the virtual operations is fixed.
///
/// Owns     its content object, if its node's type has one.
/// Lives    until the handle that owns it lets go of it.
class PelDOMNodeImp {
public:
    PelDOMNodeImp(const PelDOMNodeImp&) = delete;
    PelDOMNodeImp& operator=(const PelDOMNodeImp&) = delete;

    /// Assigns a handle to the owning document to `out`; NULL_NODE when there is no node.
    virtual PelDOM::Error getOwnerDocument(PelDOMDocument& out) = 0;

    /// Makes the child's node the last child of this one; NULL_NODE when either has no node.
    virtual PelDOM::Error appendChild(PelDOMNode& child) = 0;

    /// Assigns a handle to the parent to `out`.
    virtual PelDOM::Error getParentNode(PelDOMNode& out) = 0;

    virtual PelDOM::NodeType getNodeType() = 0;

    /// Assigns the live list of children to `out`.
    virtual PelDOM::Error getChildNodes(PelDOMNodeList& out) = 0;

    /// May throw; the handles drop what it throws.
    virtual ~PelDOMNodeImp() noexcept(false);

    /// A new object over the same node, with content of its own, for the caller to own.
    virtual PelDOMNodeImp* clone() = 0;

    /// A new content object for a node of that type, for the caller to own: a PelDOMElementImp for
    /// an element, a PelDOMTextImp for a text, a PelDOMDocumentImp for a document, else null.
    virtual PelDOMNodeContentImp* createContentImp(const PelDOM::NodeType& type) = 0;

    /// A node as seen from another one.
    enum class Relative {
        OWNER_DOCUMENT,
        PARENT,
        FIRST_CHILD,
        LAST_CHILD,
        NEXT_SIBLING,
        PREVIOUS_SIBLING
    };

    // The following operations never write to the log.

    /// Equal for all objects over one node, and for no others; null over none.
    virtual const void* getIdentity() const noexcept { return this; }

    /// A new object over a relative, for the caller to own; null when there is none.
    virtual PelDOMNodeImp* getRelative(Relative /*which*/) const { return nullptr; }

    virtual bool hasChildNodes() const { return false; }

    /// Empty without a node and for kinds of node that have no such thing.
    virtual PelString getNodeName() const { return {}; }
    virtual PelString getNodeValue() const { return {}; }
    virtual PelString getTextContent() const { return {}; }

    /// NULL_NODE without a node, INVALID_VALUE for kinds of node that have no such thing and for
    /// what XML forbids.
    virtual PelDOM::Error setNodeValue(const PelString& /*value*/) { return PelDOM::INVALID_VALUE; }
    virtual PelDOM::Error setTextContent(const PelString& /*text*/) {
        return PelDOM::INVALID_VALUE;
    }

    /// New objects over live lists, for the caller to own: of the children, and of the elements
    /// below with a tag name. Null without a node.
    virtual PelDOMNodeListImp* listChildren() const { return nullptr; }
    virtual PelDOMNodeListImp* listElements(const PelString& /*name*/) const { return nullptr; }

    /// The changes of structure: NULL_NODE where a node is missing that has to be there,
    /// INVALID_VALUE where XML or the DOM forbids the change.
    virtual PelDOM::Error insertBefore(const PelDOMNode& /*child*/, const PelDOMNode& /*before*/) {
        return PelDOM::NULL_NODE;
    }
    virtual PelDOM::Error replaceChild(const PelDOMNode& /*child*/, const PelDOMNode& /*old*/) {
        return PelDOM::NULL_NODE;
    }
    virtual PelDOM::Error removeChild(const PelDOMNode& /*child*/) { return PelDOM::NULL_NODE; }

    /// A new object over a copy without a parent, for the caller to own; null for kinds of which a
    /// document has one at most.
    virtual PelDOMNodeImp* copyNode(bool /*deep*/) const { return nullptr; }

    /// Where the node stood in its source; line 0 where that is not known.
    struct Position {
        unsigned long line = 0;
        unsigned long column = 0;
    };
    virtual Position getPosition() const { return {}; }

    PelDOMNodeContentImp* getContentImp() const noexcept { return content; }

protected:
    /// Takes ownership of `nodeContent`, which may be null, and becomes its node.
    explicit PelDOMNodeImp(PelDOMNodeContentImp* nodeContent) noexcept;

    /// For a node whose content is a member: sets it; with null, before the member is destroyed.
    void setContentImp(PelDOMNodeContentImp* member) noexcept;

private:
    PelDOMNodeContentImp* content;
};

/// Calls an operation of the object behind a handle. Where there is none, returns NULL_NODE,
/// NO_NODE or an empty value.
template <class Imp, class Operation, class... Arguments>
std::invoke_result_t<Operation, Imp&, Arguments&&...> callImp(Imp* imp, Operation operation,
                                                              Arguments&&... arguments) {
    using Result = std::invoke_result_t<Operation, Imp&, Arguments&&...>;
    if (imp != nullptr)
        return (imp->*operation)(std::forward<Arguments>(arguments)...);
    if constexpr (std::is_same_v<Result, PelDOM::Error>)
        return PelDOM::NULL_NODE;
    else
        return Result();
}
