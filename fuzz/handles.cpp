// SPDX-License-Identifier: MIT
// Random calls on handles, lists, filers and services, each compared with a plain model of the trees.
#include "support.h"
#include "xerces/PelXercesDOMNode.h"

#include <xercesc/dom/DOMException.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include <algorithm>
#include <array>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>

namespace {

struct Tree;

struct Node {
    Tree* tree;
    PelDOM::NodeType type;
    std::u16string name;
    std::u16string value;
    Node* parent = nullptr;
    std::vector<Node*> children = {};
    std::map<std::u16string, std::u16string> attributes = {};
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
        const Node* node = this;
        while (node != nullptr && node != &ancestor) node = node->parent;
        return node != nullptr;
    }

    Node* child(PelDOM::NodeType wanted) const {
        const auto found = std::find_if(
            children.begin(), children.end(), [&](const Node* node) { return node->type == wanted; });
        return found != children.end() ? *found : nullptr;
    }

    void addElements(std::u16string_view tag, std::vector<Node*>& found) const {
        for (Node* const node : children)
            if (node->type == PelDOM::ELEMENT_NODE) {
                if (tag == u"*" || tag == node->name) found.push_back(node);
                node->addElements(tag, found);
            }
    }
};

/// Nodes stay to the end, as they do in a document.
struct Tree {
    std::deque<Node> nodes;
    std::map<std::u16string, std::map<std::u16string, std::u16string>> defaults = {};

    Node& make(PelDOM::NodeType type, const std::u16string& name = {}, const std::u16string& value = {}) {
        Node& node = nodes.emplace_back(Node{this, type, name, value});
        if (type == PelDOM::ELEMENT_NODE && defaults.count(name) != 0) node.attributes = defaults[name];
        return node;
    }
    Node& add(Node& parent, PelDOM::NodeType type, const std::u16string& name = {},
        const std::u16string& value = {}) {
        Node& node = make(type, name, value);
        parent.append(node);
        return node;
    }
};

/// What a handle has to be: null, or to a node, or to the absence of one.
struct Ref {
    Node* node = nullptr;
    bool isNull = true;

    bool is(PelDOM::NodeType type) const { return node != nullptr && node->type == type; }
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

    std::vector<Node*> expected() const {
        std::vector<Node*> nodes;
        if (root != nullptr && tag)
            root->addElements(*tag, nodes);
        else if (root != nullptr)
            nodes = root->children;
        return nodes;
    }
};

struct Filer {
    PelDOMFiler handle;
    Ref document;
    Ref node;
    Ref element;
};

constexpr std::u16string_view goodNames[] = {
    u"r", u"a", u"b", u"b-1", u"\u00e9\u4e2d", u"_x.y", u"p:q", u":a"};
constexpr std::u16string_view badNames[] = {
    u"", u"1", u"a b", u"-a", u"a\u00d7", u"\xD800", u"<", std::u16string_view(u"\0a", 2)};
constexpr std::u16string_view values[] = {u"", u"v", u" ", u"12", u"\u00e9\u4e2d\U0001F600", u"<&>\"'\r\n\t",
    u"long text, longer than before, and longer again and again", std::u16string_view(u"x\0y", 3),
    std::u16string_view(u"\0z", 2), u"\xDC00", u"]]>"};

// Strings end at their first U+0000 where the tree takes them.
std::u16string inTree(std::u16string_view text) { return std::u16string(text.substr(0, text.find(u'\0'))); }

bool isName(std::u16string_view name) {
    return std::find(std::begin(goodNames), std::end(goodNames), inTree(name)) != std::end(goodNames);
}

constexpr int hierarchy = -xercesc::DOMException::HIERARCHY_REQUEST_ERR;
constexpr int wrongDocument = -xercesc::DOMException::WRONG_DOCUMENT_ERR;
constexpr int invalidName = -xercesc::DOMException::INVALID_CHARACTER_ERR;

// The code of a call, negative for an exception.
int codeOf(const std::function<int()>& call) {
    try {
        return call();
    } catch (const xercesc::DOMException& exception) {
        return -exception.code;
    }
}

