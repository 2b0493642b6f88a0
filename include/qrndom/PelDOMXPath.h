// SPDX-License-Identifier: MIT
#pragma once

#include <qrndom/PelDOMElement.h>
#include <qrndom/PelDOMNode.h>
#include <qrndom/PelString.h>
#include <qrndom/export.h>

#include <cstdint>
#include <memory>
#include <type_traits>
#include <vector>

/// One attribute that PelDOMXPath::selectAttributes has found.
struct PelDOMAttributeMatch {
    PelDOMElement element; ///< The element that has it.
    PelString name;        ///< As written, prefix included.
    PelString value;       ///< With all references replaced.
};

/// An expression of XPath 1.0, compiled: asks a tree for nodes, attributes, texts, numbers and
/// truth values.
///
/// Owns     its variables, namespaces, limit and latest message; what was compiled is shared with
///          its copies.
/// Lives    as long as the caller likes, with or without a tree. Results are handles and copies.
/// Threads  one thread at a time for a path, and for the tree that it is asked of; copies are
///          independent.
/// Errors   a path that is ill-formed is false. What fails gives nothing, an empty text, NaN or
///          false, and getMessage says why. Only running out of memory throws, std::bad_alloc.
/// Cost     compiling takes time in the length of the expression, evaluating in the number of
///          nodes that are looked at. The memory is that of the sets on the way, 8 bytes a node.
///
/// A context is the node from which the expression is evaluated. The tree as an expression sees it:
/// texts and CDATA sections that stand side by side are one text, for which the first that is not
/// empty stands; the document type and the declaration are no nodes; `xmlns` attributes are no
/// attributes. Names match by namespace: in an expression a name without a prefix is one in no
/// namespace, also where the document declares a default one.
class QRNDOM_API PelDOMXPath {
    template <class Value>
    using IfNumber =
        std::enable_if_t<std::is_arithmetic_v<Value> && !std::is_same_v<Value, bool> &&
                             !std::is_same_v<Value, char> && !std::is_same_v<Value, wchar_t> &&
#ifdef __cpp_char8_t
                             !std::is_same_v<Value, char8_t> &&
#endif
                             !std::is_same_v<Value, char16_t> && !std::is_same_v<Value, char32_t>,
                         int>;

public:
    /// What an expression gives.
    enum Type {
        UNKNOWN, ///< Not known: ill-formed, or a variable that was not set.
        NODES,   ///< A set of nodes, or of attributes.
        STRING,  ///< A text.
        NUMBER,  ///< A number.
        BOOLEAN  ///< A truth value.
    };

    /// No expression: false, and gives nothing.
    PelDOMXPath() noexcept;

    /// Compiles an expression. One that is ill-formed, longer than 100,000 characters or nested
    /// more than 200 deep is false.
    explicit PelDOMXPath(const PelString& expression);

    PelDOMXPath(const PelDOMXPath& other);                ///< Shares what was compiled.
    PelDOMXPath(PelDOMXPath&& other) noexcept;            ///< Leaves `other` without an expression.
    PelDOMXPath& operator=(const PelDOMXPath& other);     ///< Shares what was compiled.
    PelDOMXPath& operator=(PelDOMXPath&& other) noexcept; ///< Leaves `other` without an expression.

    /// Touches no results.
    ~PelDOMXPath();

    /// Whether there is an expression that could be compiled.
    explicit operator bool() const noexcept;

    /// What is wrong with the expression or with its latest evaluation, as one line for people:
    /// "column 7: ')' is missing". Columns count characters, from 1. Empty when nothing is.
    PelString getMessage() const;

    /// What the expression gives. Where it is one variable: the type of that, UNKNOWN until it is
    /// set.
    Type getType() const;

    /// What a prefix stands for in the expression. One that was not set stands for what it does
    /// in the document: at the context node, for a document at its root. One that stands for
    /// nothing is an error. `prefix` must not be empty: names without one are in no namespace.
    void setNamespace(const PelString& prefix, const PelString& uri);

    /// Gives a variable, by its name without `$`, a text.
    void setVariable(const PelString& name, const PelString& value);

    /// A truth value.
    void setVariable(const PelString& name, bool value);

    /// A number.
    template <class Value, IfNumber<Value> = 0>
    void setVariable(const PelString& name, Value value) {
        setNumber(name, static_cast<double>(value));
    }

    /// A text, from a literal: a pointer is no truth value.
    void setVariable(const PelString& name, const char* value);
    void setVariable(const PelString& name, const char16_t* value); ///< The same in UTF-16.

    /// The work that one evaluation may take: nodes that are looked at, and characters of texts
    /// that are made. The same on every machine. The default, 100,000,000, is more than questions
    /// meant honestly take of a million nodes, and ends others within seconds.
    void setLimit(std::uint64_t steps);

    /// The nodes of a set in document order. Attributes are not among them: for a set of attributes
    /// alone, and for what is no set, it is empty and there is a message.
    std::vector<PelDOMNode> selectNodes(const PelDOMNode& context) const;

    /// The first of them, a null handle where there is none. Looks no further than it must.
    PelDOMNode selectNode(const PelDOMNode& context) const;

    /// Those of the nodes that are elements.
    std::vector<PelDOMElement> selectElements(const PelDOMNode& context) const;
    PelDOMElement selectElement(const PelDOMNode& context) const; ///< The first of them.

    /// The attributes of a set, by elements in document order.
    std::vector<PelDOMAttributeMatch> selectAttributes(const PelDOMNode& context) const;

    /// What the expression gives as a text: of a set, the text of its first node.
    PelString evaluateString(const PelDOMNode& context) const;

    /// As a number: of a set, its first node's text as one. NaN for what is none.
    double evaluateNumber(const PelDOMNode& context) const;

    /// As a truth value: of a set, whether anything is in it.
    bool evaluateBoolean(const PelDOMNode& context) const;

    /// What was wrong when this thread last called selectNodes, selectNode, selectElements or
    /// selectElement of a node; empty when nothing was.
    static PelString getLastMessage();

private:
    struct Body;

    void setNumber(const PelString& name, double value);
    Body& own();

    std::unique_ptr<Body> body; // null: no expression
};
