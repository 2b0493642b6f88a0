// SPDX-License-Identifier: MIT
#include "query/PelXPathParser.h"

#include "query/PelXPathFunctions.h"
#include "query/PelXPathPlan.h"
#include "query/PelXPathText.h"

#include <algorithm>
#include <string>
#include <utility>

using Axis = PelXPathAxis;
using Function = PelXPathFunction;
using Node = PelXPathNode;
using Step = PelXPathStep;
using Test = PelXPathTest;
using Token = PelXPathToken;
using Type = PelDOMXPath::Type;

namespace {

constexpr std::size_t longestExpression = 100'000;
constexpr int deepestNesting = 200;

struct Operation {
    Token::Kind sign;
    int level; // operators of a higher one bind closer
    Node::Kind kind;
    Node::Operator meaning;
};

constexpr Operation operations[] = {{Token::OR, 0, Node::OR, {}},
                                    {Token::AND, 1, Node::AND, {}},
                                    {Token::EQUAL, 2, Node::EQUALITY, Node::EQUAL},
                                    {Token::UNEQUAL, 2, Node::EQUALITY, Node::UNEQUAL},
                                    {Token::LESS, 3, Node::RELATION, Node::LESS},
                                    {Token::LESS_EQUAL, 3, Node::RELATION, Node::LESS_EQUAL},
                                    {Token::GREATER, 3, Node::RELATION, Node::GREATER},
                                    {Token::GREATER_EQUAL, 3, Node::RELATION, Node::GREATER_EQUAL},
                                    {Token::PLUS, 4, Node::SUM, Node::PLUS},
                                    {Token::MINUS, 4, Node::SUM, Node::MINUS},
                                    {Token::TIMES, 5, Node::PRODUCT, Node::TIMES},
                                    {Token::DIV, 5, Node::PRODUCT, Node::DIV},
                                    {Token::MOD, 5, Node::PRODUCT, Node::MOD}};
constexpr int closestLevel = 5;

const Operation* operationOf(Token::Kind sign, int level) {
    for (const Operation& operation : operations)
        if (operation.sign == sign && operation.level == level)
            return &operation;
    return nullptr;
}

struct NamedAxis {
    std::u16string_view name;
    Axis axis;
};

constexpr NamedAxis axes[] = {{u"self", Axis::SELF},
                              {u"child", Axis::CHILD},
                              {u"parent", Axis::PARENT},
                              {u"attribute", Axis::ATTRIBUTE},
                              {u"descendant", Axis::DESCENDANT},
                              {u"descendant-or-self", Axis::DESCENDANT_OR_SELF},
                              {u"ancestor", Axis::ANCESTOR},
                              {u"ancestor-or-self", Axis::ANCESTOR_OR_SELF},
                              {u"following-sibling", Axis::FOLLOWING_SIBLING},
                              {u"preceding-sibling", Axis::PRECEDING_SIBLING},
                              {u"following", Axis::FOLLOWING},
                              {u"preceding", Axis::PRECEDING}};

Step anyNode(Axis axis) {
    Step step;
    step.axis = axis;
    return step;
}

} // namespace

std::shared_ptr<const PelXPathExpression> PelXPathParser::parse(std::u16string_view text) {
    if (text.size() > longestExpression)
        throw PelXPathError{"the expression is longer than 100000 characters", 0};
    PelXPathParser parser(text);
    if (parser.token.kind == Token::END)
        parser.lexer.fail(parser.token.position, "there is no expression");
    parser.expression->root = parser.parseExpression();
    if (parser.token.kind == Token::RIGHT_PARENTHESIS)
        parser.lexer.fail(parser.token.position, "no '(' fits this ')'");
    if (parser.token.kind == Token::RIGHT_BRACKET)
        parser.lexer.fail(parser.token.position, "no '[' fits this ']'");
    if (parser.token.kind != Token::END)
        parser.lexer.fail(parser.token.position, "an operator is missing");
    return parser.expression;
}

Token PelXPathParser::take() {
    return std::exchange(token, lexer.next());
}

bool PelXPathParser::takeIf(Token::Kind kind) {
    const bool isThere = token.kind == kind;
    if (isThere)
        take();
    return isThere;
}

void PelXPathParser::require(Token::Kind kind, const char* reason) {
    if (!takeIf(kind))
        lexer.fail(token.position, reason);
}

PelXPathParser::NodePtr PelXPathParser::make(Node::Kind kind, Type type) const {
    auto node = std::make_unique<Node>();
    node->kind = kind;
    node->type = type;
    return node;
}

// Once its operands are known.
PelXPathParser::NodePtr PelXPathParser::finish(NodePtr node) {
    for (const auto& operand : node->operands) {
        node->usesPosition = node->usesPosition || operand->usesPosition;
        node->usesLast = node->usesLast || operand->usesLast;
    }
    if (node->kind == Node::PATH)
        node->visits = PelXPathPlan::visitsOf(*node);
    node->isConstant = PelXPathPlan::isConstant(*node);
    if (node->isConstant && predicateDepth > 0 && PelXPathPlan::takesTime(*node))
        node->keptAt = expression->keptCount++;
    return node;
}

