// SPDX-License-Identifier: MIT
#include "support.h"

#include <xercesc/util/PlatformUtils.hpp>

#include <algorithm>

static PelDOMDocument keptToTheEnd; // dropped when the process ends

static bool engineIsUp() {
    return xercesc::XMLPlatformUtils::fgMemoryManager != nullptr;
}

static bool isUpAfterRelease() {
    PelDOMUtilites::releaseUtilities();
    return engineIsUp();
}

// Everything that a tree must still be able to do.
static void useTree(PelDOMDocument document) {
    PelDOMElement root = document.getDocumentElement();
    PelDOMElement made = document.createElement("c");
    PelDOMText text(childAt(childAt(root, 0), 0));
    PelDOMNodeList list;
    PelString written;
    expectAnswers({{root.setAttribute("k", "a longer value than before"), "ok"},
                   {root.appendTextElement("b", "more"), "ok"},
                   {root.appendChild(made), "ok"},
                   {text.setValue("changed"), "ok"},
                   {root.getElementsByTagName("b", list), "2"},
                   {root, "b k=a longer value than before(b(|changed|) b(|more|) c)"},
                   {services().writeDocument(document, written, 0, 0, 0), "ok"}});
    EXPECT_LT(append(made, root), 0);
    EXPECT_THROW(document.createElement("<"), xercesc::DOMException);
}

TEST(Services, AreOneObjectMadeOnDemand) {
    const LogWatch log;
    EXPECT_EQ(PelDOMUtilites::getUtilities(static_cast<PelDOM::Platform>(1)), nullptr);
    PelDOMUtilites* const object = PelDOMUtilites::getUtilities(PelDOM::PLATFORM_XERCES);
    EXPECT_EQ(PelDOMUtilites::getUtilities(static_cast<PelDOM::Platform>(1)), object);
    PelDOMUtilites::releaseUtilities();
    PelDOMUtilites::releaseUtilities();
    const std::string lines = log.text();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), 5);
}

TEST(Services, StartAndStopTheEngineCallByCall) {
    PelDOMUtilites& object = services();
    expectAnswers({{engineIsUp(), "0"},
                   {object.terminate(), "ok"},
                   {object.init(), "ok"},
                   {object.init(), "ok"},
                   {object.getErrorStatus(), "ok"},
                   {object.terminate(), "ok"},
                   {object.getErrorStatus(), "not-started"},
                   {engineIsUp(), "1"}});
    EXPECT_TRUE(isUpAfterRelease()); // terminated already: no second stop
    services().setErrorStatus(PelDOM::INITIALIZATION_FAILED);
    EXPECT_FALSE(isUpAfterRelease());           // makes the stop
    services().setErrorStatus(PelDOM::SUCCESS); // a lie: reading must not trust it
    EXPECT_EQ(show(parse("<a/>")), "#9(a)");
    EXPECT_FALSE(isUpAfterRelease());
}

TEST(Services, LeaveTheProgramsOwnStartsAlone) {
    xercesc::XMLPlatformUtils::Initialize();
    expectAnswers({{services().terminate(), "ok"},
                   {services().terminate(), "ok"},
                   {services().init(), "ok"},
                   {services().terminate(), "ok"},
                   {services().terminate(), "ok"},
                   {engineIsUp(), "1"}});
    services().setErrorStatus(PelDOM::INITIALIZATION_FAILED);
    EXPECT_TRUE(isUpAfterRelease());
    xercesc::XMLPlatformUtils::Terminate();
    EXPECT_FALSE(engineIsUp());
}

TEST(Trees, OutliveTheEngineAndTheServices) {
    for (int terminates = 0; terminates < 4; ++terminates) {
        PelDOMDocument document = parse("<b><b>t</b></b>");
        PelDOMDocument other = parse("<b><b>u</b></b>");
        PelDOMDocument third = parse("<b><b>v</b></b>");
        for (int i = 0; i < terminates; ++i)
            services().terminate();
        useTree(document);
        EXPECT_TRUE(isUpAfterRelease());
        EXPECT_TRUE(isUpAfterRelease());
        useTree(other);
        document = other = PelDOMDocument();
        useTree(parse("<b><b>t</b></b>"));
        services().terminate();
        services().terminate();
        useTree(third);
        PelDOMUtilites::releaseUtilities();
        third = PelDOMDocument();
        EXPECT_FALSE(engineIsUp());
    }
}

TEST(Trees, LiveAsLongAsAnyHandleInAnyOrder) {
    PelDOMDocument document = parse("<r><a k='v'>t</a></r>");
    PelDOMNode element = childAt(document.getDocumentElement(), 0);
    PelDOMNodeList list = childrenOf(element);
    PelDOMElement loose = document.createElement("loose");
    document = PelDOMDocument();
    services().terminate();
    EXPECT_TRUE(isUpAfterRelease());
    EXPECT_EQ(show(element), "a k=v(|t|)");
    element = PelDOMNode();
    EXPECT_EQ(list.length(), 1);
    list = PelDOMNodeList();
    expectAnswers({{loose.setAttribute("k", "v"), "ok"}, {loose, "loose k=v"}});
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
