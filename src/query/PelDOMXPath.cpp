// SPDX-License-Identifier: MIT
#include "core/PelLog.h"
#include "core/PelThreadMessage.h"
#include "query/PelXPathEvaluator.h"
#include "query/PelXPathParser.h"
#include "xerces/handles/PelXercesDOMNode.h"

#include <qrndom/PelDOMXPath.h>

#include <xercesc/util/OutOfMemoryException.hpp>

#include <limits>
#include <map>
#include <new>
#include <optional>
#include <string>
#include <utility>

using Node = PelXPathTree::Node;
using Tree = PelXPathTree;

struct PelDOMXPath::Body {
    std::shared_ptr<const PelXPathExpression> expression{}; // null: ill-formed
    std::map<std::u16string, std::u16string> namespaces{};
    std::map<std::u16string, PelXPathValue> variables{};
    std::uint64_t limit = 100'000'000;
    PelString message{};

    void compile(const PelString& text) {
        try {
            expression = PelXPathParser::parse(text.view());
        } catch (const PelXPathError& error) {
            message = error.getMessage();
        }
    }

    const PelXPathValue& valueOf(const PelXPathExpression::Name& variable) const {
        const auto found = variables.find(variable.name);
        if (found == variables.end())
            throw PelXPathError{u"the variable $" + PelString(variable.name) + u" is not set",
                                variable.column};
        return found->second;
    }

    // The element whose declarations hold where the expression is asked.
    static const Node* scopeOf(Node& context, const Tree& tree) {
        if (context.getNodeType() == Node::DOCUMENT_NODE)
            return tree.getDocument().getDocumentElement();
        const Node* const scope = Tree::isElement(context) ? &context : Tree::parentOf(context);
        return scope != nullptr && Tree::isElement(*scope) ? scope : nullptr;
    }

    std::u16string uriOf(const PelXPathExpression::Name& prefix, const Node* scope,
                         PelXPathNames& names) const {
        const auto found = namespaces.find(prefix.name);
        if (found != namespaces.end())
            return found->second;
        std::u16string_view uri;
        if (scope != nullptr || prefix.name == u"xml")
            uri = names.lookup(scope, prefix.name);
        if (uri.empty())
            throw PelXPathError{u"the prefix " + PelString(prefix.name) + u" stands for nothing",
                                prefix.column};
        return std::u16string(uri);
    }

    /// Lets `use` ask the expression from a node; false where that fails.
    template <class Use>
    bool evaluate(const PelDOMNode& context, Use use) {
        if (expression == nullptr)
            return false; // the message says why
        message = PelString();
        try {
            const PelXercesNodeRef ref = PelXercesDOMNode::of(context);
            if (!ref)
                throw PelXPathError{u"there is no node to ask from"};
            Node* const start = Tree::standingFor(*ref.getNode());
            if (start == nullptr)
                throw PelXPathError{u"expressions do not see the node to ask from"};
            Tree tree(ref.getTree(), limit);
            std::vector<PelXPathValue> values;
            for (const auto& variable : expression->variables)
                values.push_back(valueOf(variable));
            PelXPathEvaluator evaluator(*expression, tree, std::move(values));
            std::vector<std::u16string> uris;
            for (const auto& prefix : expression->prefixes)
                uris.push_back(uriOf(prefix, scopeOf(*start, tree), evaluator.getNames()));
            evaluator.getNames().setUris(std::move(uris));
            use(evaluator, PelXPathContext{start}, ref);
            return true;
        } catch (const PelXPathError& error) {
            message = error.getMessage();
        } catch (const xercesc::OutOfMemoryException&) {
            throw std::bad_alloc();
        }
        return false;
    }

    /// The same where a set is asked for.
    template <class Use>
    bool select(const PelDOMNode& context, Use use) {
        return evaluate(context,
                        [this, &use](PelXPathEvaluator& evaluator, const PelXPathContext& start,
                                     const PelXercesNodeRef& ref) {
                            if (expression->root->type != PelDOMXPath::NODES)
                                throw PelXPathError{u"the expression gives no set of nodes"};
                            use(evaluator, start, ref);
                        });
    }

    std::vector<Node*> nodes(PelXPathEvaluator& evaluator, const PelXPathContext& start) const {
        return evaluator.nodes(*expression->root, start).nodes;
    }

