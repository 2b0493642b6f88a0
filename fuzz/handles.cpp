// SPDX-License-Identifier: MIT
// Random calls on handles, lists, filers and services, each compared with a plain model of the trees.
#include "support.h"
#include "tree_model.h"
#include "xerces/handles/PelXercesDOMNode.h"

#include <xercesc/util/PlatformUtils.hpp>

#include <algorithm>
#include <array>
#include <deque>
#include <optional>

namespace {

using xercesc::XMLPlatformUtils;

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
    Ref document, node, element;
};

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
            if (step % 32 == 0) checkAll();
        }
        checkAll();
        handles.clear();
        lists.clear();
        filers.clear();
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
        const bool isElement = node.type == PelDOM::ELEMENT_NODE;
        expectSame(element.getTagName().view(), isElement ? node.name : u"", "tag name");
        expectSame(handle.getNodeName().view(), node.nodeName(), "node name");
        expectSame(handle.getNodeValue().view(), node.value, "node value");
        expectSame(handle.getTextContent().view(), node.textContent(), "text content");
        expectSame(handle.hasChildNodes(), !node.children.empty(), "hasChildNodes");
        expectSame(element.getNumAttributes(), count, "number of attributes");
        expectSame(
            element.getAttributeNameAt(-1) + element.getAttributeValueAt(count), PelString(), "outside");
        const std::vector<PelDOMAttribute> attributes = element.getAttributes();
        expectSame(attributes.size(), node.attributes.size(), "size of the attributes");
        static const bool areNumbered = // else attributes go by name
            sizeof(void*) == 8 && PelDOMUtilites::describeEngine().find("interface alone") < 0;
        auto next = attributes.begin();
        for (const std::u16string& name : node.attributeNames(areNumbered)) {
            expectSame(next->name.view(), name, "name of an attribute");
            expectSame((next++)->value.view(), node.attributes.at(name), "value of an attribute");
        }
        long i = 0;
        for (const auto& [name, value] : node.attributes) {
            expectSame(element.getAttributeNameAt(i).view(), name, "attribute name");
            expectSame(element.getAttributeValueAt(i++).view(), value, "attribute value");
            expectSame(element.getAttribute(PelString(Text(name))).view(), value, "attribute");
            expectSame(element.hasAttribute(name), true, "hasAttribute");
            expectSame(element.getAttributeOr(name, u"else").view(), value, "getAttributeOr");
        }
        expectSame(element.hasAttribute(u"absent"), false, "hasAttribute");
        const bool isText = node.type == PelDOM::TEXT_NODE;
        expectSame(PelDOMText(handle).getValue().view(), isText ? node.value : u"", "text");
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
        const long turn = turns++ % 100; // where to begin, and which way
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
        if (type == PelDOM::ELEMENT_NODE) node.addDefaults();
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
        if (code == 0) element.node->setAttribute(inTree(key), inTree(value));
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
            if (top != nullptr) make(top, PelDOM::XML_DECL_NODE, u"xml", u"", top);
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
            root.setAttribute(u"a", u"1");
            make(top, PelDOM::TEXT_NODE, u"", u"x", &root);
            make(top, PelDOM::ELEMENT_NODE, u"b", u"", &root);
            make(top, PelDOM::COMMENT_NODE, u"", u"c", &root);
            make(top, PelDOM::CDATA_SECTION_NODE, u"", u"y", &root);
            make(top, PelDOM::PROCESSING_INSTRUCTION_NODE, u"p", u"q", &root);
            keep(services().readDocumentFromStringW("<r a='1'>x<b/><!--c--><![CDATA[y]]><?p q?></r>"),
                to(top));
        } else {
            top->defaults[u"d"] = u"def";
            make(top, PelDOM::DOCUMENT_TYPE_NODE, u"r", u"", top);
            make(top, PelDOM::ELEMENT_NODE, u"b", u"", &make(top, PelDOM::ELEMENT_NODE, u"r", u"", top));
            keep(services().readDocumentFromStringW("<!DOCTYPE r [<!ELEMENT r ANY><!ELEMENT b ANY>"
                                                    "<!ATTLIST b d CDATA 'def'>]><r><b/></r>"),
                to(top));
        }
    }

    void createNode() {
        const Handle from = some();
        PelDOMDocument document(from.handle);
        const bool isDocument = from.ref.is(PelDOM::DOCUMENT_NODE);
        const auto created = [&](PelDOM::NodeType type, Text tag, Text text) {
            return isDocument ? to(&make(from.ref.node, type, tag, text)) : Ref();
        };
        const Text tag = name();
        const Text text = in.oneOf(values);
        if (in.below(2) == 0)
            return keep(document.createTextNode(PelString(text)), created(PelDOM::TEXT_NODE, u"", text));
        expectCode("createElement", isDocument && !isName(tag) ? invalidName : 0, [&] {
            const PelDOMElement element = document.createElement(PelString(tag));
            keep(element, created(PelDOM::ELEMENT_NODE, tag, u""));
            return 0;
        });
    }

    void createOther() {
        const Handle from = some();
        PelDOMDocument document(from.handle);
        const Text tag = name();
        const PelString data(in.oneOf(values));
        const auto created = [&](PelDOM::NodeType type, Text target) {
            const Node like = {nullptr, type, u"", u""};
            const bool isGood = from.ref.is(PelDOM::DOCUMENT_NODE) && like.takesValue(data.view()) &&
                                (target.empty() || isName(target));
            return isGood ? to(&make(from.ref.node, type, target, data.view())) : Ref();
        };
        switch (in.below(3)) {
        case 0:
            return keep(document.createComment(data), created(PelDOM::COMMENT_NODE, u""));
        case 1:
            return keep(document.createCDATASection(data), created(PelDOM::CDATA_SECTION_NODE, u""));
        default:
            const PelDOMNode made = document.createProcessingInstruction(PelString(tag), data);
            keep(made, tag.empty() ? Ref() : created(PelDOM::PROCESSING_INSTRUCTION_NODE, tag));
        }
    }

    // A handle to a child, mostly.
    Handle someChild(const Handle& parent) {
        if (parent.ref.node == nullptr || parent.ref.node->children.empty() || in.below(4) == 0)
            return some();
        const std::size_t place = in.byte() % parent.ref.node->children.size();
        PelDOMNode child = parent.handle.getFirstChild();
        for (std::size_t i = 0; i < place; ++i) child = child.getNextSibling();
        return {child, to(parent.ref.node->children[place])};
    }

    void insert() {
        const Handle parent = some(), child = some();
        const Handle before = someChild(parent);
        Node* const inParent = parent.ref.node;
        Node* const inChild = child.ref.node;
        Node* const next = before.ref.node;
        const auto code = [&](bool isGood) { return isGood ? PelDOM::SUCCESS : PelDOM::INVALID_VALUE; };
        const bool isAny = inParent != nullptr && inChild != nullptr;
        switch (in.below(3)) {
        case 0: {
            const bool isGood = isAny && (next == nullptr || next->parent == inParent) &&
                                inParent->takes(*inChild, next, nullptr);
            PelDOMNode target = parent.handle;
            expectSame(target.insertBefore(child.handle, before.handle),
                isAny ? code(isGood) : PelDOM::NULL_NODE, "insertBefore");
            if (isGood && next != inChild) inParent->insert(*inChild, next);
            break;
        }
        case 1: {
            const bool isOld = isAny && next != nullptr && next->parent == inParent;
            const bool isGood =
                isOld && (next == inChild || inParent->takes(*inChild, next->sibling(1), next));
            PelDOMNode target = parent.handle;
            expectSame(target.replaceChild(child.handle, before.handle),
                isAny && next != nullptr ? code(isGood) : PelDOM::NULL_NODE, "replaceChild");
            if (!isGood || next == inChild) break;
            Node* behind = next->sibling(1);
            if (behind == inChild) behind = inChild->sibling(1);
            next->unlink();
            inParent->insert(*inChild, behind);
            break;
        }
        default: {
            const bool isGood = inParent != nullptr && next != nullptr && next->parent == inParent;
            PelDOMNode target = parent.handle;
            expectSame(target.removeChild(before.handle),
                inParent != nullptr && next != nullptr ? code(isGood) : PelDOM::NULL_NODE, "removeChild");
            if (isGood) next->unlink();
        }
        }
    }

    Node* copyInModel(const Node& source, Node* document, bool isDeep) {
        Node& copy = nodes.emplace_back(Node{document, source.type, source.name, source.value});
        if (source.type == PelDOM::ELEMENT_NODE) copy.copyAttributes(source);
        if (isDeep)
            for (const Node* const child : source.children) copy.append(*copyInModel(*child, document, true));
        return &copy;
    }

    void copy() {
        const Handle source = some(), target = some();
        const bool isDeep = in.below(2) == 0;
        const bool canBe =
            source.ref.node != nullptr && source.ref.node->canBeCopied() && nodes.size() < 2000;
        if (nodes.size() >= 2000) return;
        if (in.below(2) == 0) {
            keep(source.handle.cloneNode(isDeep),
                canBe ? to(copyInModel(*source.ref.node, source.ref.node->document, isDeep)) : Ref());
        } else {
            const bool isInto = canBe && target.ref.is(PelDOM::DOCUMENT_NODE);
            keep(PelDOMDocument(target.handle).importNode(source.handle, isDeep),
                isInto ? to(copyInModel(*source.ref.node, target.ref.node, isDeep)) : Ref());
        }
    }

    void rename() {
        Handle& one = some();
        const Text tag = name();
        const bool isElement = one.ref.is(PelDOM::ELEMENT_NODE);
        expectSame(PelDOMElement(one.handle).setTagName(PelString(tag)),
            !isElement    ? PelDOM::NULL_NODE
            : isName(tag) ? PelDOM::SUCCESS
                          : PelDOM::INVALID_VALUE,
            "setTagName");
        if (isElement && isName(tag)) one.ref.node->rename(tag);
    }

    // Enough for the tree to look for nodes that no handle leads to, and to use them again.
    void makeGarbage() {
        const Handle one = some();
        PelDOMDocument document(
            one.ref.is(PelDOM::DOCUMENT_NODE) ? one.handle : one.handle.getOwnerDocument());
        for (int i = 0; document && i < 100; ++i) {
            PelDOMElement element = document.createElement(i % 2 == 0 ? "b" : "garbage");
            element.appendTextElement("garbage", "garbage");
            element.appendChild(document.createComment("garbage"));
        }
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

    void putAttribute() {
        Handle& one = some();
        PelDOMElement element(one.handle);
        const Text key = name();
        const Text text = in.oneOf(values);
        const int whole = static_cast<int>(in.byte()) - 99;
        const bool isElement = one.ref.is(PelDOM::ELEMENT_NODE);
        const auto put = [&](const PelString& value, auto call) {
            const bool isGood = isName(key) && isAllowed(value.view());
            expectCode("putAttribute",
                !isElement ? PelDOM::NULL_NODE
                : isGood   ? PelDOM::SUCCESS
                           : PelDOM::INVALID_VALUE,
                call);
            if (isElement && isGood) one.ref.node->setAttribute(std::u16string(key), value.view());
        };
        const PelString name(key), digits = std::to_string(whole);
        switch (in.below(4)) {
        case 0:
            put(digits, [&] { return element.setAttribute(name, whole); });
            break;
        case 1:
            put(digits + u".5", [&] { return element.setAttribute(name, whole + (whole < 0 ? -0.5 : 0.5)); });
            if (isElement && isName(key) && whole != 0)
                expectSame(element.getAttributeOr(name, 0L), 0L, "getAttributeOr, a whole number");
            break;
        default:
            put(PelString(text), [&] { return element.putAttribute(name, PelString(text)); });
        }
    }

    void removeAttribute() {
        Handle& one = some();
        const Text key = name();
        const bool isGood = one.ref.is(PelDOM::ELEMENT_NODE) && !key.empty();
        expectCode("removeAttribute", isGood ? PelDOM::SUCCESS : PelDOM::INVALID_VALUE,
            [&] { return PelDOMElement(one.handle).removeAttribute(PelString(key)); });
        if (!isGood || !one.ref.node->removeAttribute(inTree(key))) return;
        const auto found = one.ref.node->defaults.find(inTree(key)); // it takes the place of what is removed
        if (found == one.ref.node->defaults.end()) return;
        one.ref.node->attributes[found->first] = found->second;
        one.ref.node->byDefault.insert(found->first);
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

    // A question that changes where the list stands, to be held against a list computed anew.
    PelDOMNode ask(const List& list, Node*& inModel) {
        const std::vector<Node*> listed = list.nodes();
        expectSame(list.handle.length(), static_cast<long>(listed.size()), "length");
        PelDOMNode node;
        inModel = nullptr;
        if (listed.empty()) return node;
        const std::size_t choice = in.below(4), last = listed.size() - 1;
        const std::size_t index = choice == 0 ? 0 : choice == 1 ? last : in.byte() % listed.size();
        expectSame(list.handle.item(static_cast<long>(index), node), PelDOM::SUCCESS, "item");
        inModel = listed[index];
        check(node, to(inModel));
        return node;
    }

    // Loops that go by position and change what they find, while other lists are asked or not.
    void editListed() {
        if (lists.empty()) return;
        const List& list = in.oneOf(lists);
        for (std::size_t steps = in.below(16); steps > 0 && nodes.size() < 2000; --steps) {
            Node* found = nullptr;
            PelDOMNode node = ask(list, found);
            if (found == nullptr) return;
            edit(node, *found);
            for (const List& other : lists)
                if (in.below(2) == 0) ask(other, found);
        }
    }

    void edit(PelDOMNode& node, Node& inModel) {
        PelDOMNode parent = node.getParentNode();
        Node& above = *inModel.parent;
        Handle& target = some();
        const Text tag = in.oneOf(goodNames);
        PelDOMElement element(node);
        const bool isElement = inModel.type == PelDOM::ELEMENT_NODE;
        switch (in.below(6)) {
        case 0:
            expectSame(parent.removeChild(node), PelDOM::SUCCESS, "removeChild");
            return inModel.unlink();
        case 1:
            expectSame(element.setTagName(PelString(tag)), isElement ? PelDOM::SUCCESS : PelDOM::NULL_NODE,
                "setTagName");
            if (isElement) inModel.rename(tag);
            return;
        case 2:
            expectCode("appendTextElement", appendInModel(to(&inModel), tag, u"t"),
                [&] { return element.appendTextElement(PelString(tag), "t"); });
            return;
        case 3:
            if (target.ref.node == nullptr || !target.ref.node->takes(inModel, nullptr, nullptr)) return;
            expectSame(target.handle.insertBefore(node, PelDOMNode()), PelDOM::SUCCESS, "insertBefore");
            return target.ref.node->append(inModel);
        default: {
            if (!isElement || above.type != PelDOM::ELEMENT_NODE) return;
            const bool isWrapping = in.below(2) == 0;
            PelDOMElement made = node.getOwnerDocument().createElement(PelString(tag));
            Node& added = make(inModel.document, PelDOM::ELEMENT_NODE, tag);
            expectSame(parent.insertBefore(made, node), PelDOM::SUCCESS, "insertBefore");
            above.insert(added, &inModel);
            if (!isWrapping) return;
            expectSame(made.appendChild(node), PelDOM::SUCCESS, "appendChild");
            added.append(inModel);
        }
        }
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

    static Ref orNull(Node* node) { return node != nullptr ? to(node) : Ref(); }

    // The calls that give a null handle where there is none.
    void step() {
        const auto [handle, ref] = some();
        static const Node nothing = {nullptr, PelDOM::NO_NODE, u"", u""};
        const Node& node = ref.node != nullptr ? *ref.node : nothing;
        const PelDOMElement element(handle);
        const Text tag = in.below(2) == 0 ? u"*" : name();
        const bool isElement = node.type == PelDOM::ELEMENT_NODE;
        const auto found = [&](Node* from, long direction) {
            return isElement ? orNull(Node::element(from, direction, tag)) : Ref();
        };
        Node* const first = node.children.empty() ? nullptr : node.children.front();
        switch (in.below(9)) {
        case 0:
            return keep(handle.getParentNode(), orNull(node.parent));
        case 1:
            return keep(handle.getOwnerDocument(), orNull(node.document));
        case 2:
            return keep(handle.getFirstChild(), orNull(first));
        case 3:
            return keep(handle.getLastChild(), first != nullptr ? to(node.children.back()) : Ref());
        case 4:
            return keep(handle.getNextSibling(), orNull(node.sibling(1)));
        case 5:
            return keep(handle.getPreviousSibling(), orNull(node.sibling(-1)));
        case 6:
            return keep(element.getChildElement(PelString(tag)), found(first, 1));
        case 7:
            return keep(element.getNextElement(PelString(tag)), found(node.sibling(1), 1));
        default:
            return keep(element.getPreviousElement(PelString(tag)), found(node.sibling(-1), -1));
        }
    }

    // Values and text of any kind of node, and what prefixes stand for.
    void setContent() {
        Handle& one = some();
        Node* const node = one.ref.node;
        const Text text = in.oneOf(values);
        const bool isWhole = in.below(2) == 0;
        const bool intoElement = isWhole && one.ref.is(PelDOM::ELEMENT_NODE);
        static const Node plainText = {nullptr, PelDOM::TEXT_NODE, u"", u""};
        const bool isTaken = node != nullptr && (intoElement ? plainText : *node).takesValue(text);
        const PelDOM::Error expected = node == nullptr ? PelDOM::NULL_NODE
                                       : isTaken       ? PelDOM::SUCCESS
                                                       : PelDOM::INVALID_VALUE;
        const PelString value(text);
        expectSame(isWhole ? one.handle.setTextContent(value) : one.handle.setNodeValue(value), expected,
            "setting content");
        if (isTaken && intoElement) {
            while (!node->children.empty()) node->children.back()->unlink();
            if (!text.empty()) make(node->document, PelDOM::TEXT_NODE, u"", text, node);
        } else if (isTaken) {
            node->value = text;
        }
        for (const char16_t* const prefix : {u"", u"p"}) {
            const bool isElement = one.ref.is(PelDOM::ELEMENT_NODE);
            expectSame(PelDOMElement(one.handle).lookupNamespaceURI(prefix).view(),
                isElement ? node->lookup(prefix) : u"", "namespace");
        }
    }

    void move() {
        Handle& target = some();
        Handle& source = some();
        if (&target == &source) return;
        expectSame(target.handle == source.handle, target.ref.node == source.ref.node, "sameness");
        PelDOMNode moved(std::move(source.handle));
        target.handle = std::move(moved);
        target.ref = std::exchange(source.ref, Ref());
        check(source.handle, source.ref);
        if (lists.size() < 2) return;
        const List &one = in.oneOf(lists), &other = in.oneOf(lists);
        const bool areSame = one.root == other.root && (one.root == nullptr || one.tag == other.tag);
        expectSame(one.handle == other.handle, areSame, "sameness of lists");
    }

    // Loops whose bodies do anything but begin another one.
    void loop() {
        if (Node::loop != nullptr) return;
        const auto [handle, ref] = some();
        const PelDOMElement element(handle);
        const Text tag = in.below(2) == 0 ? u"*" : name();
        const std::size_t kind = in.below(3);
        const bool isWalked = kind == 0 ? ref.node != nullptr : ref.is(PelDOM::ELEMENT_NODE);
        Node::Loop loop = {ref.node, isWalked ? ref.node->children : std::vector<Node*>()};
        const auto next = [&]() -> Node* {
            while (!loop.ahead.empty()) {
                Node* const first = loop.ahead.front();
                loop.ahead.erase(loop.ahead.begin());
                if (kind == 0 || first->isElement(tag)) return first;
            }
            return nullptr;
        };
        Node::loop = &loop;
        if (kind == 0)
            goThrough(handle.getChildNodes(), next);
        else if (kind == 1)
            goThrough(element.getChildElements(PelString(tag)), next);
        else
            goThroughElements(handle, element.getElementsByTagName(PelString(tag)), tag);
        Node::loop = nullptr;
    }

    template <class Range, class Next>
    void goThrough(const Range& range, const Next& next) {
        int steps = 0;
        for (const auto node : range) {
            Node* const expected = next();
            expectSame(expected != nullptr, true, "a loop goes on");
            keep(node, to(expected));
            if (++steps > 50) return;
            useBody(node, expected);
        }
        expectSame(next() == nullptr, true, "a loop ends");
    }

    void goThroughElements(const PelDOMNode& root, const PelDOMNodeList& list, Text tag) {
        int steps = 0;
        for (const PelDOMNode node : list) {
            PelDOMNode above = node.getParentNode();
            while (above && above != root) above = above.getParentNode();
            expectSame(above == root, true, "an element is below the root of its list");
            expectSame(tag == u"*" || node.getNodeName().view() == tag, true, "an element has that name");
            if (++steps > 50) return;
            useBody(PelDOMNode(), nullptr);
        }
    }

    void useBody(const PelDOMNode& node, Node* inModel) {
        const std::size_t calls = in.below(4);
        if (calls == 3 && inModel != nullptr && inModel->parent != nullptr) {
            expectSame(node.getParentNode().removeChild(node), PelDOM::SUCCESS, "removeChild");
            inModel->unlink();
        }
        for (std::size_t i = 0; i < calls; ++i) (this->*in.oneOf(operations))();
    }

    template <class Things>
    void drop(Things& things) {
        if (!things.empty()) things.erase(things.begin() + static_cast<long>(in.below(things.size())));
    }

    void dropHandle() { drop(handles); }
    void dropList() { drop(lists); }
    void dropFiler() { drop(filers); }

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

    void started() {
        ++starts;
        status = PelDOM::SUCCESS;
    }

    void stopped() {
        starts = std::max(0, starts - 1);
        status = PelDOM::NOT_INITIALIZED;
    }

    // What creating and reading do first.
    void startImplicitly() {
        if (services().getErrorStatus() != PelDOM::SUCCESS) started();
    }

    void init() {
        expectSame(services().init(), PelDOM::SUCCESS, "init");
        started();
    }

    void terminate() {
        expectSame(services().terminate(), PelDOM::SUCCESS, "terminate");
        stopped();
    }

    void release() {
        PelDOMUtilites::releaseUtilities();
        if (status == PelDOM::SUCCESS) stopped();
    }

    // Those that make trees grow stand more than once.
    static constexpr std::array operations = {&World::createDocument, &World::readDocument,
        &World::createNode, &World::createNode, &World::append, &World::append, &World::append,
        &World::change, &World::change, &World::change, &World::putAttribute, &World::removeAttribute,
        &World::navigate, &World::navigate, &World::item, &World::item, &World::list, &World::list,
        &World::assign, &World::dropHandle, &World::dropList, &World::dropFiler, &World::makeFiler,
        &World::useFiler, &World::useFiler, &World::dump, &World::init, &World::terminate, &World::release,
        &World::checkAll, &World::createOther, &World::createOther, &World::insert, &World::insert,
        &World::insert, &World::insert, &World::copy, &World::copy, &World::rename, &World::makeGarbage,
        &World::step, &World::step, &World::setContent, &World::move, &World::loop, &World::loop,
        &World::editListed, &World::editListed};

    // The engine takes long to start. One start of our own keeps it up, except in one run of eight.
    static inline bool isHeld = false;

    Input& in;
    std::deque<Node> nodes; // they stay to the end, as they do in a document
    std::vector<Handle> handles;
    std::vector<List> lists;
    std::vector<Filer> filers;
    PelDOM::Error status = PelDOM::NOT_INITIALIZED;
    int starts = 0;
    long turns = 0;
};

} // namespace

int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    Input input(data, size);
    World(input).run();
    return 0;
}