int expectedOfAppend(const Ref& parentRef, const Ref& childRef) {
    if (parentRef.node == nullptr || childRef.node == nullptr) return PelDOM::NULL_NODE;
    const Node& parent = *parentRef.node;
    const Node& child = *childRef.node;
    const bool intoDocument = parent.type == PelDOM::DOCUMENT_NODE;
    if (&parent == &child || (child.type == PelDOM::XML_DECL_NODE && !intoDocument)) return hierarchy;
    if (parent.type != PelDOM::ELEMENT_NODE && !intoDocument && parent.type != PelDOM::DOCUMENT_TYPE_NODE)
        return hierarchy;
    const bool isSingle = child.type == PelDOM::ELEMENT_NODE || child.type == PelDOM::DOCUMENT_TYPE_NODE;
    if (intoDocument && isSingle && parent.child(child.type) != nullptr) return hierarchy;
    if (parent.tree != child.tree || child.type == PelDOM::DOCUMENT_NODE) return wrongDocument;
    if (parent.type == PelDOM::DOCUMENT_TYPE_NODE || parent.isWithin(child)) return hierarchy;
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
        if (isFree && isHeld) xercesc::XMLPlatformUtils::Terminate();
        if (!isFree && !isHeld) xercesc::XMLPlatformUtils::Initialize();
        isHeld = !isFree;
    }

    void run() {
        for (int step = 0; !in.isAtEnd() && step < 400; ++step) {
            const auto operation = operations[in.below(operations.size())];
            (this->*operation)();
            checkServices();
            if (step % 16 == 15) checkAll();
        }
        checkAll();
        while (!handles.empty() || !lists.empty() || !filers.empty()) dropOne();
        for (services(); starts > 0;) terminate();
        checkServices();
        PelDOMUtilites::releaseUtilities();
    }