    [[noreturn]] static void refuseAttributes() {
        throw PelXPathError{u"the expression gives attributes only: ask with selectAttributes"};
    }

    template <class Handle>
    std::vector<Handle> selectAll(const PelDOMNode& context) {
        std::vector<Handle> handles;
        select(context, [this, &handles](auto& evaluator, const auto& start, const auto& ref) {
            const std::vector<Node*> found = nodes(evaluator, start);
            handles.reserve(found.size());
            bool hasOthers = found.empty();
            for (Node* const node : found) {
                const bool isAttribute = Tree::isAttribute(*node);
                hasOthers = hasOthers || !isAttribute;
                if (!isAttribute && isOfKind<Handle>(*node))
                    handles.emplace_back(PelXercesDOMNode::makeUntraced(ref, node));
            }
            if (!hasOthers)
                refuseAttributes();
        });
        return handles;
    }

    // Most often the first node is one that is asked for, and the others need not be known.
    template <class Handle>
    Handle selectFirst(const PelDOMNode& context) {
        PelDOMNodeImp* imp = nullptr;
        select(context, [this, &imp](auto& evaluator, const auto& start, const auto& ref) {
            Node* node = evaluator.first(*expression->root, start);
            if (node != nullptr && !isOfKind<Handle>(*node)) {
                bool hasOthers = false;
                node = nullptr;
                for (Node* const found : nodes(evaluator, start)) {
                    hasOthers = hasOthers || !Tree::isAttribute(*found);
                    if (node == nullptr && isOfKind<Handle>(*found))
                        node = found;
                }
                if (!hasOthers)
                    refuseAttributes();
            }
            imp = PelXercesDOMNode::makeUntraced(ref, node);
        });
        return Handle(imp);
    }

    template <class Handle>
    static bool isOfKind(const Node& node) {
        return std::is_same_v<Handle, PelDOMElement> ? Tree::isElement(node)
                                                     : !Tree::isAttribute(node);
    }
};

PelDOMXPath::PelDOMXPath() noexcept = default;

PelDOMXPath::PelDOMXPath(const PelString& expression) : body(std::make_unique<Body>()) {
    body->compile(expression);
}

PelDOMXPath::PelDOMXPath(const PelDOMXPath& other)
    : body(other.body ? std::make_unique<Body>(*other.body) : nullptr) {
}

PelDOMXPath::PelDOMXPath(PelDOMXPath&& other) noexcept = default;

PelDOMXPath& PelDOMXPath::operator=(const PelDOMXPath& other) {
    return *this = PelDOMXPath(other);
}

PelDOMXPath& PelDOMXPath::operator=(PelDOMXPath&& other) noexcept = default;

PelDOMXPath::~PelDOMXPath() = default;

PelDOMXPath::operator bool() const noexcept {
    return body && body->expression != nullptr;
}

PelString PelDOMXPath::getMessage() const {
    return body ? body->message : u"there is no expression";
}

PelDOMXPath::Type PelDOMXPath::getType() const {
    if (!*this)
        return UNKNOWN;
    const PelXPathNode& root = *body->expression->root;
    if (root.kind != PelXPathNode::VARIABLE)
        return root.type;
    const auto found = body->variables.find(body->expression->variables[root.variable].name);
    return found != body->variables.end() ? PelXPathEvaluator::typeOf(found->second) : UNKNOWN;
}

PelDOMXPath::Body& PelDOMXPath::own() {
    if (!body)
        body = std::make_unique<Body>(Body{nullptr, {}, {}, 0, u"there is no expression"});
    return *body;
}

void PelDOMXPath::setNamespace(const PelString& prefix, const PelString& uri) {
    own().namespaces[std::u16string(prefix.view())] = uri.view();
}

void PelDOMXPath::setVariable(const PelString& name, const PelString& value) {
    own().variables[std::u16string(name.view())] = std::u16string(value.view());
}

void PelDOMXPath::setVariable(const PelString& name, bool value) {
    own().variables[std::u16string(name.view())] = value;
}

void PelDOMXPath::setVariable(const PelString& name, const char* value) {
    setVariable(name, PelString(value));
}

