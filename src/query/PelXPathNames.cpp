// SPDX-License-Identifier: MIT
#include "query/PelXPathNames.h"

#include <xercesc/dom/DOMAttr.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/util/XMLUni.hpp>

using Fields = PelXercesFields;
using Links = PelXercesLinks;
using Node = PelXPathTree::Node;
using Test = PelXPathTest;

namespace {

constexpr std::u16string_view declaration = u"xmlns";

Fields::Document& engineDocument(const PelXPathTree& tree) {
    return static_cast<Fields::Document&>(tree.getDocument());
}

// Names that were once there count too.
bool mayHave(const PelXPathTree& tree, std::u16string_view name) {
    return !Fields::areKnown() ||
           Fields::findName(engineDocument(tree), std::u16string(name)) != nullptr;
}

// 0 unless there is one colon, with something on both sides of it.
std::size_t colonOf(std::u16string_view name) {
    const std::size_t colon = name.find(u':');
    return colon != name.npos && colon + 1 < name.size() && name.find(u':', colon + 1) == name.npos
               ? colon
               : 0;
}

} // namespace

const XMLCh* PelXPathInherited::of(const Node& element) {
    const XMLCh* const own = ownOf(element);
    return own != nullptr ? own : above(Links::parentOf(element));
}

const XMLCh* PelXPathInherited::ownOf(const Node& element) const {
    const auto& owner = static_cast<const xercesc::DOMElement&>(element);
    if (!owner.hasAttributes())
        return nullptr;
    const xercesc::DOMAttr* const attribute = owner.getAttributeNode(name.c_str());
    return attribute != nullptr ? Links::valueOf(*attribute) : nullptr;
}

const XMLCh* PelXPathInherited::above(const Node* parent) {
    if (parent == lastParent)
        return ofLastParent;
    const XMLCh* value = nullptr;
    const Node* end = parent;
    for (; end != nullptr && PelXPathTree::isElement(*end); end = Links::parentOf(*end)) {
        tree.count();
        if (const XMLCh* const* const found = known.find(end)) {
            value = *found;
            break;
        }
        if ((value = ownOf(*end)) != nullptr) {
            known.add(end, value);
            break;
        }
    }
    for (const Node* node = parent; node != end; node = Links::parentOf(*node))
        known.add(node, value);
    lastParent = parent;
    return ofLastParent = value;
}

PelXPathNames::PelXPathNames(PelXPathTree& ownTree, std::size_t testCount)
    : tree(ownTree), tests(testCount), mayHaveDefault(mayHave(ownTree, declaration)),
      languages(ownTree, u"xml:lang") {
}

std::u16string_view PelXPathNames::lookup(const Node* element, std::u16string_view prefix) {
    if (prefix == u"xml")
        return xercesc::XMLUni::fgXMLURIName;
    if (element == nullptr || (prefix.empty() && !mayHaveDefault))
        return {};
    std::u16string key(prefix);
    auto found = declared.find(key);
    if (found == declared.end()) {
        std::u16string name(declaration);
        if (!prefix.empty())
            name.append(u":").append(prefix);
        found = declared.try_emplace(std::move(key), tree, name).first;
    }
    const XMLCh* const uri = found->second.of(*element);
    return uri != nullptr ? uri : std::u16string_view();
}

bool PelXPathNames::takes(const Test& test, const Node& node) {
    switch (test.kind) {
    case Test::ANY_NODE:
        return PelXPathTree::kindOf(node) != PelXPathTree::NONE;
    case Test::TEXT:
        return PelXPathTree::kindOf(node) == PelXPathTree::TEXT;
    case Test::COMMENT:
        return PelXPathTree::kindOf(node) == PelXPathTree::COMMENT;
    case Test::INSTRUCTION:
        return PelXPathTree::kindOf(node) == PelXPathTree::INSTRUCTION;
    case Test::TARGET:
        return PelXPathTree::kindOf(node) == PelXPathTree::INSTRUCTION &&
               node.getNodeName() == test.name;
    case Test::ANY_NAME:
        return PelXPathTree::isElement(node);
    case Test::NAME:
        if (!test.prefix)
            return takesPlainName(test, node);
        [[fallthrough]];
    default:
        return PelXPathTree::isElement(node) && takesName(test, node);
    }
}

