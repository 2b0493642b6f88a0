// SPDX-License-Identifier: MIT
#include "libraries.h"

#include <stdexcept>

namespace {

PelDOMDocument accepted(const PelDOMDocument& document) {
    if (document.isNull() != 0)
        throw std::runtime_error("qrndom refused the document");
    return document;
}

void require(PelDOM::Error code) {
    if (code != PelDOM::SUCCESS)
        throw std::runtime_error("qrndom answered code " + std::to_string(code));
}

void visit(const PelDOMNode& node, NodeCount& count) {
    PelDOMNodeList children;
    node.getChildNodes(children);
    for (long i = 0; i < children.length(); ++i) {
        PelDOMNode child;
        children.item(i, child);
        if (child.getNodeType() == PelDOM::ELEMENT_NODE) {
            ++count.elements;
            visit(child, count);
        } else {
            ++count.others;
        }
    }
}

} // namespace

PelDOMUtilites& Qrndom::services() {
    static PelDOMUtilites* const services = [] {
        PelDOMUtilites* const made = PelDOMUtilites::getUtilities(PelDOM::PLATFORM_XERCES);
        require(made->init());
        return made;
    }();
    return *services;
}

PelDOMDocument Qrndom::readFile(const Document& document) {
    return accepted(services().readDocument(document.path.c_str()));
}

PelDOMDocument Qrndom::readText(const PelString& text, bool) {
    return accepted(services().readDocumentFromStringW(text));
}

NodeCount Qrndom::walk(const PelDOMDocument& tree) {
    NodeCount count;
    visit(tree, count);
    return count;
}

// Without added line feeds, as the engine's serializer writes.
void Qrndom::writeFile(const PelDOMDocument& tree, const std::string& path) {
    PelString target = path.c_str();
    require(services().writeDocument(tree, target, 1, 0, 0));
}

std::size_t Qrndom::writeText(const PelDOMDocument& tree) {
    PelString target;
    require(services().writeDocument(tree, target, 0, 0, 0));
    return target.view().size();
}
