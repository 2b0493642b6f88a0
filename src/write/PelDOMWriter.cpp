// SPDX-License-Identifier: MIT
#include "core/PelPlatform.h"
#include "core/PelPlatformReplacement.h"
#include "write/PelXercesIndent.h"
#include "write/PelXercesKeptWriter.h"
#include "write/characters/PelXercesCharacterSet.h"
#include "write/characters/PelXercesEncoder.h"
#include "write/target/PelByteStream.h"
#include "xerces/handles/PelXercesDOMNode.h"
#include "xerces/tree/PelSourceMarkup.h"
#include "xerces/tree/PelXercesDeclaration.h"
#include "xerces/tree/PelXercesWalk.h"

#include <qrndom/PelDOMNode.h>
#include <qrndom/PelDOMWriter.h>

#include <xercesc/dom/DOMAttr.hpp>
#include <xercesc/dom/DOMNamedNodeMap.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLString.hpp>

#include <algorithm>
#include <new>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>

using xercesc::DOMNode;
using xercesc::XMLString;

namespace {

/// What a PelDOMWriter is set to.
struct Settings {
    std::optional<int> indent; ///< Here and below, none: as usual, or as the kept source has it.
    std::optional<PelDOMWriter::LineEnds> lineEnds;
    std::optional<PelString> encoding;
    std::optional<bool> hasDeclaration;
    bool hasDefaultAttributes = false;
    bool isLayoutKept = false;
};

bool isAsciiLetter(char16_t unit) {
    return (unit | 0x20) >= u'a' && (unit | 0x20) <= u'z';
}

// The engine knows more names than a declaration may hold.
std::u16string requireName(const PelString& encoding) {
    const std::u16string_view name = encoding.view();
    const auto isPart = [](char16_t unit) {
        return isAsciiLetter(unit) ||
               std::u16string_view(u"0123456789._-").find(unit) != std::u16string_view::npos;
    };
    if (name.empty() || !isAsciiLetter(name[0]) || !std::all_of(name.begin(), name.end(), isPart))
        throw PelXercesWriteError{u"'" + encoding + u"' is no name of an encoding"};
    return std::u16string(name);
}

bool hasByteOrder(std::u16string_view encoding) {
    const std::u16string_view end =
        encoding.substr(encoding.size() - std::min<std::size_t>(2, encoding.size()));
    return end == u"LE" || end == u"BE" || end == u"le" || end == u"be";
}

// What a created document declares.
std::optional<PelXercesDeclaration> declarationOf(const xercesc::DOMDocument& document) {
    for (const DOMNode* child = document.getFirstChild(); child != nullptr;
         child = child->getNextSibling())
        if (PelXercesDeclaration::isDeclaration(*child))
            return PelXercesDeclaration::read(*child);
    return std::nullopt;
}

bool hasDeclaration(std::string_view source) {
    const std::size_t behind = PelSourceMarkup::behindDeclaration(source);
    return behind > 0 && source[behind - 1] == '>';
}

// The source that gives the layout; none where everything is written anew.
const PelXercesKeptSource* sourceFor(const Settings& settings, const PelXercesTree& tree) {
    const PelXercesKeptSource* const source = settings.isLayoutKept ? tree.getSource() : nullptr;
    if (source == nullptr || !settings.encoding)
        return source;
    const XMLCh* const wanted = settings.encoding->view().data();
    const bool isSame = XMLString::compareIStringASCII(wanted, source->getEncoding().c_str()) == 0;
    return isSame ? source : nullptr;
}

// What stands behind the document type of a source; nothing where it has none.
std::string_view behindType(const PelXercesKeptSource& source) {
    const std::string_view text = source.getText();
    for (const PelXercesKeptSource::Place place : source.getPlaces()) {
        if (text.compare(place.begin, 3, "<!D") == 0)
            return text.substr(place.end);
        if (text.compare(place.begin, 2, "<!") != 0 && text.compare(place.begin, 2, "<?") != 0)
            break;
    }
    return {};
}

bool hasDefaults(const DOMNode& top) {
    for (const DOMNode* node = &top; node != nullptr;
         node = PelXercesWalk::nextInTree(top, const_cast<DOMNode*>(node))) {
        const xercesc::DOMNamedNodeMap* const attributes = node->getAttributes();
        for (XMLSize_t i = 0; attributes != nullptr && i < attributes->getLength(); ++i)
            if (!static_cast<const xercesc::DOMAttr*>(attributes->item(i))->getSpecified())
                return true;
    }
    return false;
}

// Whether the text of a source, written without its document type, would lack what that declares.
bool needsType(const PelXercesKeptSource& source, const DOMNode& top) {
    const std::string_view text = behindType(source);
    return !text.empty() && (PelSourceMarkup::findReference(text, 0, text.size()) != text.size() ||
                             hasDefaults(top));
}

bool hasTypeOf(const xercesc::DOMDocument& document, const PelXercesKeptSource& source) {
    return document.getDoctype() != nullptr && source.numberOf(*document.getDoctype()) != 0;
}

PelString encodingFor(const Settings& settings, const PelXercesKeptSource* source) {
    return settings.encoding   ? *settings.encoding
           : source != nullptr ? PelString(source->getEncoding())
                               : PelString(u"UTF-8");
}

/// One node, and how it is to be written. Throws a PelXercesWriteError or the engine's
/// TranscodingException for an encoding that is of no use, and for what cannot be written.
class WriteJob {
public:
    WriteJob(const Settings& writeSettings, const PelXercesNodeRef& topNode)
        : settings(writeSettings), top(*topNode.getNode()), tree(topNode.getTree()),
          document(*tree.getDocument()), source(sourceFor(settings, tree)),
          encoding(requireName(encodingFor(settings, source))), characterSet(encoding) {
        const bool isDocument = top.getNodeType() == DOMNode::DOCUMENT_NODE;
        if (source != nullptr && !source->canBeCut() && (!isDocument || source->hasChanges())) {
            source = nullptr;
            remark = u"all of it is written as new: the encoding '" + PelString(encoding) +
                     u"' does not let parts of a source be told";
        }
        if (source != nullptr && source->canBeCut() &&
            !(isDocument && hasTypeOf(document, *source)) && needsType(*source, top)) {
            source = nullptr;
            remark =
                u"all of it is written as new: the source needs what its document type declares";
        }
        isReadByItself = isDocument || top.getNodeType() == DOMNode::ELEMENT_NODE;
        isVersion11 = XMLString::equals(document.getXmlVersion(), u"1.1");
        const bool isNeeded = isVersion11 || !(characterSet.isUtf8() || characterSet.isUtf16());
        isDeclared =
            PelXercesDeclaration::isDeclaration(top) ||
            (settings.hasDeclaration.value_or(true) && isReadByItself && (isDocument || isNeeded));
        if (isReadByItself && !isDeclared)
            isVersion11 = false;
        if (isDeclared && !characterSet.isRecognised() && !(source != nullptr && isDocument))
            throw PelXercesWriteError{u"no reader would recognise the encoding '" +
                                      PelString(encoding) + u"'"};
    }

