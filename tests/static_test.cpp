// SPDX-License-Identifier: MIT
#include "support.h"
#include "xerces/tree/PelXercesDeclaration.h"

static std::string write(const char16_t* encoding) {
    const PelDOMDocument document = services().createDocument("r");
    xercesc::DOMDocument& engine = engineOf(document);
    engine.replaceChild(PelXercesDeclaration::create(engine, {"1.0", encoding, std::nullopt}),
                        engine.getFirstChild());
    PelString text;
    services().writeDocument(document, text, 0, 0, 0);
    return text.toUtf8();
}

static const std::string expected = "<?xml version=\"1.0\" encoding=\"ISO-8859-15\"?>\n<r/>";

// Made before any object of the library that is linked behind it, and destroyed after all of them.
static const struct EarlyAndLateWriter {
    const std::string first = write(u"ISO-8859-15");
    ~EarlyAndLateWriter() {
        if (write(u"UTF-8") == first)
            return;
        std::fputs("the output encoding was lost at the end\n", stderr);
        std::_Exit(1);
    }
} writer;

TEST(AStaticProgram, WritesBeforeAndAfterMainInOneEncoding) {
    EXPECT_EQ(writer.first, expected);
    EXPECT_EQ(write(u"UTF-8"), expected);
}
