// SPDX-License-Identifier: MIT
#include "core/PelLog.h"

#include <qrndom/PelDOMElement.h>
#include <qrndom/PelDOMNode.h>
#include <qrndom/PelDOMNodeList.h>
#include <qrndom/PelDOMText.h>

#include <climits>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace {

// Makes no line that the log has no room for: at some levels it would take all memory.
template <class... Arguments>
void writeLine(long level, const char16_t* pattern, Arguments... arguments) {
    const std::size_t spaces = level > 1 ? 2 * static_cast<std::size_t>(level - 1) : 0;
    if (!PelLog::takesMessages(spaces))
        return;
    const PelString line = PelString().format(pattern, arguments...);
    PelLog::gather(std::string(spaces, ' ') + line.toUtf8());
}

// White space that only lays out the text.
bool isLayout(std::u16string_view text) {
    return text.find_first_of(u"\n\r") != text.npos &&
           text.find_first_not_of(u"\n\r ") == text.npos;
}

/// One dump of a subtree. Nodes whose children are still to come wait on the heap, so that depth
/// costs no stack.
class TreeDump {
public:
    explicit TreeDump(bool isStamping) : stamps(isStamping) {}

    void write(const PelDOMNode& top, long level) {
        const PelLog::Flush atTheEnd;
        begin(top, level);
        while (!open.empty()) {
            OpenNode& parent = open.back();
            if (parent.nextChild >= parent.children.length()) {
                writeLine(parent.level, u")");
                open.pop_back();
                continue;
            }
            PelDOMNode child;
            if (parent.children.item(parent.nextChild++, child) == PelDOM::SUCCESS)
                begin(child, parent.level < LONG_MAX ? parent.level + 1 : LONG_MAX);
        }
    }

private:
    struct OpenNode {
        PelDOMNodeList children;
        long nextChild;
        long level;
    };

    // Writes a node's own lines, and opens the list of its children if it has any.
    void begin(const PelDOMNode& node, long level) {
        const PelDOM::NodeType type = node.getNodeType();
        if (type == PelDOM::ELEMENT_NODE)
            writeElement(PelDOMElement(node), level);
        else if (type == PelDOM::TEXT_NODE) {
            const PelString text = PelDOMText(node).getValue();
            if (!stamps && isLayout(text.view()))
                return;
            writeLine(level, u"Text(\"%s\")", text.view().data());
        } else
            writeLine(level, u"Node(type=%d)", static_cast<int>(type));

        PelDOMNodeList children;
        if (node.getChildNodes(children) == PelDOM::SUCCESS && children.length() > 0) {
            writeLine(level, u"(");
            open.push_back({children, 0, level});
        }
    }

    void writeElement(PelDOMElement element, long level) {
        struct Attribute {
            PelString name;
            PelString value;
        };
        std::vector<Attribute> attributes;
        for (long i = 0; i < element.getNumAttributes(); ++i)
            attributes.push_back({element.getAttributeNameAt(i), element.getAttributeValueAt(i)});
        if (stamps)
            element.setAttribute(u"PARSELEVEL", PelString().format(u"%ld", level));
        writeLine(level, u"Element(%s)", element.getTagName().view().data());
        for (const Attribute& attribute : attributes)
            writeLine(level, u" - %s=\"%s\"", attribute.name.view().data(),
                      attribute.value.view().data());
    }

    const bool stamps;
    std::deque<OpenNode> open;
};

} // namespace

void PelDOMNode::dump(long level) const {
    TreeDump(false).write(*this, level);
}

void PelDOMNode::dumpParseLevel(long level) {
    TreeDump(true).write(*this, level);
}
