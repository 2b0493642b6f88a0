// SPDX-License-Identifier: MIT
// Random calls on handles, lists, filers and services, each compared with a plain model of the trees.
#include "support.h"
#include "xerces/PelXercesDOMNode.h"

#include <xercesc/dom/DOMException.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include <algorithm>
#include <array>
#include <deque>
#include <map>
#include <optional>

namespace {

using xercesc::DOMException;
using xercesc::XMLPlatformUtils;
using Text = std::u16string_view;

struct Node {
    Node* document; // null for a document itself
    PelDOM::NodeType type;
    std::u16string name;
    std::u16string value;
    std::map<std::u16string, std::u16string> attributes = {};
    std::map<std::u16string, std::u16string> defaults = {}; // of elements b in this document
    Node* parent = nullptr;
    std::vector<Node*> children = {};
    const void* engineNode = nullptr; // known from the first handle to it

    void append(Node& child) {
        if (child.parent != nullptr) {
            auto& siblings = child.parent->children;
            siblings.erase(std::find(siblings.begin(), siblings.end(), &child));
        }
        children.push_back(&child);
        child.parent = this;
    }

    bool isWithin(const Node& ancestor) const {
        return this == &ancestor || (parent != nullptr && parent->isWithin(ancestor));
    }

    Node* child(PelDOM::NodeType wanted) const {
        for (Node* const node : children)
            if (node->type == wanted) return node;
        return nullptr;
    }

    void addElements(Text tag, std::vector<Node*>& found) const {
        for (Node* const node : children) {
            if (node->type == PelDOM::ELEMENT_NODE && (tag == u"*" || tag == node->name))
                found.push_back(node);
            node->addElements(tag, found);
        }
    }

    void stamp(int level) {
        if (type == PelDOM::ELEMENT_NODE)
            attributes[u"PARSELEVEL"] = PelString(std::to_string(level).c_str()).view();
        for (Node* const node : children) node->stamp(level + 1);
    }
};

/// What a handle has to be: null, or to a node, or to the absence of one.
struct Ref {
    Node* node = nullptr;
    bool isNull = true;

    bool is(PelDOM::NodeType type) const { return node != nullptr && node->type == type; }
    Ref root() const {
        return is(PelDOM::DOCUMENT_NODE) ? Ref{node->child(PelDOM::ELEMENT_NODE), false} : Ref();
    }
    PelDOM::Error code() const { return node != nullptr ? PelDOM::SUCCESS : PelDOM::NULL_NODE; }
};

Ref to(Node* node) { return {node, false}; }

struct Handle {
    PelDOMNode handle;
    Ref ref;
};

struct List {
    PelDOMNodeList handle;
    Node* root = nullptr;
    std::optional<std::u16string> tag;

