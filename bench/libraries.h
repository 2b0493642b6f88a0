// SPDX-License-Identifier: MIT
//
// The libraries that are measured, each behind the same functions:
//
//     Tree      an owned document; its end drops the tree
//     Text      a document's text in the form that the library takes it
//     readFile, readText    throw std::runtime_error for a document that is refused
//     walk      visits every node below the document
//     writeFile writes in UTF-8; writeText makes a string and gives its length
#pragma once

#include "documents.h"

#include <qrndom/QRNDOM.h>

#include <xercesc/dom/DOM.hpp>

#include <memory>
#include <string>

struct NodeCount {
    long elements = 0;
    long others = 0;
};

struct Qrndom {
    static constexpr char name[] = "qrndom";
    using Tree = PelDOMDocument;
    using Text = PelString;

    static PelDOMUtilites& services();
    static Text textOf(const std::string& utf8) { return Text(utf8.c_str()); }
    static Tree readFile(const Document& document);
    static Tree readText(const Text& text, bool hasDoctype);
    static NodeCount walk(const Tree& tree);
    static void writeFile(const Tree& tree, const std::string& path);
    static std::size_t writeText(const Tree& tree);
};

struct Engine {
    static constexpr char name[] = "engine";
    struct Drop {
        void operator()(xercesc::DOMDocument* document) const { document->release(); }
    };
    using Tree = std::unique_ptr<xercesc::DOMDocument, Drop>;
    using Text = std::u16string;

    static Text textOf(const std::string& utf8) { return Text(PelString(utf8.c_str()).view()); }
    static Tree readFile(const Document& document);
    static Tree readText(const Text& text, bool hasDoctype);
    static Tree readBytes(const std::string& utf8); // null if it is refused
    static NodeCount walk(const Tree& tree);
    static void writeFile(const Tree& tree, const std::string& path);
    static std::size_t writeText(const Tree& tree);
    static std::string writeBytes(const Tree& tree);
    static std::u16string written(const Tree& tree);
};

struct _xmlDoc;
namespace tinyxml2 {
class XMLDocument;
}
namespace pugi {
class xml_document;
}

// A peer takes and gives UTF-8.
template <class Node>
struct Peer {
    struct Drop {
        void operator()(Node* document) const;
    };
    using Tree = std::unique_ptr<Node, Drop>;
    using Text = std::string;

    static Text textOf(const std::string& utf8) { return utf8; }
    static Tree readFile(const Document& document);
    static Tree readText(const Text& text, bool hasDoctype);
    static NodeCount walk(const Tree& tree);
    static void writeFile(const Tree& tree, const std::string& path);
    static std::size_t writeText(const Tree& tree);
};

struct LibXml2 : Peer<_xmlDoc> {
    static constexpr char name[] = "libxml2";
};

// Leaves out text that is white space only.
struct TinyXml2 : Peer<tinyxml2::XMLDocument> {
    static constexpr char name[] = "tinyxml2";
};

struct PugiXml : Peer<pugi::xml_document> {
    static constexpr char name[] = "pugixml";
};

// Calls `visit` with a value of each library's type that was built in.
template <class Visit>
void forEachLibrary(Visit visit) {
    visit(Qrndom());
    visit(Engine());
#ifdef QRNDOM_BENCH_LIBXML2
    visit(LibXml2());
#endif
#ifdef QRNDOM_BENCH_TINYXML2
    visit(TinyXml2());
#endif
#ifdef QRNDOM_BENCH_PUGIXML
    visit(PugiXml());
#endif
}
