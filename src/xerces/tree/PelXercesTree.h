// SPDX-License-Identifier: MIT
#pragma once

#include "xerces/engine/PelXercesEngine.h"
#include "xerces/engine/PelXercesMemory.h"
#include "xerces/tree/PelXercesAttributeOrder.h"
#include "xerces/tree/PelXercesChangeLog.h"
#include "xerces/tree/PelXercesKeptSource.h"
#include "xerces/tree/PelXercesNodePool.h"
#include "xerces/tree/PelXercesOrphans.h"

#include <qrndom/PelDOM.h>

#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMNode.hpp>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>

class PelXercesNodeRef;

/// How many children nodes with many of them had when they were read: valid until the tree changes.
class PelXercesChildCounts {
public:
    void add(const xercesc::DOMNode& parent, std::size_t count) {
        if (count >= many)
            counts[&parent] = count;
    }

    /// 0 where it is not known.
    std::size_t of(const xercesc::DOMNode& parent) const {
        const auto found = counts.find(&parent);
        return found != counts.end() ? found->second : 0;
    }

private:
    static constexpr std::size_t many = 256;

    std::unordered_map<const xercesc::DOMNode*, std::size_t> counts;
};

/// The attributes that a document type declares to be IDs: each element's name, and its attribute.
using PelXercesDeclaredIds = std::multimap<std::u16string, std::u16string, std::less<>>;

/// An engine document that is not shared yet.
struct PelXercesNewDocument {
    PelXercesDocumentPtr document{};
    PelXercesChildCounts childCounts{};
    std::unique_ptr<PelXercesKeptSource> source{}; // null: not kept
    bool isNotStandalone = false;                  // says its declaration
    PelXercesDeclaredIds declaredIds{};
};

/// An engine document, shared by all references to its nodes: the last one releases it. Keeps the
/// engine up as long as it lives.
class PelXercesTree {
public:
    /// Shares a document; returns the first reference, to the document node. `engine` kept the
    /// engine up while the document was made.
    static PelXercesNodeRef share(const PelXercesEngine::Share& engine,
                                  PelXercesNewDocument document);

    PelXercesTree(const PelXercesTree&) = delete;
    PelXercesTree& operator=(const PelXercesTree&) = delete;

    xercesc::DOMDocument* getDocument() const noexcept { return document.get(); }

    /// What the document was read from; null where that is not kept.
    PelXercesKeptSource* getSource() const noexcept { return source.get(); }

    /// Whether the declaration that was read says standalone="no".
    bool saysNotStandalone() const noexcept { return isNotStandalone; }

    const PelXercesDeclaredIds& getDeclaredIds() const noexcept { return declaredIds; }

    /// How many children a node has; 0 if they have to be counted.
    std::size_t knownChildCount(const xercesc::DOMNode& parent) const {
        return changes.hasAny() ? 0 : childCounts.of(parent);
    }

    /// Tells lists, loops and the kept source of a change of structure or of a name.
    void record(const PelXercesChangeLog::Change& change) {
        changes.record(change);
        if (source)
            recordInSource(change);
    }

    /// Changes the data of a text, CDATA section, comment or instruction; the same data are no
    /// change.
    void setData(xercesc::DOMNode& node, const XMLCh* data);

    /// A new attribute, or one that only a declaration gave, becomes the last that was written.
    void numberAttribute(xercesc::DOMAttr& attribute);

    /// A new attribute takes the place of a written one.
    void copyNumber(xercesc::DOMAttr& former, xercesc::DOMAttr& attribute);

    /// A new text says what a former one said, and stands for it in the kept source.
    void passPlace(const xercesc::DOMNode& former, const xercesc::DOMNode& node);

    PelXercesChangeLog changes;

private:
    friend class PelXercesNodeRef;
    friend class PelXercesOrphans;

    PelXercesTree(const PelXercesEngine::Share& engine, PelXercesNewDocument&& own)
        : engineShare(engine), document(std::move(own.document)),
          childCounts(std::move(own.childCounts)), source(std::move(own.source)),
          isNotStandalone(own.isNotStandalone), declaredIds(std::move(own.declaredIds)),
          lastNumber(PelXercesAttributeOrder::mostInTag), nodes(*document), orphans(*this) {}

    void recordInSource(const PelXercesChangeLog::Change& change);
    void renumber();

    const PelXercesEngine::Share engineShare; // outlives the document
    const PelXercesDocumentPtr document;
    const PelXercesChildCounts childCounts;
    const std::unique_ptr<PelXercesKeptSource> source;
    const bool isNotStandalone;
    const PelXercesDeclaredIds declaredIds;
    std::uint32_t lastNumber;           // of an attribute
    PelXercesNodeRef* newest = nullptr; // plain: a tree is used by one thread at a time

public:
    PelXercesNodePool nodes;
    PelXercesOrphans orphans;
};

/// A reference to one node of a tree, or to no node. The tree lists all references into it: the
/// last one deletes it, and no node is recycled that one of them leads to.
class PelXercesNodeRef {
public:
    PelXercesNodeRef() noexcept = default;

    /// A reference to `engineNode` of `ownTree`; to no node when it is null.
    PelXercesNodeRef(PelXercesTree& ownTree, xercesc::DOMNode* engineNode) noexcept
        : node(engineNode) {
        join(engineNode != nullptr ? &ownTree : nullptr);
    }

    PelXercesNodeRef(const PelXercesNodeRef& other) noexcept : node(other.node) {
        join(other.tree);
    }

    PelXercesNodeRef& operator=(const PelXercesNodeRef& other) noexcept {
        const PelXercesNodeRef former(*this); // both may be the last
        leave();
        join(other.tree);
        node = other.node;
        return *this;
    }

    ~PelXercesNodeRef() { leave(); }

    explicit operator bool() const noexcept { return node != nullptr; }
    xercesc::DOMNode* operator->() const noexcept { return node; }

    xercesc::DOMNode* getNode() const noexcept { return node; }

    /// The tree of a reference to a node.
    PelXercesTree& getTree() const noexcept { return *tree; }

    xercesc::DOMDocument* getDocument() const noexcept { return tree->getDocument(); }

    /// The node as the engine class of its type; unchecked.
    template <class EngineNode>
    EngineNode* as() const noexcept {
        return static_cast<EngineNode*>(node);
    }

    /// A reference to another node of the same tree, or to none.
    PelXercesNodeRef to(xercesc::DOMNode* other) const noexcept {
        return other != nullptr ? PelXercesNodeRef(*tree, other) : PelXercesNodeRef();
    }

    /// The next older reference into the same tree; null after the last.
    const PelXercesNodeRef* getOlder() const noexcept { return older; }

    /// NO_NODE for a reference to none.
    PelDOM::NodeType getType() const { return typeOf(node); }
    static PelDOM::NodeType typeOf(const xercesc::DOMNode* engineNode);

private:
    void join(PelXercesTree* ownTree) noexcept {
        tree = ownTree;
        if (tree == nullptr)
            return;
        newer = nullptr;
        older = std::exchange(tree->newest, this);
        if (older != nullptr)
            older->newer = this;
    }

    void leave() noexcept {
        if (tree == nullptr)
            return;
        // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDelete): the last one deletes
        (newer != nullptr ? newer->older : tree->newest) = older;
        if (older != nullptr)
            older->newer = newer;
        else if (newer == nullptr)
            delete tree;
    }

    PelXercesTree* tree = nullptr;
    xercesc::DOMNode* node = nullptr;
    PelXercesNodeRef* newer = nullptr;
    PelXercesNodeRef* older = nullptr;
};
