// SPDX-License-Identifier: MIT
#pragma once

#include "read/limits/PelXercesNameLimits.h"
#include "xerces/engine/PelXercesPrototypes.h"

#include <xercesc/framework/XMLAttr.hpp>
#include <xercesc/framework/XMLElementDecl.hpp>
#include <xercesc/util/RefVectorOf.hpp>

#include <unordered_map>

/// Nodes made fast: what the engine's parser has scanned and validated becomes elements,
/// their attributes and texts, as the engine would make them but without its run-time casts.
///
/// A document type may give an element attributes by default. What it gives is the same for all
/// elements of one declaration, so that the engine makes the first of them, and the others have
/// what that one has.
class PelXercesElementFactory {
public:
    using Attributes = xercesc::RefVectorOf<xercesc::XMLAttr>;

    PelXercesElementFactory(xercesc::DOMDocumentImpl& document, PelXercesNameLimits& nameLimits)
        : nodes(document), pool(document), names(nameLimits) {}

    /// An element without a parent; null if the engine has to make it.
    xercesc::DOMElementImpl* makeElement(const xercesc::XMLElementDecl& declaration,
                                         const Attributes& attributes, XMLSize_t count);

    /// The engine has made an element of this declaration.
    void learn(const xercesc::XMLElementDecl& declaration, xercesc::DOMElementImpl& element) {
        models.emplace(&declaration, Model{element.getTagName(), &element});
    }

    xercesc::DOMTextImpl& makeText(const XMLCh* units, std::size_t size) {
        return nodes.makeText(units, size);
    }

private:
    struct Model {
        const XMLCh* name; // pooled
        const xercesc::DOMElementImpl* element;
    };

    const Model* modelOf(const xercesc::XMLElementDecl& declaration);
    void addAttribute(xercesc::DOMElementImpl& element, const XMLCh* name, const XMLCh* value,
                      bool isSpecified);
    void addDefaults(xercesc::DOMElementImpl& element, const xercesc::DOMElementImpl& model);

    PelXercesPrototypes nodes;
    xercesc::DOMDocumentImpl& pool;
    PelXercesNameLimits& names;
    std::unordered_map<const xercesc::XMLElementDecl*, Model> models;
};
