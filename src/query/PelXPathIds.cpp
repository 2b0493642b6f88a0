// SPDX-License-Identifier: MIT
#include "query/PelXPathIds.h"

#include "core/PelCharacters.h"
#include "query/PelXPathAxes.h"

std::vector<PelXPathIds::Node*> PelXPathIds::find(std::u16string_view words) {
    if (!isGathered)
        gather();
    std::vector<Node*> found;
    tree.countLook(words.size());
    for (std::size_t end = 0;;) {
        const std::size_t begin = words.find_first_not_of(PelCharacters::space, end);
        if (begin == words.npos)
            return found;
        end = words.find_first_of(PelCharacters::space, begin);
        const auto known = elements.find(std::u16string(words.substr(begin, end - begin)));
        if (known != elements.end())
            found.push_back(known->second);
        if (end == words.npos)
            return found;
    }
}

// Of several elements with one ID, the first has it.
void PelXPathIds::gather() {
    isGathered = true;
    const PelXercesDeclaredIds& declared = tree.getDeclaredIds();
    if (declared.empty())
        return;
    PelXPathAxes::eachBelow(tree, tree.getDocument(), [&](Node& node) {
        tree.count();
        if (!PelXPathTree::isElement(node) || !node.hasAttributes())
            return false;
        const auto range = declared.equal_range(node.getNodeName());
        for (auto id = range.first; id != range.second; ++id)
            if (const auto* const attribute =
                    static_cast<xercesc::DOMElement&>(node).getAttributeNode(id->second.c_str()))
                elements.emplace(PelXercesLinks::valueOf(*attribute), &node);
        return false;
    });
}
