// SPDX-License-Identifier: MIT
#include "xerces/tree/PelXercesAttributeOrder.h"

#include "xerces/engine/PelXercesFields.h"

#include <xercesc/dom/DOMNamedNodeMap.hpp>

#include <algorithm>
#include <string_view>

using Fields = PelXercesFields;
using xercesc::DOMAttr;

namespace {

xercesc::DOMNodeImpl& nodeOf(DOMAttr& attribute) {
    return Fields::nodeOf(static_cast<xercesc::DOMAttrImpl&>(attribute));
}

bool isBefore(DOMAttr* one, DOMAttr* two) {
    xercesc::DOMNodeImpl& first = nodeOf(*one);
    xercesc::DOMNodeImpl& second = nodeOf(*two);
    if (first.isSpecified() && second.isSpecified())
        return Fields::numberOf(first) < Fields::numberOf(second);
    if (!first.isSpecified() && !second.isSpecified())
        return std::u16string_view(one->getName()) < two->getName();
    return first.isSpecified();
}

} // namespace

void PelXercesAttributeOrder::list(const xercesc::DOMNode& element,
                                   std::vector<DOMAttr*>& attributes, bool isAsWritten) {
    const xercesc::DOMNamedNodeMap& map = *element.getAttributes();
    attributes.resize(map.getLength());
    for (XMLSize_t i = 0; i < attributes.size(); ++i)
        attributes[i] = static_cast<DOMAttr*>(map.item(i));
    if (isAsWritten && attributes.size() > 1 && Fields::areNumbered() &&
        !std::is_sorted(attributes.begin(), attributes.end(), isBefore))
        std::sort(attributes.begin(), attributes.end(), isBefore);
}

std::uint32_t PelXercesAttributeOrder::numberOf(DOMAttr& attribute) {
    return Fields::areNumbered() ? Fields::numberOf(nodeOf(attribute)) : 0;
}

void PelXercesAttributeOrder::setNumber(DOMAttr& attribute, std::uint32_t number) {
    if (!Fields::areNumbered())
        return;
    Fields::marksOf(nodeOf(attribute)) = 0;
    Fields::numberOf(nodeOf(attribute)) = number;
}
