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

const XMLCh* shortOf(PelPlainText& text) {
    return text.isLong() ? u"" : text.terminated();
}

} // namespace

PelPlainTree::PelPlainTree(const XMLCh* systemId, const XMLCh* encoding,
                           const PelXercesReadLimits::Bounds& readBounds,
                           std::unique_ptr<PelXercesKeptSource> ownSource)
    : bounds(readBounds), source(std::move(ownSource)),
      owner(
          xercesc::DOMImplementation::getImplementation()->createDocument(&PelXercesMemory::get())),
      document(static_cast<DOMDocumentImpl&>(*owner)), nodes(document) {
    document.setErrorChecking(false);
    document.setDocumentURI(systemId);
    document.setInputEncoding(encoding);
    if (source)
        source->setNumber(document, 0);
}

void PelPlainTree::declare(const std::u16string& encoding, const std::u16string& standalone) {
    document.setXmlStandalone(standalone == u"yes");
    isNotStandalone = standalone == u"no";
    document.setXmlVersion(xercesc::XMLUni::fgVersion1_0);
    document.setXmlEncoding(encoding.c_str());
    if (!encoding.empty())
        document.setInputEncoding(encoding.c_str());
}

PelXercesNewDocument PelPlainTree::take() {
    document.setErrorChecking(true);
    return {std::move(owner), std::move(childCounts), std::move(source), isNotStandalone, {}};
}

template <class Node>
std::uint32_t PelPlainTree::place(Node& node, Span span) {
    if (!source)
        return 0;
    const std::uint32_t number = source->addPlace(span.begin, span.end);
    if (Fields::hasNumbers()) {
        xercesc::DOMNodeImpl& inner = Fields::nodeOf(node);
        Fields::numberOf(inner) = number;
        Fields::marksOf(inner) = 0;
    } else {
        source->setNumber(node, number);
    }
    return number;
}

void PelPlainTree::openElement(const XMLCh* name, std::size_t begin) {
    DOMElementImpl& element = nodes.makeElement(name);
    if (levels.empty())
        document.appendChild(&element);
    else
        append(element);
    levels.push_back({&element, nullptr, nullptr, nullptr, 0, place(element, {begin, begin})});
}

void PelPlainTree::addAttribute(const XMLCh* name, PelPlainText& value) {
    nodes.addAttribute(*levels.back().element, name, makeText(value));
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

void PelPlainTree::closeElement(std::size_t end) {
    const Level& level = levels.back();
    if (level.first != nullptr)
        level.first->previousSibling = level.last;
    childCounts.add(*level.element, level.count);
    if (source)
        source->setEnd(level.number, end);
    levels.pop_back();
}

void PelPlainTree::addText(PelPlainText& text, Span span) {
    xercesc::DOMTextImpl& node = makeText(text);
    place(node, span);
    append(node);
}

void PelPlainTree::addCdata(PelPlainText& text, Span span) {
    addLeaf(new (&document, DOMMemoryManager::CDATA_SECTION_OBJECT)
                xercesc::DOMCDATASectionImpl(&document, shortOf(text)),
            text, span);
}

void PelPlainTree::addComment(PelPlainText& text, Span span) {
    addLeaf(new (&document, DOMMemoryManager::COMMENT_OBJECT)
                xercesc::DOMCommentImpl(&document, shortOf(text)),
            text, span);
}

void PelPlainTree::addInstruction(const std::u16string& target, PelPlainText& data, Span span) {
    addLeaf(static_cast<xercesc::DOMProcessingInstructionImpl*>(
                document.createProcessingInstruction(target.c_str(), shortOf(data))),
            data, span);
}

// A text that is too long for the node's constructor is put into it here.
template <class Node>
void PelPlainTree::addLeaf(Node* node, PelPlainText& text, Span span) {
    if (text.isLong())
        Fields::bufferOf(*node) = text.take();
    place(*node, span);
    append(*node);
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
    if (!text.isLong())
        return nodes.makeText(text.begin(), text.size());
    xercesc::DOMTextImpl& node = nodes.makeText(u"", 0);
    Fields::bufferOf(node) = text.take();
    return node;
}
