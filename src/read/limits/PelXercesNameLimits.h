// SPDX-License-Identifier: MIT
#pragma once

#include "xerces/engine/PelXercesAllocations.h"

#include <xercesc/framework/XMLAttr.hpp>
#include <xercesc/framework/XMLRefInfo.hpp>
#include <xercesc/util/RefHashTableOf.hpp>
#include <xercesc/util/RefVectorOf.hpp>
#include <xercesc/validators/DTD/DTDGrammar.hpp>

#include <array>
#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <unordered_set>
#include <vector>

class PelXercesReadLimits;

/// Predicts the lengths of the chains in one of the engine's hash tables of names. The engine's
/// hash is a fixed one, so that names can be made to share a chain, which each look-up goes
/// through.
class PelXercesNameTable {
public:
    explicit PelXercesNameTable(const PelXercesAllocations::Table& engines)
        : places(engines.places), fill(engines.namesPerFour) {}

    /// Takes a name that it does not have yet. Gives the length of the chain that the name is in.
    std::size_t add(const XMLCh* name);

    bool grows() const noexcept { return fill != 0; }

    /// The number of names.
    std::size_t size() const noexcept { return hashes.size(); }

private:
    std::vector<std::uint32_t> chains; // one for each place, once there is a name
    std::vector<std::size_t> hashes;
    std::size_t places;
    std::size_t fill;
};

/// Bounds on the names of one read: how many there are, and how many of them share a place in one
/// of the tables that the engine keeps them in.
class PelXercesNameLimits {
public:
    using Attributes = xercesc::RefVectorOf<xercesc::XMLAttr>;
    enum class Kind { entity, parameterEntity, notation };

    explicit PelXercesNameLimits(PelXercesReadLimits& readLimits) : limits(readLimits) {}

    /// Declarations are kept in this grammar from now on; null: nowhere.
    void setGrammar(const xercesc::Grammar* newGrammar);

    /// Elements may have come into the grammar, by their declarations or in those of others.
    void addDeclaredElements();

    /// These have been declared, for the first time or again.
    void addDeclared(Kind kind, const XMLCh* name, bool isNew);
    void addDeclared(const xercesc::DTDElementDecl& element, const xercesc::DTDAttDef& attribute);

    /// An attribute has a value of type ID, IDREF or IDREFS.
    void addIds(const xercesc::RefHashTableOf<xercesc::XMLRefInfo>& known, const XMLCh* value);

    /// An element or an attribute has come into the tree. A name is at the same address as long as
    /// the tree lives.
    void addElement(const XMLCh* name) {
        if (!elements.isRecent(name))
            addRareElement(name);
    }
    void addAttribute(const XMLCh* name) {
        if (!attributes.isRecent(name))
            addRareAttribute(name);
    }

    /// How many names the tree has, or more.
    std::size_t countInTree() const noexcept { return pooled; }

    /// An attribute list of this element ends.
    void addList(const xercesc::DTDElementDecl& element);

    /// All that a start tag has.
    void addStartTag(const Attributes& tag, std::size_t count);

private:
    using Table = PelXercesNameTable;

    // Names by their addresses.
    struct Seen {
        bool isRecent(const XMLCh* name) noexcept {
            const XMLCh*& last = recent[reinterpret_cast<std::uintptr_t>(name) / 8 % recent.size()];
            const bool isLast = last == name;
            last = name;
            return isLast;
        }

        std::unordered_set<const XMLCh*> all;
        std::array<const XMLCh*, 256> recent{};
    };

    void add(Table& table, const XMLCh* name);
    void addListed(std::size_t kind, const XMLCh* name, bool isNew);
    void addRareElement(const XMLCh* name);
    void addRareAttribute(const XMLCh* name);
    void addToTree(const XMLCh* name);

    PelXercesReadLimits& limits;
    const xercesc::DTDGrammar* grammar = nullptr;
    std::size_t knownElements = 0;
    Seen elements;
    Seen attributes;
    std::size_t tagPlaces = 0;
    std::size_t pooled = 0;

    // The engine's own tables.
    Table treeNames{PelXercesAllocations::treeNames};
    Table undeclaredElements{PelXercesAllocations::undeclaredElements};
    Table declaredElements{PelXercesAllocations::declarations};
    Table declared[3] = {Table(PelXercesAllocations::declarations),
                         Table(PelXercesAllocations::declarations),
                         Table(PelXercesAllocations::declarations)};
    Table listed[3] = {Table(PelXercesAllocations::treeDeclarations),
                       Table(PelXercesAllocations::treeDeclarations),
                       Table(PelXercesAllocations::treeDeclarations)};
    Table ids{PelXercesAllocations::ids};
    std::unordered_map<const xercesc::DTDElementDecl*, Table> attributesOf;
    std::unordered_set<const xercesc::DTDElementDecl*> withLists;
};
