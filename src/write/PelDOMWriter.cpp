// SPDX-License-Identifier: MIT
#include "core/PelPlatform.h"
#include "core/PelPlatformReplacement.h"
#include "write/PelXercesMarkup.h"
#include "write/PelXercesWriteJob.h"
#include "write/target/PelByteStream.h"
#include "xerces/handles/PelXercesDOMNode.h"

#include <qrndom/PelDOMNode.h>
#include <qrndom/PelDOMWriter.h>

#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/XMLException.hpp>

#include <algorithm>
#include <new>
#include <ostream>
#include <string_view>
#include <utility>

namespace {

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
    PelWriteSettings settings;
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
            PelXercesWriteJob job(settings, ref);
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
    return body->write(node, name, [this, &name](PelXercesWriteJob& job) {
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
    return body->write(node, PelString(), [&bytes](PelXercesWriteJob& job) {
        std::string written;
        PelStringStream stream(written);
        job.to(stream);
        bytes = std::move(written);
    });
}

PelDOM::Error PelDOMWriter::writeStream(const PelDOMNode& node, std::ostream& stream) {
    return body->write(node, PelString(), [&stream](PelXercesWriteJob& job) {
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