    std::vector<Node*> nodes() const {
        if (root == nullptr || !tag) return root != nullptr ? root->children : std::vector<Node*>();
        std::vector<Node*> found;
        root->addElements(*tag, found);
        return found;
    }
};

struct Filer {
    PelDOMFiler handle;
    Ref document;
    Ref node;
    Ref element;
};

constexpr Text goodNames[] = {u"r", u"a", u"b", u"d", u"b-1", u"\u00e9\u4e2d", u"_x.y", u"p:q", u":a"};
constexpr Text badNames[] = {u"", u"1", u"a b", u"-a", u"a\u00d7", u"\xD800", u"<", Text(u"\0a", 2)};
constexpr Text values[] = {u"", u"v", u" ", u"12", u"\u00e9\u4e2d\U0001F600", u"<&>\"'\r\n\t",
    Text(u"x\0y", 3), Text(u"\0z", 2), u"\xDC00",
    u"long text, longer than before, and longer again and again"};

// Strings end at their first U+0000 where the tree takes them.
std::u16string inTree(Text text) { return std::u16string(text.substr(0, text.find(u'\0'))); }

bool isName(Text name) {
    return std::find(std::begin(goodNames), std::end(goodNames), inTree(name)) != std::end(goodNames);
}

constexpr int hierarchy = -DOMException::HIERARCHY_REQUEST_ERR;
constexpr int invalidName = -DOMException::INVALID_CHARACTER_ERR;

// The code of a call, negative for an exception.
template <class Call>
void expectCode(std::string_view what, int expected, Call call) {
    int code = 0;
    try {
        code = call();
    } catch (const DOMException& exception) {
        code = -exception.code;
    }
    expectSame(code, expected, what);
}

int expectedOfAppend(const Ref& parentRef, const Ref& childRef) {
    if (parentRef.node == nullptr || childRef.node == nullptr) return PelDOM::NULL_NODE;
    const Node& parent = *parentRef.node;
    const Node& child = *childRef.node;
    const bool intoDocument = parent.type == PelDOM::DOCUMENT_NODE;
    const bool intoType = parent.type == PelDOM::DOCUMENT_TYPE_NODE;
    if (&parent == &child || (child.type == PelDOM::XML_DECL_NODE && !intoDocument)) return hierarchy;
    if (parent.type != PelDOM::ELEMENT_NODE && !intoDocument && !intoType) return hierarchy;
    const bool isSingle = child.type == PelDOM::ELEMENT_NODE || child.type == PelDOM::DOCUMENT_TYPE_NODE;
    if (intoDocument && isSingle && parent.child(child.type) != nullptr) return hierarchy;
    if (child.document != (intoDocument ? &parent : parent.document))
        return -DOMException::WRONG_DOCUMENT_ERR;
    if (intoType || parent.isWithin(child)) return hierarchy;
    if (!intoDocument) return child.type == PelDOM::DOCUMENT_TYPE_NODE ? hierarchy : PelDOM::SUCCESS;
    // The engine takes white space between the nodes of a document.
    const bool isText = child.type == PelDOM::TEXT_NODE && !child.value.empty();
    const bool isSpace = isText && child.value.find_first_not_of(u" \t\r\n") == child.value.npos;
    const bool isCharacters = child.type == PelDOM::TEXT_NODE || child.type == PelDOM::CDATA_SECTION_NODE;
    return isCharacters && !isSpace ? hierarchy : PelDOM::SUCCESS;
}

class World {
public:
    explicit World(Input& source) : in(source) {
        const bool isFree = in.below(8) == 0;
        if (isFree && isHeld) XMLPlatformUtils::Terminate();
        if (!isFree && !isHeld) XMLPlatformUtils::Initialize();
        isHeld = !isFree;
    }

    void run() {
        for (int step = 1; !in.isAtEnd() && step < 400; ++step) {
            (this->*in.oneOf(operations))();
            checkServices();
            if (step % 16 == 0) checkAll();
        }
        checkAll();
        while (!handles.empty() || !lists.empty() || !filers.empty()) dropOne();
        for (services(); starts > 0;) terminate();
        checkServices();
        PelDOMUtilites::releaseUtilities();
    }

private:
    static bool engineIsUp() { return XMLPlatformUtils::fgMemoryManager != nullptr; }

    static void check(const PelDOMNode& handle, const Ref& ref) {
        expectSame(handle.isNull() == 1, ref.isNull, "isNull");
        expectSame(
            handle.getErrorStatus(), ref.isNull ? PelDOM::NO_IMPLEMENTATION : PelDOM::SUCCESS, "status");
        expectSame(handle.getNodeType(), ref.node != nullptr ? ref.node->type : PelDOM::NO_NODE, "type");
        if (ref.node == nullptr) return;
        const void* const engineNode = PelXercesDOMNode::of(*handle.getNodeImp()).getNode();
        if (ref.node->engineNode == nullptr) ref.node->engineNode = engineNode;
        expectSame(engineNode, ref.node->engineNode, "node");
    }

