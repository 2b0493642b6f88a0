// SPDX-License-Identifier: MIT
#pragma once

#include "query/PelXPathExpression.h"
#include "query/PelXPathTable.h"
#include "query/PelXPathTree.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

/// What the nearest element has as an attribute of a name, of an element and those above it. What
/// was found on the way is kept, so a tree however deep is climbed once.
class PelXPathInherited {
public:
    using Node = PelXPathTree::Node;

    PelXPathInherited(PelXPathTree& ownTree, std::u16string_view attributeName)
        : tree(ownTree), name(attributeName) {}

    /// Null where none of them has it.
    const XMLCh* of(const Node& element);

private:
    const XMLCh* ownOf(const Node& element) const;
    const XMLCh* above(const Node* element);

    PelXPathTree& tree;
    const std::u16string name;
    PelXPathTable<const XMLCh*> known;
    const Node* lastParent = nullptr;
    const XMLCh* ofLastParent = nullptr;
};

/// The names of a tree, by their namespaces, and the tests of an expression on them. A document
/// keeps equal names at one address, so a test compares addresses once it knows the one.
class PelXPathNames {
public:
    using Node = PelXPathTree::Node;

    /// For an expression with so many name tests.
    PelXPathNames(PelXPathTree& ownTree, std::size_t testCount);

    /// What the prefixes of the expression stand for, by their places.
    void setUris(std::vector<std::u16string> prefixUris) { uris = std::move(prefixUris); }

    /// What a prefix stands for at an element, which may be null; empty: nothing.
    std::u16string_view lookup(const Node* element, std::u16string_view prefix);

    /// Whether a test may take anything at all: where the tree has not a name, nothing has it.
    bool mayTake(const PelXPathTest& test);

    /// Whether a test takes a node of another kind than attributes, or an attribute. For those with
    /// no name it is the same.
    bool takes(const PelXPathTest& test, const Node& node);
    bool takesAttribute(const PelXPathTest& test, const Node& attribute);

    /// Whether that attribute declares a namespace, and so is none to an expression.
    static bool isDeclaration(std::u16string_view attributeName);

    /// Of elements, attributes and instructions; empty for others.
    std::u16string_view localNameOf(const Node& node);
    std::u16string_view namespaceOf(const Node& node);
    static std::u16string_view nameOf(const Node& node);

    /// By the nearest `xml:lang`; null where there is none.
    const XMLCh* languageOf(const Node& node);

private:
    /// A test of names as it is in this tree.
    struct Known {
        bool isLookedUp = false;
        bool isAnywhere = true;           // false: no node has such a name
        const XMLCh* name = nullptr;      // that matches, or the local part of which does
        const XMLCh* otherName = nullptr; // the latest that does not
    };

    bool takesName(const PelXPathTest& test, const Node& node);
    bool takesPlainName(const PelXPathTest& test, const Node& element);
    Known& lookUp(const PelXPathTest& test);
    std::size_t prefixLengthOf(std::u16string_view name, const Node& node,
                               std::u16string_view& uri);
    static const Node* scopeOf(const Node& node);

    PelXPathTree& tree;
    std::vector<std::u16string> uris;
    std::vector<Known> tests;
    const bool mayHaveDefault;                                      // a default namespace somewhere
    std::unordered_map<std::u16string, PelXPathInherited> declared; // by prefix
    PelXPathInherited languages;
};