private:
    static bool engineIsUp() { return xercesc::XMLPlatformUtils::fgMemoryManager != nullptr; }

    // Comparing.

    static void checkRef(const PelDOMNode& handle, const Ref& ref) {
        expectSame(handle.isNull() == 1, ref.isNull, "isNull");
        expectSame(
            handle.getErrorStatus(), ref.isNull ? PelDOM::NO_IMPLEMENTATION : PelDOM::SUCCESS, "status");
        expectSame(handle.getNodeType(), ref.node != nullptr ? ref.node->type : PelDOM::NO_NODE, "type");
        if (ref.node == nullptr) return;
        const void* const engineNode = PelXercesDOMNode::of(*handle.getNodeImp()).getNode();
        if (ref.node->engineNode == nullptr) ref.node->engineNode = engineNode;
        expectSame(engineNode, ref.node->engineNode, "node");
    }

    static void checkElement(const PelDOMElement& element, const Ref& ref) {
        const bool isElement = ref.is(PelDOM::ELEMENT_NODE);
        const auto attributes = isElement ? ref.node->attributes : decltype(ref.node->attributes)();
        const auto count = static_cast<long>(attributes.size());
        expectSame(element.getTagName().view(), isElement ? ref.node->name : u"", "tag name");
        expectSame(element.getNumAttributes(), count, "number of attributes");
        expectSame(
            element.getAttributeNameAt(-1) + element.getAttributeValueAt(count), PelString(), "outside");
        long i = 0;
        for (const auto& [name, value] : attributes) {
            expectSame(element.getAttributeNameAt(i).view(), name, "attribute name");
            expectSame(element.getAttributeValueAt(i++).view(), value, "attribute value");
            expectSame(element.getAttribute(PelString(std::u16string_view(name))).view(), value, "attribute");
        }
        const bool hasText = ref.node != nullptr && ref.node->children.size() == 1 &&
                             ref.node->children[0]->type == PelDOM::TEXT_NODE;
        PelString text = u"kept";
        expectSame(
            element.getChildTextValue(text), hasText ? PelDOM::SUCCESS : PelDOM::INVALID_VALUE, "code");
        expectSame(text.view(), hasText ? ref.node->children[0]->value : u"kept", "child text");
    }

    void checkList(const List& list) {
        const std::vector<Node*> nodes = list.expected();
        const auto count = static_cast<long>(nodes.size());
        expectSame(list.handle.length(), count, "length");
        const long turn = static_cast<long>(in.byte()); // where to begin, and which way
        for (long i = 0; i < count; ++i) {
            const long index = turn % 2 == 0 ? (turn + i) % count : count - 1 - (turn + i) % count;
            PelDOMNode item;
            expectSame(list.handle.item(index, item), PelDOM::SUCCESS, "item");
            checkRef(item, to(nodes[static_cast<std::size_t>(index)]));
        }
        PelDOMNode kept;
        const PelDOM::Error outside = list.root != nullptr ? PelDOM::INDEX_OUT_OF_RANGE : PelDOM::NULL_NODE;
        expectSame(list.handle.item(count, kept), outside, "item past the end");
        expectSame(list.handle.item(-1, kept), outside, "item before the first");
        checkRef(kept, Ref());
    }

    void checkHandle(const Handle& one) {
        const auto& [handle, ref] = one;
        checkRef(handle, ref);
        checkElement(PelDOMElement(handle), ref);
        expectSame(
            PelDOMText(handle).getValue().view(), ref.is(PelDOM::TEXT_NODE) ? ref.node->value : u"", "text");
        List children;
        expectSame(handle.getChildNodes(children.handle),
            ref.node != nullptr ? PelDOM::SUCCESS : PelDOM::NULL_NODE, "getChildNodes");
        children.root = ref.node;
        checkList(children);
        checkRef(PelDOMDocument(handle).getDocumentElement(), rootOf(ref));
    }

    void checkAll() {
        for (const Handle& handle : handles) checkHandle(handle);
        for (const List& list : lists) checkList(list);
        for (Filer& filer : filers) {
            checkRef(filer.handle.document(), filer.document);
            checkRef(filer.handle.currentNode(), filer.node);
            checkRef(filer.handle.currentElement(), filer.element);
        }
        for (Tree& tree : trees) // all of a tree that a handle leads to
            for (Node& node : tree.nodes)
                if (node.engineNode != nullptr) checkTree(node);
    }

    // Only handles lead into a tree; a tree without any is gone.
    void checkTree(const Node& node) {
        for (const Handle& one : handles)
            if (one.ref.node == &node)
                for (std::size_t i = 0; i < node.children.size(); ++i) {
                    Handle child = {PelDOMNode(), to(node.children[i])};
                    List list = {PelDOMNodeList(), one.ref.node, std::nullopt};
                    one.handle.getChildNodes(list.handle);
                    list.handle.item(static_cast<long>(i), child.handle);
                    checkHandle(child);
                }
    }

    void checkServices() const {
        expectSame(services().getErrorStatus(), status, "status of the services");
        bool isInUse = starts > 0;
        for (const Handle& handle : handles) isInUse = isInUse || handle.ref.node != nullptr;
        for (const List& list : lists) isInUse = isInUse || list.root != nullptr;
        for (const Filer& filer : filers)
            isInUse = isInUse || filer.document.node || filer.node.node || filer.element.node;
        if (isHeld && !isInUse && !engineIsUp()) xercesc::XMLPlatformUtils::Initialize(); // one stop too many
        expectSame(engineIsUp(), isInUse || isHeld, "engine is up");
    }

    // Choosing.

    Handle& some() {
        if (handles.empty()) handles.emplace_back();
        return handles[in.below(handles.size())];
    }

    std::u16string_view name() {
        const std::size_t choice = in.below(32);
        return choice < std::size(badNames) ? badNames[choice] : in.oneOf(goodNames);
    }

    void keep(const PelDOMNode& handle, const Ref& ref) {
        checkRef(handle, ref);
        if (handles.size() >= 12)
            some() = {handle, ref};
        else
            handles.push_back({handle, ref});
    }

    void keep(const List& list) {
        checkList(list);
        if (lists.size() >= 6)
            lists[in.below(6)] = list;
        else
            lists.push_back(list);
    }

    static Ref rootOf(const Ref& document) {
        if (!document.is(PelDOM::DOCUMENT_NODE)) return Ref();
        return to(document.node->child(PelDOM::ELEMENT_NODE));
    }

    // What the calls do to the model.

    static int setInModel(const Ref& element, std::u16string_view key, std::u16string_view value) {
        if (!element.is(PelDOM::ELEMENT_NODE)) return PelDOM::NULL_NODE;
        if (key.empty() || value.empty()) return PelDOM::INVALID_VALUE;
        if (!isName(key)) return invalidName;
        element.node->attributes[inTree(key)] = inTree(value);
        return PelDOM::SUCCESS;
    }

    static int appendTextInModel(const Ref& element, std::u16string_view tag, std::u16string_view text) {
        if (!element.is(PelDOM::ELEMENT_NODE)) return PelDOM::NULL_NODE;
        if (tag.empty() || text.empty()) return PelDOM::INVALID_VALUE;
        if (!isName(tag)) return invalidName;
        Tree& tree = *element.node->tree;
        tree.add(
            tree.add(*element.node, PelDOM::ELEMENT_NODE, inTree(tag)), PelDOM::TEXT_NODE, u"", inTree(text));
        return PelDOM::SUCCESS;
    }

    static void stampInModel(Node& node, int level) {
        if (node.type == PelDOM::ELEMENT_NODE)
            node.attributes[u"PARSELEVEL"] = PelString(std::to_string(level).c_str()).view();
        for (Node* const child : node.children) stampInModel(*child, level + 1);
    }

    // Operations.

    void create() {
        const std::u16string_view tag = name();
        startImplicitly();
        const bool isGood = isName(tag) && tag.find(u':') == tag.npos;
        const int code = codeOf([&] {
            const PelDOMDocument document = services().createDocument(PelString(tag));
            if (tag.empty()) {
                checkRef(document, Ref());
                return 0;
            }
            if (!isGood) return 1; // it should not have been made
            Tree& tree = trees.emplace_back();
            Node& top = tree.make(PelDOM::DOCUMENT_NODE);
            tree.add(top, PelDOM::XML_DECL_NODE);
            tree.add(top, PelDOM::ELEMENT_NODE, inTree(tag));
            keep(document, to(&top));
            return 0;
        });
        if (tag.empty() || isGood)
            expectSame(code, 0, "createDocument");
        else
            expectSame(code < 0, true, "createDocument with a bad name");
    }

    void read() {
        static constexpr const char* texts[] = {"<r a='1'>x<b/><!--c--><![CDATA[y]]><?p q?></r>",
            "<!DOCTYPE r [<!ELEMENT r ANY><!ELEMENT b ANY><!ATTLIST b d CDATA 'def'>]><r><b>t</b></r>",
            "<r>"};
        const std::size_t choice = in.below(3);
        startImplicitly();
        const PelDOMDocument document = services().readDocumentFromStringW(texts[choice]);
        if (choice == 2) {
            keep(document, Ref());
            return;
        }
        Tree& tree = trees.emplace_back();
        Node& top = tree.make(PelDOM::DOCUMENT_NODE);
        if (choice == 1) {
            tree.defaults[u"b"][u"d"] = u"def";
            tree.add(top, PelDOM::DOCUMENT_TYPE_NODE);
        }
        Node& root = tree.add(top, PelDOM::ELEMENT_NODE, u"r");
        if (choice == 0) {
            root.attributes[u"a"] = u"1";
            tree.add(root, PelDOM::TEXT_NODE, u"", u"x");
        }
        Node& b = tree.add(root, PelDOM::ELEMENT_NODE, u"b");
        if (choice == 0)
            for (const auto type :
                {PelDOM::COMMENT_NODE, PelDOM::CDATA_SECTION_NODE, PelDOM::PROCESSING_INSTRUCTION_NODE})
                tree.add(root, type);
        else
            tree.add(b, PelDOM::TEXT_NODE, u"", u"t");
        keep(document, to(&top));
    }

    void createElement() {
        const Handle from = some();
        const std::u16string_view tag = name();
        const bool isDocument = from.ref.is(PelDOM::DOCUMENT_NODE);
        const int code = codeOf([&] {
            const PelDOMElement element = PelDOMDocument(from.handle).createElement(PelString(tag));
            if (!isDocument)
                checkRef(element, Ref());
            else if (isName(tag))
                keep(element, to(&from.ref.node->tree->make(PelDOM::ELEMENT_NODE, inTree(tag))));
            return 0;
        });
        expectSame(code, isDocument && !isName(tag) ? invalidName : 0, "createElement");
    }

    void createText() {
        const Handle from = some();
        const std::u16string_view text = in.oneOf(values);
        const PelDOMText node = PelDOMDocument(from.handle).createTextNode(PelString(text));
        const bool isDocument = from.ref.is(PelDOM::DOCUMENT_NODE);
        keep(node, isDocument ? to(&from.ref.node->tree->make(PelDOM::TEXT_NODE, u"", inTree(text))) : Ref());
    }

    void append() {
        Handle parent = some();
        Handle& child = some();
        const int expected = expectedOfAppend(parent.ref, child.ref);
        expectSame(codeOf([&] { return parent.handle.appendChild(child.handle); }), expected, "appendChild");
        if (expected == PelDOM::SUCCESS) parent.ref.node->append(*child.ref.node);
        checkRef(child.handle, child.ref);
    }

    void setAttribute() {
        Handle& one = some();
        const std::u16string_view key = name();
        const std::u16string_view value = in.oneOf(values);
        const int code =
            codeOf([&] { return PelDOMElement(one.handle).setAttribute(PelString(key), PelString(value)); });
        expectSame(code, setInModel(one.ref, key, value), "setAttribute");
        checkElement(PelDOMElement(one.handle), one.ref);
    }

    void removeAttribute() {
        Handle& one = some();
        const std::u16string_view key = name();
        const bool isGood = one.ref.is(PelDOM::ELEMENT_NODE) && !key.empty();
        expectSame(codeOf([&] { return PelDOMElement(one.handle).removeAttribute(PelString(key)); }),
            isGood ? PelDOM::SUCCESS : PelDOM::INVALID_VALUE, "removeAttribute");
        if (isGood) { // a default takes the place of what is removed
            auto& defaults = one.ref.node->tree->defaults[one.ref.node->name];
            const bool wasThere = one.ref.node->attributes.erase(inTree(key)) != 0;
            if (wasThere && defaults.count(inTree(key)) != 0)
                one.ref.node->attributes[inTree(key)] = defaults[inTree(key)];
        }
        checkElement(PelDOMElement(one.handle), one.ref);
    }

    void appendTextElement() {
        Handle& one = some();
        const std::u16string_view tag = name();
        const std::u16string_view text = in.oneOf(values);
        const int code = codeOf(
            [&] { return PelDOMElement(one.handle).appendTextElement(PelString(tag), PelString(text)); });
        expectSame(code, appendTextInModel(one.ref, tag, text), "appendTextElement");
    }

    void setValue() {
        Handle& one = some();
        const std::u16string_view text = in.oneOf(values);
        const bool isText = one.ref.is(PelDOM::TEXT_NODE);
        expectSame(PelDOMText(one.handle).setValue(PelString(text)),
            !isText        ? PelDOM::INTERNAL_ERROR
            : text.empty() ? PelDOM::INVALID_VALUE
                           : PelDOM::SUCCESS,
            "setValue");
        if (isText && !text.empty()) one.ref.node->value = inTree(text);
    }

    void goToParent() {
        const Handle from = some();
        Handle& out = some();
        expectSame(from.handle.getParentNode(out.handle), from.ref.node ? PelDOM::SUCCESS : PelDOM::NULL_NODE,
            "getParentNode");
        if (from.ref.node != nullptr) out.ref = to(from.ref.node->parent);
        checkRef(out.handle, out.ref);
    }

    void goToDocument() {
        const Handle from = some();
        PelDOMDocument document;
        expectSame(from.handle.getOwnerDocument(document),
            from.ref.node ? PelDOM::SUCCESS : PelDOM::NULL_NODE, "getOwnerDocument");
        if (from.ref.node == nullptr)
            keep(document, Ref());
        else
            keep(document,
                to(from.ref.is(PelDOM::DOCUMENT_NODE) ? nullptr : &from.ref.node->tree->nodes.front()));
    }

    void goToRoot() {
        const Handle from = some();
        keep(PelDOMDocument(from.handle).getDocumentElement(), rootOf(from.ref));
    }

    void goToItem() {
        if (lists.empty()) return;
        const List& list = lists[in.below(lists.size())];
        const std::vector<Node*> nodes = list.expected();
        const std::size_t index = in.below(256);
        PelDOMNode item;
        if (nodes.empty()) return;
        list.handle.item(static_cast<long>(index % nodes.size()), item);
        // An index after the last call's may be asked for without the length in between.
        keep(item, to(nodes[index % nodes.size()]));
    }

    void listChildren() {
        const Handle from = some();
        List list;
        from.handle.getChildNodes(list.handle);
        list.root = from.ref.node;
        keep(list);
    }

    void listTags() {
        const Handle from = some();
        const std::u16string tag(in.below(4) == 0 ? u"*" : name());
        List list = {PelDOMNodeList(), from.ref.is(PelDOM::ELEMENT_NODE) ? from.ref.node : nullptr, tag};
        const int count =
            PelDOMElement(from.handle).getElementsByTagName(PelString(std::u16string_view(tag)), list.handle);
        expectSame(static_cast<std::size_t>(count), list.expected().size(), "getElementsByTagName");
        keep(list);
    }

    void assign() {
        Handle& target = some();
        const Handle& source = some();
        expectSame(&(target.handle = source.handle), &source.handle, "value of an assignment");
        target.ref = source.ref;
        checkRef(target.handle, target.ref);
    }

    void assignList() {
        if (!lists.empty()) lists[in.below(lists.size())] = List(lists[in.below(lists.size())]);
    }

    void dropOne() {
        const std::size_t kind = in.below(4);
        if (kind == 0 && !lists.empty())
            lists.erase(lists.begin() + static_cast<long>(in.below(lists.size())));
        else if (kind == 1 && !filers.empty())
            filers.erase(filers.begin() + static_cast<long>(in.below(filers.size())));
        else if (!handles.empty())
            handles.erase(handles.begin() + static_cast<long>(in.below(handles.size())));
        else if (!lists.empty())
            lists.pop_back();
        else if (!filers.empty())
            filers.pop_back();
    }

    void makeFiler() {
        const Handle from = some();
        PelDOMDocument document(from.handle);
        Filer filer = {PelDOMFiler(document), from.ref, from.ref, rootOf(from.ref)};
        if (filers.size() < 4)
            filers.push_back(filer);
        else
            filers[in.below(4)] = filer;
    }

    void useFiler() {
        if (filers.empty()) return;
        Filer& filer = filers[in.below(filers.size())];
        const std::u16string_view tag = name();
        const PelString key(tag);
        const long whole = static_cast<long>(in.byte()) - 100;
        const PelString digits = std::to_string(whole).c_str();
        const PelString real = digits + u".500000";
        const double half = static_cast<double>(whole) + (whole < 0 ? -0.5 : 0.5);
        const PelString text(in.oneOf(values));
        switch (in.below(7)) {
        case 0: {
            Handle& to = some();
            filer.handle.setCurrentNode(to.handle);
            filer.node = to.ref;
            if (to.ref.is(PelDOM::ELEMENT_NODE)) filer.element = to.ref;
            break;
        }
        case 1:
            expectSame(codeOf([&] { return filer.handle.appendElement(key, text); }),
                appendTextInModel(filer.element, tag, text.view()), "filer: append text");
            break;
        case 2:
            expectSame(codeOf([&] { return filer.handle.appendElement(key, whole); }),
                appendTextInModel(filer.element, tag, digits.view()), "filer: append long");
            break;
        case 3:
            expectSame(codeOf([&] { return filer.handle.appendElement(key, half); }),
                appendTextInModel(filer.element, tag, real.view()), "filer: append double");
            break;
        case 4:
            expectSame(codeOf([&] { return filer.handle.setAttribute(key, text); }),
                setInModel(filer.element, tag, text.view()), "filer: set text");
            break;
        case 5:
            expectSame(codeOf([&] { return filer.handle.setAttribute(key, static_cast<int>(whole)); }),
                setInModel(filer.element, tag, digits.view()), "filer: set int");
            break;
        default:
            expectSame(codeOf([&] { return filer.handle.setAttribute(key, half); }),
                setInModel(filer.element, tag, real.view()), "filer: set double");
        }
    }

    void dump() {
        Handle& one = some();
        one.handle.dump(1);
        one.handle.dumpParseLevel(2);
        if (one.ref.node != nullptr) stampInModel(*one.ref.node, 2);
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
        if (status != PelDOM::NOT_INITIALIZED) starts = std::max(0, starts - 1);
        status = PelDOM::NOT_INITIALIZED;
    }

    // Those that make trees grow stand more than once.
    static constexpr std::array operations = {&World::create, &World::read, &World::createElement,
        &World::createElement, &World::createText, &World::append, &World::append, &World::append,
        &World::setAttribute, &World::removeAttribute, &World::appendTextElement, &World::appendTextElement,
        &World::setValue, &World::goToParent, &World::goToDocument, &World::goToRoot, &World::goToItem,
        &World::goToItem, &World::listChildren, &World::listTags, &World::assign, &World::assignList,
        &World::dropOne, &World::dropOne, &World::makeFiler, &World::useFiler, &World::useFiler, &World::dump,
        &World::init, &World::terminate, &World::release, &World::checkAll};

    // The engine takes long to start. One start of our own keeps it up, except in one run of eight.
    static inline bool isHeld = false;

    Input& in;
    std::deque<Tree> trees; // before the handles, which are dropped first
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
