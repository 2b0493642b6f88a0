// SPDX-License-Identifier: MIT
#include "read/scan/PelPlainTree.h"

#include "xerces/engine/PelXercesMemory.h"

#include <xercesc/dom/DOMImplementation.hpp>
#include <xercesc/util/XMLUni.hpp>

#include <algorithm>

using Fields = PelXercesFields;
using xercesc::DOMDocumentImpl;
using xercesc::DOMElementImpl;
using xercesc::DOMMemoryManager;

namespace {

// Gives a node, whose text is too long for its constructor, what was put together for it.
template <class Node>
Node& withText(Node* node, PelPlainText& text) {
    if (text.isLong())
        Fields::bufferOf(*node) = text.take();
    return *node;
}

const XMLCh* shortOf(PelPlainText& text) {
    return text.isLong() ? u"" : text.terminated();
}

} // namespace

PelPlainTree::PelPlainTree(const XMLCh* systemId, const XMLCh* encoding,
                           const PelXercesReadLimits::Bounds& readBounds)
    : bounds(readBounds), owner(xercesc::DOMImplementation::getImplementation()->createDocument(
                              &PelXercesMemory::get())),
      document(static_cast<DOMDocumentImpl&>(*owner)), nodes(document) {
    document.setErrorChecking(false);
    document.setDocumentURI(systemId);
    document.setInputEncoding(encoding);
}

void PelPlainTree::declare(const std::u16string& encoding, bool isStandalone) {
    document.setXmlStandalone(isStandalone);
    document.setXmlVersion(xercesc::XMLUni::fgVersion1_0);
    document.setXmlEncoding(encoding.c_str());
    if (!encoding.empty())
        document.setInputEncoding(encoding.c_str());
}

PelXercesNewDocument PelPlainTree::take() {
    document.setErrorChecking(true);
    return {std::move(owner), std::move(childCounts)};
}

void PelPlainTree::openElement(const Name& name) {
    DOMElementImpl& element = nodes.makeElement(name.pooled);
    if (levels.empty())
        document.appendChild(&element);
    else
        append(element);
    levels.push_back({&element, nullptr, nullptr, nullptr, 0});
}

void PelPlainTree::addAttribute(const Name& name, PelPlainText& value) {
    nodes.addAttribute(*levels.back().element, name.pooled, makeText(value));
}

bool PelPlainTree::endTag() {
    return !isNearLimits() && nodes.endAttributes(*Fields::attributesOf(*levels.back().element));
}

// The engine keeps a tag's attributes in a table that it goes through after each tag, and that
// never shrinks.
bool PelPlainTree::isNearLimits() {
    constexpr std::size_t few = 256;
    attributeWork += mostPlaces;
    if (attributeWork > bounds.work)
        return true;
    const auto& attributes = nodes.getAdded();
    if (attributes.size() <= few)
        return false;
    mostPlaces = std::max(mostPlaces, attributes.size() / 2);
    PelXercesNameTable table(PelXercesAllocations::tagAttributes);
    return std::any_of(attributes.begin(), attributes.end(), [&](const auto* attribute) {
        return table.add(Fields::nameOf(*attribute)) > bounds.alikeNames;
    });
}

void PelPlainTree::closeElement() {
    const Level& level = levels.back();
    if (level.first != nullptr)
        level.first->previousSibling = level.last;
    childCounts.add(*level.element, level.count);
    levels.pop_back();
}

void PelPlainTree::addText(PelPlainText& text) {
    append(makeText(text));
}

void PelPlainTree::addCdata(PelPlainText& text) {
    append(withText(new (&document, DOMMemoryManager::CDATA_SECTION_OBJECT)
                        xercesc::DOMCDATASectionImpl(&document, shortOf(text)),
                    text));
}

void PelPlainTree::addComment(PelPlainText& text) {
    append(withText(new (&document, DOMMemoryManager::COMMENT_OBJECT)
                        xercesc::DOMCommentImpl(&document, shortOf(text)),
                    text));
}

void PelPlainTree::addInstruction(const std::u16string& target, PelPlainText& data) {
    append(withText(static_cast<xercesc::DOMProcessingInstructionImpl*>(
                        document.createProcessingInstruction(target.c_str(), shortOf(data))),
                    data));
}

// As the engine's appendChildFast, but for the first child's link to the last, which is set when
// the element closes.
template <class Node>
void PelPlainTree::append(Node& node) {
    if (levels.empty()) {
        Fields::parentOf(document).appendChildFast(&node);
        return;
    }
    Level& level = levels.back();
    xercesc::DOMNodeImpl& inner = Fields::nodeOf(node);
    xercesc::DOMChildNode& links = Fields::linksOf(node);
    Fields::ownerOf(inner) = level.element;
    inner.isOwned(true);
    if (level.first == nullptr) {
        Fields::firstChildOf(*level.element) = &node;
        inner.isFirstChild(true);
        level.first = &links;
    } else {
        level.lastLinks->nextSibling = &node;
        links.previousSibling = level.last;
    }
    level.last = &node;
    level.lastLinks = &links;
    ++level.count;
}

xercesc::DOMTextImpl& PelPlainTree::makeText(PelPlainText& text) {
    return text.isLong() ? withText(&nodes.makeText(u"", 0), text)
                         : nodes.makeText(text.begin(), text.size());
}