    /// May be repeated. Nothing is said of a stream that fails; one that has failed takes no time.
    void to(std::ostream& stream) {
        if (source != nullptr && !source->canBeCut()) {
            const std::string_view bytes = source->getText();
            stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
            return;
        }
        PelXercesEncoder encoder(encoding, characterSet, stream);
        PelXercesMarkup out(characterSet, &encoder);
        const bool isWhole = source != nullptr && top.getNodeType() == DOMNode::DOCUMENT_NODE;
        if (needsMark() && !isWhole)
            out.addKnown(u"\uFEFF", 1);
        if (source == nullptr)
            encoder.setHasReturns(settings.lineEnds == PelDOMWriter::CRLF);
        // A source without a declaration gets one if that was asked for.
        if (isDeclared &&
            (!isWhole || (settings.hasDeclaration && !hasDeclaration(source->getText()))))
            out.add(declaration().c_str(), PelXercesEscapes::anywhere);
        if (!PelXercesDeclaration::isDeclaration(top)) {
            PelXercesIndent layout(out, settings.indent.value_or(0), top);
            PelXercesSerializer serializer(out, PelXercesEscapes::strict(isVersion11), layout);
            if (leavesOutDefaults())
                serializer.leaveOutDefaults();
            if (source == nullptr)
                serializer.writeNode(top);
            else
                writeKept(out, encoder, serializer);
        }
        out.flush();
    }