    static void checkContent(const PelDOMNode& handle, const Ref& ref) {
        check(handle, ref);
        static const Node nothing = {nullptr, PelDOM::NO_NODE, u"", u""};
        const Node& node = ref.node != nullptr ? *ref.node : nothing;
        const PelDOMElement element(handle);
        const auto count = static_cast<long>(node.attributes.size());
        expectSame(element.getTagName().view(), node.name, "tag name");
        expectSame(element.getNumAttributes(), count, "number of attributes");
        expectSame(
            element.getAttributeNameAt(-1) + element.getAttributeValueAt(count), PelString(), "outside");
        long i = 0;
        for (const auto& [name, value] : node.attributes) {
            expectSame(element.getAttributeNameAt(i).view(), name, "attribute name");
            expectSame(element.getAttributeValueAt(i++).view(), value, "attribute value");
            expectSame(element.getAttribute(PelString(Text(name))).view(), value, "attribute");
        }
        expectSame(PelDOMText(handle).getValue().view(), node.value, "text");
        const bool hasText = node.children.size() == 1 && node.children[0]->type == PelDOM::TEXT_NODE;
        PelString text = u"kept";
        expectSame(
            element.getChildTextValue(text), hasText ? PelDOM::SUCCESS : PelDOM::INVALID_VALUE, "code");
        expectSame(text.view(), hasText ? node.children[0]->value : u"kept", "child text");
        check(PelDOMDocument(handle).getDocumentElement(), ref.root());
    }

    void checkList(const List& list) {
        const std::vector<Node*> listed = list.nodes();
        const auto count = static_cast<long>(listed.size());
        const long turn = static_cast<long>(in.byte()); // where to begin, and which way
        expectSame(list.handle.length(), count, "length");
        PelDOMNode item;
        const PelDOM::Error outside = list.root != nullptr ? PelDOM::INDEX_OUT_OF_RANGE : PelDOM::NULL_NODE;
        expectSame(list.handle.item(count, item), outside, "item past the end");
        expectSame(list.handle.item(-1, item), outside, "item before the first");
        check(item, Ref());
        for (long i = 0; i < count; ++i) {
            const long index = turn % 2 == 0 ? (turn + i) % count : count - 1 - (turn + i) % count;
            expectSame(list.handle.item(index, item), PelDOM::SUCCESS, "item");
            checkContent(item, to(listed[static_cast<std::size_t>(index)]));
        }
    }

    void checkAll() {
        for (const auto& [handle, ref] : handles) {
            checkContent(handle, ref);
            List children = {PelDOMNodeList(), ref.node, std::nullopt};
            expectSame(handle.getChildNodes(children.handle), ref.code(), "getChildNodes");
            checkList(children);
        }
        for (const List& list : lists) checkList(list);
        for (Filer& filer : filers) {
            check(filer.handle.document(), filer.document);
            check(filer.handle.currentNode(), filer.node);
            check(filer.handle.currentElement(), filer.element);
        }
    }

    void checkServices() const {
        expectSame(services().getErrorStatus(), status, "status of the services");
        bool isInUse = starts > 0;
        for (const Handle& handle : handles) isInUse = isInUse || handle.ref.node != nullptr;
        for (const List& list : lists) isInUse = isInUse || list.root != nullptr;
        for (const Filer& filer : filers)
            isInUse = isInUse || filer.document.node || filer.node.node || filer.element.node;
        if (isHeld && !isInUse && !engineIsUp()) XMLPlatformUtils::Initialize(); // one stop too many
        expectSame(engineIsUp(), isInUse || isHeld, "engine is up");
    }

    Handle& some() {
        if (handles.empty()) handles.emplace_back();
        return in.oneOf(handles);
    }

    Text name() {
        const std::size_t choice = in.below(32);
        return choice < std::size(badNames) ? badNames[choice] : in.oneOf(goodNames);
    }

    void keep(const PelDOMNode& handle, const Ref& ref) {
        check(handle, ref);
        if (handles.size() < 12) handles.emplace_back();
        (handles.back().ref.isNull ? handles.back() : some()) = {handle, ref};
    }

    void keep(const List& list) {
        checkList(list);
        if (lists.size() < 6)
            lists.push_back(list);
        else
            in.oneOf(lists) = list;
    }