void PelDOMXPath::setVariable(const PelString& name, const char16_t* value) {
    setVariable(name, PelString(value));
}

void PelDOMXPath::setNumber(const PelString& name, double value) {
    own().variables[std::u16string(name.view())] = value;
}

void PelDOMXPath::setLimit(std::uint64_t steps) {
    own().limit = steps;
}

std::vector<PelDOMNode> PelDOMXPath::selectNodes(const PelDOMNode& context) const {
    return body ? body->selectAll<PelDOMNode>(context) : std::vector<PelDOMNode>();
}

PelDOMNode PelDOMXPath::selectNode(const PelDOMNode& context) const {
    return body ? body->selectFirst<PelDOMNode>(context) : PelDOMNode();
}

std::vector<PelDOMElement> PelDOMXPath::selectElements(const PelDOMNode& context) const {
    return body ? body->selectAll<PelDOMElement>(context) : std::vector<PelDOMElement>();
}

PelDOMElement PelDOMXPath::selectElement(const PelDOMNode& context) const {
    return body ? body->selectFirst<PelDOMElement>(context) : PelDOMElement();
}

std::vector<PelDOMAttributeMatch> PelDOMXPath::selectAttributes(const PelDOMNode& context) const {
    std::vector<PelDOMAttributeMatch> matches;
    if (!body)
        return matches;
    body->select(context, [this, &matches](auto& evaluator, const auto& start, const auto& ref) {
        for (const Node* const node : body->nodes(evaluator, start))
            if (Tree::isAttribute(*node))
                matches.push_back(
                    {PelDOMElement(PelXercesDOMNode::makeUntraced(ref, Tree::parentOf(*node))),
                     node->getNodeName(), PelXercesLinks::valueOf(*node)});
    });
    return matches;
}

PelString PelDOMXPath::evaluateString(const PelDOMNode& context) const {
    PelString text;
    if (body)
        body->evaluate(context, [this, &text](auto& evaluator, const auto& start, const auto&) {
            std::u16string buffer;
            text = PelString(evaluator.view(*body->expression->root, start, buffer));
        });
    return text;
}

double PelDOMXPath::evaluateNumber(const PelDOMNode& context) const {
    double number = std::numeric_limits<double>::quiet_NaN();
    if (body)
        body->evaluate(context, [this, &number](auto& evaluator, const auto& start, const auto&) {
            number = evaluator.number(*body->expression->root, start);
        });
    return number;
}

bool PelDOMXPath::evaluateBoolean(const PelDOMNode& context) const {
    bool isTrue = false;
    if (body)
        body->evaluate(context, [this, &isTrue](auto& evaluator, const auto& start, const auto&) {
            isTrue = evaluator.truth(*body->expression->root, start);
        });
    return isTrue;
}

PelString PelDOMXPath::getLastMessage() {
    return PelThreadMessage::ofQuery().get();
}

namespace {

// What is wrong with a path that was asked for a node, where everyone can see it.
void tell(const PelDOMXPath& path, const PelString& expression) {
    const PelString message = path.getMessage();
    PelThreadMessage::ofQuery().set(message.view());
    if (message.isEmpty() == 0)
        PelDOM::error(u"XPath " + expression + u": " + message, nullptr);
}

} // namespace

// The members of nodes that ask: here, since all else of nodes does without this folder.

std::vector<PelDOMNode> PelDOMNode::selectNodes(const PelString& expression) const {
    const PelDOMXPath path(expression);
    std::vector<PelDOMNode> found = path.selectNodes(*this);
    tell(path, expression);
    return found;
}

PelDOMNode PelDOMNode::selectNode(const PelString& expression) const {
    const PelDOMXPath path(expression);
    PelDOMNode found = path.selectNode(*this);
    tell(path, expression);
    return found;
}

std::vector<PelDOMElement> PelDOMNode::selectElements(const PelString& expression) const {
    const PelDOMXPath path(expression);
    std::vector<PelDOMElement> found = path.selectElements(*this);
    tell(path, expression);
    return found;
}

PelDOMElement PelDOMNode::selectElement(const PelString& expression) const {
    const PelDOMXPath path(expression);
    PelDOMElement found = path.selectElement(*this);
    tell(path, expression);
    return found;
}