    /// Sees that all can be written, and writes nowhere.
    void check() {
        std::ostream nowhere(nullptr);
        to(nowhere);
    }

    /// What is to be said of a write that succeeds; empty if there is nothing.
    const PelString& getRemark() const { return remark; }

private:
    // What was set holds for what is new.
    void writeKept(PelXercesMarkup& out, PelXercesEncoder& encoder,
                   PelXercesSerializer& serializer) {
        PelXercesSourceStyle style(*source);
        if (settings.lineEnds)
            style.lineEnd = *settings.lineEnds == PelDOMWriter::CRLF ? "\r\n" : "\n";
        if (settings.indent)
            style.step = std::string(static_cast<std::size_t>(*settings.indent), ' ');
        encoder.setHasReturns(style.lineEnd == "\r\n");
        PelXercesKeptWriter(out, serializer, *source, std::move(style)).writeNode(top, isDeclared);
    }

    // With its document type, a document gets them again.
    bool leavesOutDefaults() const {
        return !settings.hasDefaultAttributes && top.getNodeType() == DOMNode::DOCUMENT_NODE &&
               document.getDoctype() != nullptr;
    }

    // The names that say in which order the bytes stand forbid the mark where they are declared.
    bool needsMark() const {
        return isReadByItself && characterSet.isUtf16() && !(isDeclared && hasByteOrder(encoding));
    }

    std::u16string declaration() const {
        const std::optional<PelXercesDeclaration> declared = declarationOf(document);
        const PelString word = declared ? declared->standalone.value_or(PelString()) : PelString();
        std::u16string text = u"<?xml version=\"";
        text += isVersion11 ? u"1.1" : u"1.0";
        text += u"\" encoding=\"" + encoding + u"\"";
        // White space that is added may break the promise that nothing outside the document changes
        // it.
        const bool isPromiseKept =
            settings.indent.value_or(0) <= 0 || document.getDoctype() == nullptr;
        if (isPromiseKept && (document.getXmlStandalone() || word == PelString("yes")))
            text += u" standalone=\"yes\"";
        else if (word == PelString("no") || tree.saysNotStandalone())
            text += u" standalone=\"no\"";
        return text + u"?>\n";
    }

    const Settings& settings;
    const DOMNode& top;
    const PelXercesTree& tree;
    const xercesc::DOMDocument& document;
    const PelXercesKeptSource* source; // null: its layout is not kept
    PelString remark;
    const std::u16string encoding;
    PelXercesCharacterSet characterSet;
    bool isReadByItself = false; // a document or an element
    bool isDeclared = false;
    bool isVersion11 = false;
};

/// While it lives, a stream of the caller's throws nothing, whatever it was asked to throw.
class QuietStream {
public:
    explicit QuietStream(std::ostream& quieted) : stream(quieted), asked(quieted.exceptions()) {
        stream.exceptions(std::ios_base::goodbit);
    }
    QuietStream(const QuietStream&) = delete;
    QuietStream& operator=(const QuietStream&) = delete;

    ~QuietStream() {
        try {
            stream.exceptions(asked);
        } catch (...) {
            // It throws at once when it has failed; from now on it throws as before.
        }
    }

private:
    std::ostream& stream;
    const std::ios_base::iostate asked;
};

} // namespace

struct PelDOMWriter::Body {
    Settings settings;
    PelString message;

    /// `name` is what is written to, for the message.
    template <class Send>
    PelDOM::Error write(const PelDOMNode& node, const PelString& name, Send send) {
        message = PelString();
        const PelXercesNodeRef ref = PelXercesDOMNode::of(node);
        if (!ref) {
            fail(name, u"there is no node to write");
            return PelDOM::NULL_NODE;
        }
        try {
            WriteJob job(settings, ref);
            send(job);
            if (job.getRemark().isEmpty() == 0)
                fail(name, job.getRemark());
            return PelDOM::SUCCESS;
        } catch (const PelXercesWriteError& error) {
            fail(name, error.reason);
        } catch (const xercesc::XMLException& exception) {
            fail(name, exception.getMessage());
        } catch (const xercesc::OutOfMemoryException&) {
            throw std::bad_alloc();
        }
        return PelDOM::INTERNAL_ERROR;
    }

