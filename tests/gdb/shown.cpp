// SPDX-License-Identifier: MIT
// What the debugger is to show when it stops in `stop`; check.py says how.
#include <qrndom/QRNDOM.h>

static void stop() {
    asm volatile("");
}

struct OwnList : PelDOMNodeListImp {
    PelDOM::Error item(long, PelDOMNode&) override { return PelDOM::INDEX_OUT_OF_RANGE; }
    long length() override { return 0; }
    PelDOMNodeListImp* clone() override { return new OwnList; }
};

static PelDOMNode child(const PelDOMNode& parent, long index) {
    PelDOMNodeList children;
    parent.getChildNodes(children);
    PelDOMNode node;
    children.item(index, node);
    return node;
}

int main() {
    PelDOMUtilites* const services = PelDOMUtilites::getUtilities(PelDOM::PLATFORM_XERCES);
    const PelString empty, title(u"Ἰλιάς");
    const PelDOMDocument document = services->readDocumentFromStringW(
        u"<!DOCTYPE shelf [<!ELEMENT shelf ANY><!ELEMENT book (#PCDATA)>]>"
        u"<shelf><!--old--><book>The Iliad</book><![CDATA[raw]]><?run it?></shelf>");
    const PelDOMElement root = document.getDocumentElement();
    const PelDOMNode doctype = child(document, 0), comment = child(root, 0), book = child(root, 1);
    const PelDOMText text(child(book, 0));
    const PelDOMNode raw = child(root, 2), instruction = child(root, 3);
    PelDOMDocument none;
    document.getOwnerDocument(none);
    const PelDOMElement nullElement;
    PelDOMNodeList children, books, nullList;
    root.getChildNodes(children);
    root.getElementsByTagName("book", books);
    const PelDOMNodeList own(new OwnList);
    stop();
    PelDOMUtilites::releaseUtilities();
}