std::size_t PelXPathParser::placeOf(std::u16string_view name, std::size_t position,
                                    std::vector<PelXPathExpression::Name>& names) const {
    for (std::size_t i = 0; i < names.size(); ++i)
        if (names[i].name == name)
            return i;
    names.push_back({std::u16string(name), lexer.columnOf(position)});
    return names.size() - 1;
}

PelXPathParser::NodePtr PelXPathParser::parseExpression() {
    if (depth == deepestNesting)
        lexer.fail(token.position, "nested more than 200 deep");
    ++depth;
    NodePtr node = parseOperation(0);
    --depth;
    return node;
}

PelXPathParser::NodePtr PelXPathParser::parseOperation(int level) {
    if (level > closestLevel)
        return parseNegation();
    NodePtr first = parseOperation(level + 1);
    const Operation* operation = operationOf(token.kind, level);
    if (operation == nullptr)
        return first;
    const bool isNumber = operation->kind == Node::SUM || operation->kind == Node::PRODUCT;
    NodePtr node = make(operation->kind, isNumber ? PelDOMXPath::NUMBER : PelDOMXPath::BOOLEAN);
    node->operands.push_back(std::move(first));
    for (; operation != nullptr; operation = operationOf(token.kind, level)) {
        take();
        node->operators.push_back(operation->meaning);
        node->operands.push_back(parseOperation(level + 1));
    }
    return finish(std::move(node));
}

PelXPathParser::NodePtr PelXPathParser::parseNegation() {
    bool isNegated = false;
    bool isAny = false;
    for (; takeIf(Token::MINUS); isAny = true)
        isNegated = !isNegated;
    NodePtr operand = parseUnion();
    if (!isAny)
        return operand;
    // Two signs make a number of it all the same.
    NodePtr node = make(Node::NEGATION, PelDOMXPath::NUMBER);
    node->number = isNegated ? -1 : 1;
    node->operands.push_back(std::move(operand));
    return finish(std::move(node));
}

PelXPathParser::NodePtr PelXPathParser::parseUnion() {
    std::size_t position = token.position;
    NodePtr first = parsePath();
    if (token.kind != Token::UNION)
        return first;
    NodePtr node = make(Node::UNION, PelDOMXPath::NODES);
    for (NodePtr operand = std::move(first);; operand = parsePath()) {
        if (operand->type != PelDOMXPath::NODES)
            lexer.fail(position, "only sets of nodes can be united");
        node->operands.push_back(std::move(operand));
        if (!takeIf(Token::UNION))
            return finish(std::move(node));
        position = token.position;
    }
}

PelXPathParser::NodePtr PelXPathParser::parsePath() {
    switch (token.kind) {
    case Token::LITERAL:
    case Token::NUMBER:
    case Token::VARIABLE:
    case Token::LEFT_PARENTHESIS:
    case Token::FUNCTION:
        return parseFilter();
    default:
        break;
    }
    NodePtr path = make(Node::PATH, PelDOMXPath::NODES);
    const bool isRoot = token.kind == Token::SLASH || token.kind == Token::DOUBLE_SLASH;
    path->start = isRoot ? Node::ROOT : Node::CONTEXT;
    if (!takeIf(Token::SLASH) || isStepNext())
        parseSteps(path->steps);
    return finish(std::move(path));
}

PelXPathParser::NodePtr PelXPathParser::parseFilter() {
    const std::size_t position = token.position;
    NodePtr primary = parsePrimary();
    const bool isBare = token.kind != Token::LEFT_BRACKET && token.kind != Token::SLASH &&
                        token.kind != Token::DOUBLE_SLASH;
    if (isBare)
        return primary;
    if (primary->type != PelDOMXPath::NODES)
        lexer.fail(position, "only a set of nodes can be followed by a predicate or a step");
    NodePtr path = make(Node::PATH, PelDOMXPath::NODES);
    path->start = Node::OPERAND;
    path->operands.push_back(std::move(primary));
    path->filters = parsePredicates();
    if (token.kind == Token::DOUBLE_SLASH || takeIf(Token::SLASH))
        parseSteps(path->steps);
    return finish(std::move(path));
}

PelXPathParser::NodePtr PelXPathParser::parsePrimary() {
    if (token.kind == Token::FUNCTION)
        return parseCall();
    const Token first = take();
    NodePtr node;
    switch (first.kind) {
    case Token::LITERAL:
        node = make(Node::LITERAL, PelDOMXPath::STRING);
        node->text = first.text;
        break;
    case Token::NUMBER:
        node = make(Node::NUMBER, PelDOMXPath::NUMBER);
        node->number = PelXPathText::toNumber(first.text);
        break;
    case Token::VARIABLE: {
        node = make(Node::VARIABLE, PelDOMXPath::UNKNOWN);
        std::u16string name(first.prefix);
        name.append(first.prefix.empty() ? u"" : u":").append(first.text);
        node->variable = placeOf(name, first.position, expression->variables);
        break;
    }
    default:
        node = parseExpression();
        require(Token::RIGHT_PARENTHESIS, "')' is missing");
        return node;
    }
    return finish(std::move(node));
}