    void fail(const PelString& name, const PelString& reason) {
        message = name.isEmpty() == 0 ? name + u": " + reason : reason;
    }
};

PelDOMWriter::PelDOMWriter() : body(std::make_unique<Body>()) {
}

PelDOMWriter::PelDOMWriter(const PelDOMWriter& other) : body(std::make_unique<Body>(*other.body)) {
}

PelDOMWriter& PelDOMWriter::operator=(const PelDOMWriter& other) {
    *body = Body(*other.body);
    return *this;
}

PelDOMWriter::~PelDOMWriter() = default;

void PelDOMWriter::setIndent(int spaces) noexcept {
    body->settings.indent = std::max(spaces, 0);
}

int PelDOMWriter::getIndent() const noexcept {
    return body->settings.indent.value_or(0);
}

void PelDOMWriter::setLineEnds(LineEnds ends) noexcept {
    body->settings.lineEnds = ends;
}

PelDOMWriter::LineEnds PelDOMWriter::getLineEnds() const noexcept {
    return body->settings.lineEnds.value_or(LF);
}

void PelDOMWriter::setEncoding(const PelString& encoding) {
    body->settings.encoding = encoding;
}

PelString PelDOMWriter::getEncoding() const {
    return body->settings.encoding.value_or(u"UTF-8");
}

void PelDOMWriter::setDeclaration(bool isWanted) noexcept {
    body->settings.hasDeclaration = isWanted;
}

bool PelDOMWriter::getDeclaration() const noexcept {
    return body->settings.hasDeclaration.value_or(true);
}

void PelDOMWriter::setDefaultAttributes(bool areWanted) noexcept {
    body->settings.hasDefaultAttributes = areWanted;
}

bool PelDOMWriter::getDefaultAttributes() const noexcept {
    return body->settings.hasDefaultAttributes;
}

void PelDOMWriter::setKeepLayout(bool isKept) noexcept {
    body->settings.isLayoutKept = isKept;
}

bool PelDOMWriter::getKeepLayout() const noexcept {
    return body->settings.isLayoutKept;
}

PelDOM::Error PelDOMWriter::writeFile(const PelDOMNode& node, const PelString& name) {
    return body->write(node, name, [this, &name](WriteJob& job) {
        if (name.view().find(u'\0') != std::u16string_view::npos)
            throw PelXercesWriteError{u"the name holds U+0000"};
        PelPlatformReplacement file(PelPlatform::fileSystemName(name));
        if (file.isInPlace())
            job.check();
        bool isGood = file.open();
        if (isGood) {
            PelFileStream stream(file);
            job.to(stream);
            isGood = stream.flush() && file.complete();
        }
        if (!isGood)
            throw PelXercesWriteError{PelString(file.getErrorText().c_str())};
        if (!file.isSurelyInPlace())
            body->fail(name,
                       u"written, but a crash of the system may still bring the old file back: " +
                           PelString(file.getErrorText().c_str()));
    });
}

PelDOM::Error PelDOMWriter::writeBytes(const PelDOMNode& node, std::string& bytes) {
    return body->write(node, PelString(), [&bytes](WriteJob& job) {
        std::string written;
        PelStringStream stream(written);
        job.to(stream);
        bytes = std::move(written);
    });
}

PelDOM::Error PelDOMWriter::writeStream(const PelDOMNode& node, std::ostream& stream) {
    return body->write(node, PelString(), [&stream](WriteJob& job) {
        job.check();
        const QuietStream quiet(stream);
        job.to(stream);
        if (!stream.flush())
            throw PelXercesWriteError{u"the stream has failed"};
    });
}

PelString PelDOMWriter::getMessage() const {
    return body->message;
}
