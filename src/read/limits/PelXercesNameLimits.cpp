// SPDX-License-Identifier: MIT
#include "read/limits/PelXercesNameLimits.h"

#include "read/limits/PelXercesReadLimits.h"

#include <xercesc/util/XMLString.hpp>

#include <algorithm>
#include <string>
#include <string_view>

using xercesc::DTDElementDecl;

namespace {

// With fewer, chains are short whatever the names.
constexpr std::size_t few = 256;

std::u16string_view nextToken(std::u16string_view& list) {
    const std::size_t start = std::min(list.find_first_not_of(u' '), list.size());
    const std::size_t end = std::min(list.find(u' ', start), list.size());
    const std::u16string_view token = list.substr(start, end - start);
    list.remove_prefix(end);
    return token;
}

} // namespace

std::size_t PelXercesNameTable::add(const XMLCh* name) {
    if (fill != 0 && hashes.size() >= places * fill / 4)
        places = places * 2 + 1;
    if (chains.size() != places) {
        chains.assign(places, 0);
        for (const std::size_t hash : hashes)
            ++chains[hash % places];
    }
    hashes.push_back(xercesc::XMLString::hash(name, SIZE_MAX));
    return ++chains[hashes.back() % places];
}

void PelXercesNameLimits::setGrammar(const xercesc::Grammar* newGrammar) {
    grammar = static_cast<const xercesc::DTDGrammar*>(newGrammar);
}

// The engine gives elements of its grammar numbers from 1 on.
void PelXercesNameLimits::addDeclaredElements() {
    if (grammar == nullptr)
        return;
    const std::size_t count = grammar->getElemEnumerator().size();
    while (knownElements < count) {
        const XMLCh* const name =
            grammar->getElemDecl(static_cast<unsigned>(++knownElements))->getFullName();
        add(declaredElements, name);
        limits.require(knownElements <= limits.getBounds().names, u"too many declarations");
    }
}

void PelXercesNameLimits::addDeclared(Kind kind, const XMLCh* name, bool isNew) {
    const auto index = static_cast<std::size_t>(kind);
    addListed(kind == Kind::notation ? 1 : 0, name, isNew); // one list for entities of both kinds
    if (!isNew)
        return;
    add(declared[index], name);
    limits.require(declared[index].size() <= limits.getBounds().names, u"too many declarations");
}

void PelXercesNameLimits::addList(const DTDElementDecl& element) {
    addListed(2, element.getFullName(), withLists.insert(&element).second);
}

// The tree's lists of what is declared have a number of places that is small and stays so.
void PelXercesNameLimits::addListed(std::size_t kind, const XMLCh* name, bool isNew) {
    constexpr std::size_t stepsPerPlace = 25;
    limits.addWork(PelXercesReadLimits::Work::declarations,
                   listed[kind].size() / PelXercesAllocations::treeDeclarations.places *
                       stepsPerPlace);
    if (!isNew)
        return;
    ++pooled;
    add(listed[kind], name);
}

void PelXercesNameLimits::addDeclared(const DTDElementDecl& element,
                                      const xercesc::DTDAttDef& attribute) {
    ++pooled;
    const xercesc::XMLAttDefList& list = element.getAttDefList();
    if (list.getAttDefCount() <= few)
        return;
    const auto [entry, isNew] =
        attributesOf.try_emplace(&element, PelXercesAllocations::declaredAttributes);
    for (std::size_t i = 0; isNew && i + 1 < list.getAttDefCount(); ++i)
        entry->second.add(list.getAttDef(i).getFullName());
    add(entry->second, attribute.getFullName());
}

// The engine takes up what it does not know yet.
void PelXercesNameLimits::addIds(const xercesc::RefHashTableOf<xercesc::XMLRefInfo>& known,
                                 const XMLCh* value) {
    std::unordered_set<std::u16string_view> here;
    std::u16string_view list = value;
    for (std::u16string_view token = nextToken(list); !token.empty(); token = nextToken(list)) {
        const std::u16string name(token);
        if (here.insert(token).second && !known.containsKey(name.c_str()))
            add(ids, name.c_str());
    }
}

// The engine looks for attributes that have no declaration twice over, in a table that never
// shrinks and that it goes through after each tag.
void PelXercesNameLimits::addStartTag(const Attributes& tag, std::size_t count) {
    limits.addWork(PelXercesReadLimits::Work::attributes, tagPlaces);
    if (count <= few)
        return;
    PelXercesNameTable names{PelXercesAllocations::tagAttributes};
    for (std::size_t i = 0; i < count; ++i)
        add(names, tag.elementAt(i)->getName());
    tagPlaces = std::max(tagPlaces, count / 2);
}

void PelXercesNameLimits::add(Table& table, const XMLCh* name) {
    const PelXercesReadLimits::Bounds& bounds = limits.getBounds();
    limits.require(table.add(name) <= (table.grows() ? bounds.alikeNames : bounds.alikeInFixed),
                   u"too many names that the parser can hardly tell apart");
}

void PelXercesNameLimits::addRareElement(const XMLCh* name) {
    if (!elements.all.insert(name).second)
        return;
    add(undeclaredElements, name);
    if (attributes.all.count(name) == 0)
        addToTree(name);
}

void PelXercesNameLimits::addRareAttribute(const XMLCh* name) {
    if (attributes.all.insert(name).second && elements.all.count(name) == 0)
        addToTree(name);
}

void PelXercesNameLimits::addToTree(const XMLCh* name) {
    ++pooled;
    add(treeNames, name);
    limits.require(treeNames.size() <= limits.getBounds().names, u"too many different names");
}