bool PelXPathNames::takesAttribute(const Test& test, const Node& attribute) {
    switch (test.kind) {
    case Test::ANY_NODE:
    case Test::ANY_NAME:
        return !isDeclaration(attribute.getNodeName());
    case Test::ANY_OF_NAMESPACE:
    case Test::NAME:
        return !isDeclaration(attribute.getNodeName()) && takesName(test, attribute);
    default:
        return false;
    }
}

bool PelXPathNames::isDeclaration(std::u16string_view name) {
    return name.substr(0, declaration.size()) == declaration &&
           (name.size() == declaration.size() || name[declaration.size()] == u':');
}

PelXPathNames::Known& PelXPathNames::lookUp(const Test& test) {
    Known& known = tests[test.place];
    if (!known.isLookedUp && Fields::areKnown()) {
        known.name = Fields::findName(engineDocument(tree), test.name);
        known.isAnywhere = known.name != nullptr;
    }
    known.isLookedUp = true;
    return known;
}

bool PelXPathNames::mayTake(const Test& test) {
    return test.kind != Test::NAME || test.prefix || lookUp(test).isAnywhere;
}

// Of an element whose name is to be in no namespace.
bool PelXPathNames::takesPlainName(const Test& test, const Node& node) {
    if (!PelXPathTree::isElement(node))
        return false;
    Known& known = tests[test.place];
    const XMLCh* const name = Links::nameOf(node);
    if (known.name == nullptr) {
        if (name != test.name)
            return false;
        known.name = name;
    }
    return name == known.name && (!mayHaveDefault || lookup(&node, {}).empty());
}

bool PelXPathNames::takesName(const Test& test, const Node& node) {
    if (test.kind == Test::ANY_OF_NAMESPACE)
        return namespaceOf(node) == uris[*test.prefix];
    Known& known = tests[test.place];
    const XMLCh* const name = node.getNodeName();
    if (name == known.otherName)
        return false;
    if (name != known.name) {
        const std::u16string_view view = name;
        const std::size_t colon = colonOf(view);
        if (view != test.name && (colon == 0 || view.substr(colon + 1) != test.name)) {
            known.otherName = name;
            return false;
        }
        known.name = name;
    }
    const std::u16string_view uri = namespaceOf(node);
    return test.prefix ? uri == uris[*test.prefix] && localNameOf(node) == test.name
                       : uri.empty() && name == test.name;
}

// The element whose declarations hold for a node.
const Node* PelXPathNames::scopeOf(const Node& node) {
    const Node* const scope = PelXPathTree::isElement(node) ? &node : PelXPathTree::parentOf(node);
    return scope != nullptr && PelXPathTree::isElement(*scope) ? scope : nullptr;
}

const XMLCh* PelXPathNames::languageOf(const Node& node) {
    const Node* const scope = scopeOf(node);
    return scope != nullptr ? languages.of(*scope) : nullptr;
}

// A prefix that stands for nothing is a part of the local name.
std::size_t PelXPathNames::prefixLengthOf(std::u16string_view name, const Node& node,
                                          std::u16string_view& uri) {
    const std::size_t colon = colonOf(name);
    if (colon != 0)
        uri = lookup(scopeOf(node), name.substr(0, colon));
    return uri.empty() ? 0 : colon + 1;
}

std::u16string_view PelXPathNames::nameOf(const Node& node) {
    switch (PelXPathTree::kindOf(node)) {
    case PelXPathTree::ELEMENT:
    case PelXPathTree::ATTRIBUTE:
    case PelXPathTree::INSTRUCTION:
        return node.getNodeName();
    default:
        return {};
    }
}

std::u16string_view PelXPathNames::localNameOf(const Node& node) {
    const std::u16string_view name = nameOf(node);
    std::u16string_view uri;
    return PelXPathTree::kindOf(node) == PelXPathTree::INSTRUCTION
               ? name
               : name.substr(prefixLengthOf(name, node, uri));
}

std::u16string_view PelXPathNames::namespaceOf(const Node& node) {
    const bool isElement = PelXPathTree::isElement(node);
    if (!isElement && !PelXPathTree::isAttribute(node))
        return {};
    const std::u16string_view name = node.getNodeName();
    std::u16string_view uri;
    if (colonOf(name) != 0)
        prefixLengthOf(name, node, uri);
    else if (isElement)
        uri = lookup(&node, {});
    return uri;
}
