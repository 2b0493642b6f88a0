// SPDX-License-Identifier: MIT
#pragma once

#include <qrndom/PelString.h>

#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMNode.hpp>

#include <optional>

/// The XML declaration node, which the engine's DOM does not have.
///
/// In the engine's tree it is a processing instruction with the target "xml", which no parsed
/// document can hold; its data are the text of the declaration. Only this class knows that.
class PelXercesDeclaration {
public:
    /// A new declaration node of `document`, without a parent.
    static xercesc::DOMNode* create(xercesc::DOMDocument& document,
                                    const PelXercesDeclaration& values);

    static bool isDeclaration(const xercesc::DOMNode& node);

    /// The values of a declaration node.
    static PelXercesDeclaration read(const xercesc::DOMNode& node);

    PelString version;
    PelString encoding;
    std::optional<PelString> standalone;
};
