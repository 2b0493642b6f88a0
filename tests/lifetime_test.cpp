// SPDX-License-Identifier: MIT
#include "support.h"

#include <xercesc/dom/DOMException.hpp>
#include <xercesc/util/PlatformUtils.hpp>

namespace {

// Dropped when the process ends.
PelDOMDocument keptToTheEnd;

bool engineIsUp() {
    return xercesc::XMLPlatformUtils::fgMemoryManager != nullptr;
}

// Everything that a tree must still be able to do.
void useTree(PelDOMDocument document) {
    PelDOMElement root = document.getDocumentElement();
    PelDOMNodeList list;
    EXPECT_GT(root.getElementsByTagName("b", list), 0);
    root.setAttribute("k", "a longer value than before");
    root.appendTextElement("b", "more");
    PelDOMElement made = document.createElement("c");
    root.appendChild(made);
    PelDOMText text(childAt(childAt(root, 0), 0));
    text.setValue("changed");
    EXPECT_THROW(made.appendChild(root), xercesc::DOMException);
    EXPECT_THROW(document.createElement("<"), xercesc::DOMException);
    EXPECT_EQ(show(root).substr(0, 42), "b k=a longer value than before(b(|changed|");
    PelString written;
    EXPECT_EQ(services().writeDocument(document, written, 0, 0, 0), PelDOM::SUCCESS);
}

TEST(Services, AreOneObjectMadeOnDemand) {
    const LogWatch log;
    EXPECT_EQ(PelDOMUtilites::getUtilities(static_cast<PelDOM::Platform>(1)), nullptr);
    PelDOMUtilites* const object = PelDOMUtilites::getUtilities(PelDOM::PLATFORM_XERCES);
    EXPECT_EQ(PelDOMUtilites::getUtilities(static_cast<PelDOM::Platform>(1)), object);
    EXPECT_EQ(object->getErrorStatus(), PelDOM::NOT_INITIALIZED);
    PelDOMUtilites::releaseUtilities();
    PelDOMUtilites::releaseUtilities();
    EXPECT_EQ(log.lines().size(), 5U);
}

TEST(Services, StartAndStopTheEngineCallByCall) {
    PelDOMUtilites& object = services();
    EXPECT_FALSE(engineIsUp());
    EXPECT_EQ(object.terminate(), PelDOM::SUCCESS);
    EXPECT_EQ(object.init(), PelDOM::SUCCESS);
    EXPECT_EQ(object.init(), PelDOM::SUCCESS);
    EXPECT_EQ(object.getErrorStatus(), PelDOM::SUCCESS);
    EXPECT_EQ(object.terminate(), PelDOM::SUCCESS);
    EXPECT_EQ(object.getErrorStatus(), PelDOM::NOT_INITIALIZED);
    EXPECT_TRUE(engineIsUp());
    PelDOMUtilites::releaseUtilities(); // terminated already: no second stop
    EXPECT_TRUE(engineIsUp());
    services().setErrorStatus(PelDOM::INITIALIZATION_FAILED);
    PelDOMUtilites::releaseUtilities(); // makes the stop
    EXPECT_FALSE(engineIsUp());
    services().setErrorStatus(PelDOM::SUCCESS); // a lie: reading must not trust it
    EXPECT_EQ(parse("<a/>").isNull(), 0);
    PelDOMUtilites::releaseUtilities();
    EXPECT_FALSE(engineIsUp());
}

TEST(Trees, OutliveTheEngineAndTheServices) {
    for (int terminates = 0; terminates < 4; ++terminates) {
        PelDOMDocument document = parse("<b><b>t</b></b>");
        PelDOMDocument other = parse("<b><b>u</b></b>");
        for (int i = 0; i < terminates; ++i)
            services().terminate();
        useTree(document);
        PelDOMUtilites::releaseUtilities();
        PelDOMUtilites::releaseUtilities();
        useTree(other);
        EXPECT_TRUE(engineIsUp());
        document = PelDOMDocument();
        useTree(parse("<b><b>t</b></b>"));
        services().terminate();
        services().terminate();
        useTree(other);
        PelDOMUtilites::releaseUtilities();
        other = PelDOMDocument();
        EXPECT_FALSE(engineIsUp());
    }
}

TEST(Trees, LiveAsLongAsAnyHandleInAnyOrder) {
    PelDOMElement element;
    PelDOMNodeList list;
    PelDOMElement loose;
    {
        PelDOMDocument document = parse("<r><a k='v'>t</a></r>");
        element = PelDOMElement(childAt(document.getDocumentElement(), 0));
        element.getElementsByTagName("*", list);
        loose = document.createElement("loose");
        services().terminate();
    }
    PelDOMUtilites::releaseUtilities();
    EXPECT_EQ(show(element), "a k=v(|t|)");
    element = PelDOMElement();
    EXPECT_EQ(list.length(), 0);
    list = PelDOMNodeList();
    loose.setAttribute("k", "v");
    EXPECT_EQ(show(loose), "loose k=v");
    loose = PelDOMElement();
    EXPECT_FALSE(engineIsUp());
}

// The last handle goes, and the engine with it, while the exception is on its way.
TEST(Trees, LetTheirExceptionsOutliveThem) {
    for (const bool ownCheck : {true, false})
        try {
            PelDOMDocument document = parse("<r><a/></r>");
            PelDOMUtilites::releaseUtilities();
            PelDOMElement root = document.getDocumentElement();
            PelDOMNode a = childAt(root, 0);
            ownCheck ? root.appendChild(root) : a.appendChild(root);
            FAIL() << "the append was let through";
        } catch (const xercesc::DOMException& exception) {
            EXPECT_FALSE(engineIsUp());
            EXPECT_EQ(exception.code, xercesc::DOMException::HIERARCHY_REQUEST_ERR);
            EXPECT_NE(*exception.getMessage(), 0);
        }
}

TEST(Trees, MayWaitForTheEndOfTheProcess) {
    keptToTheEnd = parse("<r><a/></r>");
    services().terminate();
    PelDOMUtilites::releaseUtilities();
    EXPECT_EQ(show(keptToTheEnd), "#9(r(a))");
}

} // namespace