PelXPathParser::NodePtr PelXPathParser::parseCall() {
    const Token name = take();
    const PelXPathFunctions::Signature* const signature =
        name.prefix.empty() ? PelXPathFunctions::find(name.text) : nullptr;
    if (signature == nullptr)
        lexer.fail(name.position, "no function has this name");
    NodePtr call = make(Node::FUNCTION, signature->result);
    call->function = signature->function;
    call->usesPosition = signature->function == Function::POSITION;
    call->usesLast = signature->function == Function::LAST;
    take(); // its parenthesis
    if (token.kind != Token::RIGHT_PARENTHESIS)
        do
            call->operands.push_back(parseExpression());
        while (takeIf(Token::COMMA));
    require(Token::RIGHT_PARENTHESIS, "')' is missing");
    const std::size_t count = call->operands.size();
    if (count < signature->least || count > signature->most)
        lexer.fail(name.position, "the function takes another number of arguments");
    if (signature->takesNodes && count == 1 && call->operands.front()->type != PelDOMXPath::NODES)
        lexer.fail(name.position, "the function takes a set of nodes");
    return finish(std::move(call));
}

bool PelXPathParser::isStepNext() const {
    switch (token.kind) {
    case Token::NAME:
    case Token::ANY_NAME:
    case Token::NODE_TYPE:
    case Token::AXIS:
    case Token::AT:
    case Token::DOT:
    case Token::DOUBLE_DOT:
        return true;
    default:
        return false;
    }
}

void PelXPathParser::parseSteps(std::vector<Step>& steps) {
    do {
        if (takeIf(Token::DOUBLE_SLASH))
            PelXPathPlan::append(steps, anyNode(Axis::DESCENDANT_OR_SELF));
        PelXPathPlan::append(steps, parseStep());
    } while (token.kind == Token::DOUBLE_SLASH || takeIf(Token::SLASH));
}

Step PelXPathParser::parseStep() {
    if (takeIf(Token::DOT))
        return anyNode(Axis::SELF);
    if (takeIf(Token::DOUBLE_DOT))
        return anyNode(Axis::PARENT);
    Step step;
    step.axis = Axis::CHILD;
    if (takeIf(Token::AT)) {
        step.axis = Axis::ATTRIBUTE;
    } else if (token.kind == Token::AXIS) {
        const Token name = take();
        take(); // its colons
        const auto* const found =
            std::find_if(std::begin(axes), std::end(axes), [&name](const NamedAxis& axis) {
                return name.prefix.empty() && axis.name == name.text;
            });
        if (name.prefix.empty() && name.text == u"namespace")
            lexer.fail(name.position, "the axis of namespaces is not supported");
        if (found == std::end(axes))
            lexer.fail(name.position, "no axis has this name");
        step.axis = found->axis;
    }
    step.test = parseTest(step.axis == Axis::ATTRIBUTE);
    step.predicates = parsePredicates();
    return step;
}

Test PelXPathParser::parseTest(bool isOfAttribute) {
    if (token.kind == Token::NODE_TYPE)
        return parseNodeType();
    if (token.kind != Token::NAME && token.kind != Token::ANY_NAME)
        lexer.fail(token.position, isOfAttribute ? "the name of an attribute is missing"
                                                 : "a step or a value is missing");
    const Token name = take();
    Test test;
    if (!name.prefix.empty())
        test.prefix = placeOf(name.prefix, name.position, expression->prefixes);
    if (name.kind == Token::NAME) {
        test.kind = Test::NAME;
        test.name = name.text;
    } else {
        test.kind = name.prefix.empty() ? Test::ANY_NAME : Test::ANY_OF_NAMESPACE;
    }
    test.place = expression->testCount++;
    return test;
}

Test PelXPathParser::parseNodeType() {
    const Token type = take();
    Test test;
    take(); // its parenthesis
    if (type.text == u"text") {
        test.kind = Test::TEXT;
    } else if (type.text == u"comment") {
        test.kind = Test::COMMENT;
    } else if (type.text == u"processing-instruction") {
        test.kind = token.kind == Token::LITERAL ? Test::TARGET : Test::INSTRUCTION;
        if (test.kind == Test::TARGET)
            test.name = take().text;
    }
    require(Token::RIGHT_PARENTHESIS, "')' is missing");
    return test;
}

PelXPathParser::Predicates PelXPathParser::parsePredicates() {
    Predicates predicates;
    ++predicateDepth;
    while (takeIf(Token::LEFT_BRACKET)) {
        predicates.push_back(PelXPathPlan::classified(parseExpression()));
        require(Token::RIGHT_BRACKET, "']' is missing");
    }
    --predicateDepth;
    return predicates;
}