    Node& make(
        Node* document, PelDOM::NodeType type, Text tag = {}, Text value = {}, Node* parent = nullptr) {
        Node& node = nodes.emplace_back(Node{document, type, inTree(tag), inTree(value)});
        if (node.name == u"b") node.attributes = document->defaults;
        if (parent != nullptr) parent->append(node);
        return node;
    }

    // What both setting an attribute and adding an element refuse.
    static int refusal(const Ref& element, Text key, Text value) {
        if (!element.is(PelDOM::ELEMENT_NODE)) return PelDOM::NULL_NODE;
        if (key.empty() || value.empty()) return PelDOM::INVALID_VALUE;
        return isName(key) ? 0 : invalidName;
    }

    static int setInModel(const Ref& element, Text key, Text value) {
        const int code = refusal(element, key, value);
        if (code == 0) element.node->attributes[inTree(key)] = inTree(value);
        return code;
    }

    int appendInModel(const Ref& element, Text tag, Text text) {
        const int code = refusal(element, tag, text);
        if (code != 0) return code;
        Node& added = make(element.node->document, PelDOM::ELEMENT_NODE, tag, u"", element.node);
        make(added.document, PelDOM::TEXT_NODE, u"", text, &added);
        return code;
    }

    void createDocument() {
        const Text tag = name();
        const bool hasColon = tag.find(u':') != tag.npos;
        const int refused = hasColon ? -DOMException::NAMESPACE_ERR : invalidName;
        startImplicitly();
        expectCode("createDocument", tag.empty() || (isName(tag) && !hasColon) ? 0 : refused, [&] {
            const PelDOMDocument document = services().createDocument(PelString(tag));
            Node* const top = tag.empty() ? nullptr : &make(nullptr, PelDOM::DOCUMENT_NODE);
            if (top != nullptr) make(top, PelDOM::XML_DECL_NODE, u"", u"", top);
            if (top != nullptr) make(top, PelDOM::ELEMENT_NODE, tag, u"", top);
            keep(document, Ref{top, top == nullptr});
            return 0;
        });
    }

    void readDocument() {
        startImplicitly();
        Node* const top = &make(nullptr, PelDOM::DOCUMENT_NODE);
        if (in.below(2) == 0) {
            Node& root = make(top, PelDOM::ELEMENT_NODE, u"r", u"", top);
            root.attributes[u"a"] = u"1";
            make(top, PelDOM::TEXT_NODE, u"", u"x", &root);
            make(top, PelDOM::ELEMENT_NODE, u"b", u"", &root);
            for (const auto type :
                {PelDOM::COMMENT_NODE, PelDOM::CDATA_SECTION_NODE, PelDOM::PROCESSING_INSTRUCTION_NODE})
                make(top, type, u"", u"", &root);
            keep(services().readDocumentFromStringW("<r a='1'>x<b/><!--c--><![CDATA[y]]><?p q?></r>"),
                to(top));
        } else {
            top->defaults[u"d"] = u"def";
            make(top, PelDOM::DOCUMENT_TYPE_NODE, u"", u"", top);
            make(top, PelDOM::ELEMENT_NODE, u"b", u"", &make(top, PelDOM::ELEMENT_NODE, u"r", u"", top));
            keep(services().readDocumentFromStringW("<!DOCTYPE r [<!ELEMENT r ANY><!ELEMENT b ANY>"
                                                    "<!ATTLIST b d CDATA 'def'>]><r><b/></r>"),
                to(top));
        }
    }

    void createElement() {
        const auto [handle, ref] = some();
        const Text tag = name();
        const bool isDocument = ref.is(PelDOM::DOCUMENT_NODE);
        expectCode("createElement", isDocument && !isName(tag) ? invalidName : 0,
            [&, &from = handle, node = ref.node] {
                const PelDOMElement element = PelDOMDocument(from).createElement(PelString(tag));
                keep(element, isDocument ? to(&make(node, PelDOM::ELEMENT_NODE, tag)) : Ref());
                return 0;
            });
    }

