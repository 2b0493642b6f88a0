// SPDX-License-Identifier: MIT
#pragma once

#include <qrndom/PelString.h>
#include <qrndom/export.h>

/// The library's common scope: status codes, node types, the back-end selector and the
/// diagnostic log.
///
/// Owns     nothing.
/// Lives    as long as the library is loaded; everything here is static.
/// Threads  any thread at any time; no line of the log is torn.
/// Errors   none.
/// Cost     a log line is one system call; many of the library's own share one.
class QRNDOM_API PelDOM {
public:
    /// What most operations answer, and what handles and the services object keep as their status.
    enum Error : int {
        SUCCESS = 0,               ///< The operation completed.
        NOT_INITIALIZED = 1,       ///< The services object has not started the engine.
        INITIALIZATION_FAILED = 2, ///< The engine refused to start.
        NO_IMPLEMENTATION = 3,     ///< A null handle.
        NULL_NODE = 5,             ///< An operation that needs a node found none.
        INVALID_VALUE = 6,         ///< An empty name, value or text, or text that is not a number.
        INDEX_OUT_OF_RANGE = 7,    ///< A list position below 0 or not below the length.
        INTERNAL_ERROR = 1000      ///< Content without its node, or a failed output.
    };

    /// What kind of node a handle stands for.
    enum NodeType : int {
        NO_NODE = 0,               ///< A null handle, or a handle to the absence of a node.
        ELEMENT_NODE = 1,          ///< See PelDOMElement.
        ATTRIBUTE_NODE = 2,        ///< Never met: attributes are reached through their element.
        TEXT_NODE = 3,             ///< See PelDOMText.
        CDATA_SECTION_NODE = 4,    ///< A CDATA section.
        ENTITY_REFERENCE_NODE = 5, ///< Never read: references are replaced.
        ENTITY_NODE = 6,           ///< Never met.
        PROCESSING_INSTRUCTION_NODE = 7, ///< A processing instruction.
        COMMENT_NODE = 8,                ///< A comment.
        DOCUMENT_NODE = 9,               ///< See PelDOMDocument.
        DOCUMENT_TYPE_NODE = 10,         ///< `<!DOCTYPE ...>`, kept as it is.
        DOCUMENT_FRAGMENT_NODE = 11,     ///< Never met.
        NOTATION_NODE = 12,              ///< Never met.
        XML_DECL_NODE = 13 ///< The XML declaration of a created document, its first child.
    };

    /// The engine behind the handles.
    enum Platform : int {
        PLATFORM_XERCES = 0 ///< Xerces-C++, the only one.
    };

    /// Holds nothing; there is no need to make one.
    PelDOM() = default;

    /// A copy holds nothing either.
    PelDOM(const PelDOM&) = default;

    /// Does nothing.
    PelDOM& operator=(const PelDOM&) = default;

    /// Answers INVALID_VALUE for an empty string and SUCCESS for any other.
    ///
    /// `kind` says what the string is for (0: a name, file name or text; 1: an attribute value or
    /// the text of an element) and does not change the answer.
    static Error checkString(const PelString& string, int kind);

    /// Writes one line to the diagnostic log, in UTF-8.
    ///
    /// `context` is the address of the object that the message concerns, or null. The log mode,
    /// fixed when the library is built, decides which lines are written: 0 none; 1 (the default)
    /// those without a context; 2 those with one, after its address in decimal and ":"; 3 all, each
    /// after its address ("0:" for none). The line is in the file when the call returns, behind all
    /// lines that the library held back until then. A log that cannot be opened or written drops
    /// its lines silently. A line that is too long for what is left of the log's limit is left out,
    /// and a short one says so; a log that has grown to its limit ends likewise and drops the rest.
    static void error(const PelString& message, const void* context) noexcept;
};
