// SPDX-License-Identifier: MIT
// An expression and a document, parted by a line end: whatever they are, all ways of asking agree, nodes come
// in document order, and the limit ends what takes too long.
#include "support.h"

namespace {

const char* const sample = "<r xmlns:p='urn:p' id='0'><!--c--><a id='1' k='v'>one<a id='2'>in<b id='3'/></a>"
                           "<b id='4' m='2'/></a><p:a id='5'><b id='6'/>t<![CDATA[w]]>o<c id='7'/></p:a>"
                           "<?p data?><c id='9' xml:lang='en'>8</c></r>";

// Every node below one, in document order.
void list(const PelDOMNode& node, std::vector<PelDOMNode>& nodes) {
    nodes.push_back(node);
    for (PelDOMNode child = node.getFirstChild(); child; child = child.getNextSibling()) list(child, nodes);
}

void expectInOrder(const std::vector<PelDOMNode>& found, const PelDOMDocument& document) {
    std::vector<PelDOMNode> all;
    list(document, all);
    std::size_t place = 0;
    for (const PelDOMNode& node : found) {
        while (place < all.size() && all[place] != node) ++place;
        expectSame(place++ < all.size(), true, "each node once, in document order");
    }
}

void askFrom(const PelDOMDocument& document, const PelString& expression) {
    PelDOMXPath path(expression);
    if (!path) return;
    path.setVariable("v", 2);
    path.setLimit(200'000);
    const bool isTrue = path.evaluateBoolean(document);
    const PelString text = path.evaluateString(document);
    if (path.getMessage().isEmpty() == 0 || path.getType() != PelDOMXPath::NODES) return;
    const std::vector<PelDOMNode> nodes = path.selectNodes(document);
    const std::size_t attributes = path.selectAttributes(document).size();
    if (path.getMessage().isEmpty() == 0) return;
    expectSame(isTrue, nodes.size() + attributes > 0, "whether there is anything");
    expectInOrder(nodes, document);
    PelDOMXPath count(u"count(" + expression + u")");
    count.setVariable("v", 2);
    expectSame(
        count.evaluateNumber(document), static_cast<double>(nodes.size() + attributes), "how many there are");
    if (attributes > 0) return;
    const PelDOMNode first = path.selectNode(document);
    expectSame(first == (nodes.empty() ? PelDOMNode() : nodes.front()), true, "the first of them");
    expectSame(text == PelDOMXPath("string()").evaluateString(first), true, "the text of the first");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::size_t end = input.find('\n');
    const PelDOMDocument document = services().readDocumentFromStringW(
        end == input.npos ? PelString(sample) : PelString(input.substr(end + 1)));
    if (document) askFrom(document, PelString(input.substr(0, end)));
    return 0;
}