    void createText() {
        const auto [handle, ref] = some();
        const Text text = in.oneOf(values);
        keep(PelDOMDocument(handle).createTextNode(PelString(text)),
            ref.is(PelDOM::DOCUMENT_NODE) ? to(&make(ref.node, PelDOM::TEXT_NODE, u"", text)) : Ref());
    }

    void append() {
        Handle& parent = some();
        Handle& child = some();
        const int expected = expectedOfAppend(parent.ref, child.ref);
        expectCode("appendChild", expected, [&] { return parent.handle.appendChild(child.handle); });
        if (expected == PelDOM::SUCCESS) parent.ref.node->append(*child.ref.node);
    }

    void change() {
        Handle& one = some();
        PelDOMElement element(one.handle);
        const Text key = name();
        const Text text = in.oneOf(values);
        const PelString value(text);
        const bool isText = one.ref.is(PelDOM::TEXT_NODE);
        switch (in.below(4)) {
        case 0:
            expectCode("setValue", !isText ? PelDOM::INTERNAL_ERROR : PelDOM::checkString(value, 0),
                [&] { return PelDOMText(one.handle).setValue(value); });
            if (isText && !text.empty()) one.ref.node->value = inTree(text);
            break;
        case 1:
            expectCode("appendTextElement", appendInModel(one.ref, key, text),
                [&] { return element.appendTextElement(PelString(key), value); });
            break;
        default:
            expectCode("setAttribute", setInModel(one.ref, key, text),
                [&] { return element.setAttribute(PelString(key), value); });
        }
    }

    void removeAttribute() {
        Handle& one = some();
        const Text key = name();
        const bool isGood = one.ref.is(PelDOM::ELEMENT_NODE) && !key.empty();
        expectCode("removeAttribute", isGood ? PelDOM::SUCCESS : PelDOM::INVALID_VALUE,
            [&] { return PelDOMElement(one.handle).removeAttribute(PelString(key)); });
        if (!isGood || one.ref.node->attributes.erase(inTree(key)) == 0) return;
        // A default takes the place of what is removed.
        if (one.ref.node->name == u"b")
            one.ref.node->attributes.merge(std::map(one.ref.node->document->defaults));
    }

    void navigate() {
        const auto [handle, ref] = some();
        PelDOMNode parent;
        PelDOMDocument document;
        switch (in.below(3)) {
        case 0:
            expectSame(handle.getParentNode(parent), ref.code(), "getParentNode");
            keep(parent, ref.node != nullptr ? to(ref.node->parent) : Ref());
            break;
        case 1:
            expectSame(handle.getOwnerDocument(document), ref.code(), "getOwnerDocument");
            keep(document, ref.node != nullptr ? to(ref.node->document) : Ref());
            break;
        default:
            keep(PelDOMDocument(handle).getDocumentElement(), ref.root());
        }
    }

    void item() {
        if (lists.empty()) return;
        const List& list = in.oneOf(lists);
        const std::vector<Node*> listed = list.nodes();
        const std::size_t index = in.byte() % (listed.size() + 1);
        PelDOMNode node;
        list.handle.item(static_cast<long>(index), node);
        keep(node, index < listed.size() ? to(listed[index]) : Ref());
    }

    void list() {
        const auto [handle, ref] = some();
        const bool isElement = ref.is(PelDOM::ELEMENT_NODE);
        const Text tag = in.below(4) == 0 ? u"*" : name();
        List children = {PelDOMNodeList(), ref.node, std::nullopt};
        List elements = {PelDOMNodeList(), isElement ? ref.node : nullptr, std::u16string(tag)};
        handle.getChildNodes(children.handle);
        const int count = PelDOMElement(handle).getElementsByTagName(PelString(tag), elements.handle);
        expectSame(static_cast<std::size_t>(count), elements.nodes().size(), "getElementsByTagName");
        keep(in.below(2) == 0 ? children : elements);
    }

