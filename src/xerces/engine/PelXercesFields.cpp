// SPDX-License-Identifier: MIT
#include "xerces/engine/PelXercesFields.h"

#include <xercesc/util/XMLString.hpp>

#include <cstring>
#include <utility>

// At the front of its chain.
const XMLCh* PelXercesFields::addName(Document& document, const std::u16string& name) {
    auto* const entry =
        static_cast<Name*>(document.allocate(sizeof(Name) + name.size() * sizeof(XMLCh)));
    Name*& first =
        namesOf(document)[xercesc::XMLString::hash(name.c_str(), namePlacesOf(document))];
    entry->fLength = name.size();
    std::memcpy(entry->fString, name.c_str(), (name.size() + 1) * sizeof(XMLCh));
    entry->fNext = first;
    first = entry;
    return entry->fString;
}

const XMLCh* PelXercesFields::findName(Document& document, const std::u16string& name) {
    const Name* entry =
        namesOf(document)[xercesc::XMLString::hash(name.c_str(), namePlacesOf(document))];
    while (entry != nullptr && entry->fString != name)
        entry = entry->fNext;
    return entry != nullptr ? entry->fString : nullptr;
}

std::size_t PelXercesFields::countNames(Document& document) {
    std::size_t count = 0;
    for (std::size_t i = 0; i < namePlacesOf(document); ++i)
        for (const Name* name = namesOf(document)[i]; name != nullptr; name = name->fNext)
            ++count;
    return count;
}

void PelXercesFields::growNameTable(Document& document) {
    std::size_t& places = namePlacesOf(document);
    const auto chance = reinterpret_cast<std::uintptr_t>(&document) / sizeof(void*);
    const std::size_t more = places * 2 + chance % places + 1;
    auto** const chains = static_cast<Name**>(document.allocate(more * sizeof(Name*)));
    std::fill_n(chains, more, nullptr);
    for (std::size_t i = 0; i < places; ++i)
        for (Name* name = namesOf(document)[i]; name != nullptr;) {
            Name*& first = chains[xercesc::XMLString::hash(name->fString, more)];
            Name* const next = std::exchange(name->fNext, first);
            first = std::exchange(name, next);
        }
    namesOf(document) = chains;
    places = more;
}
