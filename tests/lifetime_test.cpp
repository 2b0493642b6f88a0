// SPDX-License-Identifier: MIT
#include "support.h"

#include <xercesc/util/PlatformUtils.hpp>

static PelDOMDocument keptToTheEnd; // dropped when the process ends

static bool engineIsUp() {
    return xercesc::XMLPlatformUtils::fgMemoryManager != nullptr;
}

static bool isUpAfterRelease() {
    PelDOMUtilites::releaseUtilities();
    return engineIsUp();
}

TEST(Services, AreOneObjectMadeOnDemand) {
    EXPECT_EQ(PelDOMUtilites::getUtilities(static_cast<PelDOM::Platform>(1)), nullptr);
    PelDOMUtilites* const object = PelDOMUtilites::getUtilities(PelDOM::PLATFORM_XERCES);
    EXPECT_EQ(PelDOMUtilites::getUtilities(static_cast<PelDOM::Platform>(1)), object);
    PelDOMUtilites::releaseUtilities();
}

TEST(Services, StartAndStopTheEngineCallByCall) {
    PelDOMUtilites& object = services();
    EXPECT_EQ(answers({engineIsUp(), object.terminate(), object.init(), object.init(),
                       object.getErrorStatus(), object.terminate(), object.getErrorStatus(),
                       engineIsUp()}),
              "0 ok ok ok ok ok not-started 1");
    EXPECT_TRUE(isUpAfterRelease()); // terminated already: no second stop
    services().setErrorStatus(PelDOM::INITIALIZATION_FAILED);
    EXPECT_FALSE(isUpAfterRelease());           // makes the stop
    services().setErrorStatus(PelDOM::SUCCESS); // a lie: reading must not trust it
    EXPECT_EQ(show(parse("<a/>")), "#9(a)");
    EXPECT_FALSE(isUpAfterRelease());
}

TEST(Trees, LiveAsLongAsAnyHandleInAnyOrder) {
    PelDOMDocument document = parse("<r><a k='v'>t</a></r>");
    PelDOMNode element = childAt(document.getDocumentElement(), 0);
    PelDOMNodeList list = childrenOf(element);
    PelDOMElement loose = document.createElement("loose");
    document = PelDOMDocument();
    services().terminate();
    EXPECT_TRUE(isUpAfterRelease());
    PelString written;
    EXPECT_EQ(services().writeDocument(element.getOwnerDocument(), written, 0, 0, 0),
              PelDOM::SUCCESS);
    EXPECT_TRUE(isUpAfterRelease());
    EXPECT_EQ(show(element), "a k=v(|t|)");
    element = PelDOMNode();
    EXPECT_EQ(list.length(), 1);
    list = PelDOMNodeList();
    EXPECT_EQ(answers({loose.setAttribute("k", "v"), loose}), "ok loose k=v");
    loose = PelDOMElement();
    EXPECT_FALSE(engineIsUp());
}

// The last handle goes, and the engine with it, while the exception is on its way.
TEST(Trees, LetTheirExceptionsOutliveThem) {
    for (const bool isOwnCheck : {true, false}) {
        try {
            PelDOMElement root = rootOf("<r><a/></r>");
            PelDOMUtilites::releaseUtilities();
            isOwnCheck ? root.appendChild(root) : childAt(root, 0).appendChild(root);
            FAIL() << "the append was let through";
        } catch (const xercesc::DOMException& exception) {
            EXPECT_FALSE(engineIsUp());
            EXPECT_EQ(exception.code, xercesc::DOMException::HIERARCHY_REQUEST_ERR);
            EXPECT_NE(*exception.getMessage(), 0);
        }
    }
}

TEST(Trees, MayBeDroppedAfterMain) {
    keptToTheEnd = parse("<r><a/></r>");
    PelDOMUtilites::releaseUtilities();
    EXPECT_EQ(show(keptToTheEnd), "#9(r(a))");
}