    void assign() {
        Handle& target = some();
        Handle& source = some();
        expectSame(&(target.handle = source.handle), &source.handle, "value of an assignment");
        target.ref = source.ref;
        if (!lists.empty()) in.oneOf(lists) = List(in.oneOf(lists));
        if (!filers.empty()) in.oneOf(filers) = Filer(in.oneOf(filers));
    }

    template <class Things>
    bool dropFrom(Things& things) {
        if (things.empty()) return false;
        things.erase(things.begin() + static_cast<long>(in.below(things.size())));
        return true;
    }

    void dropOne() {
        const std::size_t kind = in.below(4);
        if ((kind == 0 && dropFrom(lists)) || (kind == 1 && dropFrom(filers))) return;
        dropFrom(handles) || dropFrom(lists) || dropFrom(filers);
    }

    void makeFiler() {
        const auto [handle, ref] = some();
        PelDOMDocument document(handle);
        if (filers.size() < 4) filers.push_back({PelDOMFiler(document), ref, ref, ref.root()});
    }

    void useFiler() {
        if (filers.empty()) return;
        Filer& filer = in.oneOf(filers);
        const Text key = name();
        const auto put = [&](const auto& value, Text text) {
            if (in.below(2) == 0)
                expectCode("filer: append", appendInModel(filer.element, key, text),
                    [&] { return filer.handle.appendElement(PelString(key), value); });
            else
                expectCode("filer: set", setInModel(filer.element, key, text),
                    [&] { return filer.handle.setAttribute(PelString(key), value); });
        };
        const Text text = in.oneOf(values);
        const int whole = static_cast<int>(in.byte());
        const PelString digits = std::to_string(whole).c_str();
        Handle& target = some();
        switch (in.below(5)) {
        case 0:
            filer.handle.setCurrentNode(target.handle);
            filer.node = target.ref;
            if (target.ref.is(PelDOM::ELEMENT_NODE)) filer.element = target.ref;
            break;
        case 1:
            return put(PelString(text), text);
        case 2:
            return put(whole, digits.view());
        case 3:
            return put(long{whole}, digits.view());
        default:
            return put(whole + 0.5, (digits + u".500000").view());
        }
    }

    void dump() {
        Handle& one = some();
        one.handle.dump(1);
        one.handle.dumpParseLevel(2);
        if (one.ref.node != nullptr) one.ref.node->stamp(2);
    }

    void startImplicitly() {
        services();
        if (status != PelDOM::SUCCESS) ++starts;
        status = PelDOM::SUCCESS;
    }

    void init() {
        expectSame(services().init(), PelDOM::SUCCESS, "init");
        ++starts;
        status = PelDOM::SUCCESS;
    }

    void terminate() {
        expectSame(services().terminate(), PelDOM::SUCCESS, "terminate");
        starts = std::max(0, starts - 1);
        status = PelDOM::NOT_INITIALIZED;
    }

    void release() {
        PelDOMUtilites::releaseUtilities();
        if (status == PelDOM::SUCCESS) starts = std::max(0, starts - 1);
        status = PelDOM::NOT_INITIALIZED;
    }

    // Those that make trees grow stand more than once.
    static constexpr std::array operations = {&World::createDocument, &World::readDocument,
        &World::createElement, &World::createText, &World::append, &World::append, &World::append,
        &World::change, &World::change, &World::change, &World::removeAttribute, &World::navigate,
        &World::navigate, &World::item, &World::item, &World::list, &World::list, &World::assign,
        &World::dropOne, &World::dropOne, &World::makeFiler, &World::useFiler, &World::useFiler, &World::dump,
        &World::init, &World::terminate, &World::release, &World::checkAll};

    // The engine takes long to start. One start of our own keeps it up, except in one run of eight.
    static inline bool isHeld = false;

    Input& in;
    std::deque<Node> nodes; // they stay to the end, as they do in a document
    std::vector<Handle> handles;
    std::vector<List> lists;
    std::vector<Filer> filers;
    PelDOM::Error status = PelDOM::NOT_INITIALIZED;
    int starts = 0;
};

} // namespace

int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    Input input(data, size);
    World(input).run();
    return 0;
}
