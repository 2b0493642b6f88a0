// SPDX-License-Identifier: MIT
#include "read/input/PelXercesCheckedStream.h"

#include "core/PelCharacters.h"

#include <qrndom/PelString.h>

#include <xercesc/framework/XMLRecognizer.hpp>
#include <xercesc/util/TranscodingException.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XMLUni.hpp>

#include <algorithm>
#include <array>
#include <initializer_list>
#include <string_view>
#include <utility>

using xercesc::XMLRecognizer;
using xercesc::XMLUni;

namespace {

/// Encodings that have the characters of a declaration in common, by one of them.
struct Family {
    const char* encoding;
    PelXercesCheckedStream::Unit unit;
};

// How the engine reads an entity's declaration.
Family familyOf(const XMLByte* bytes, std::size_t size) {
    switch (XMLRecognizer::basicEncodingProbe(bytes, size)) {
    case XMLRecognizer::UTF_16L:
        return {"UTF-16LE", {2, true}};
    case XMLRecognizer::UTF_16B:
        return {"UTF-16BE", {2, false}};
    case XMLRecognizer::UCS_4L:
        return {"UTF-32LE", {4, true}};
    case XMLRecognizer::UCS_4B:
        return {"UTF-32BE", {4, false}};
    case XMLRecognizer::EBCDIC:
        return {"ibm-37", {1, false}};
    default:
        return {"UTF-8", {1, false}};
    }
}

std::size_t markSize(const Family& family, const XMLByte* bytes, std::size_t size) {
    const std::size_t mark = family.unit.size == 1 ? 3 : family.unit.size;
    const bool isThere =
        PelEncodingCheck::beginning(family.encoding, bytes, std::min(size, mark), 1) == u"\uFEFF";
    return isThere ? mark : 0;
}

bool isDeclaration(std::u16string_view text) {
    return text.substr(0, 5) == u"<?xml" && text.size() > 5 && PelCharacters::isSpace(text[5]);
}

// The declaration that a text begins with, without its last character; or nothing.
std::u16string declarationOf(const Family& family, const XMLByte* bytes, std::size_t size) {
    for (const std::size_t most : {std::size_t{256}, std::size_t{1} << 14}) {
        std::u16string text = PelEncodingCheck::beginning(family.encoding, bytes, size, most);
        const std::size_t end = text.find(u'>');
        if (!isDeclaration(text))
            break;
        if (end != std::u16string::npos)
            return text.substr(0, end);
    }
    return {};
}

// The encoding that a declaration names; empty when it names none or is none.
std::string namedEncoding(std::u16string_view declaration) {
    const auto skip = [&](std::u16string_view what) {
        declaration.remove_prefix(
            std::min(declaration.find_first_not_of(what), declaration.size()));
    };
    declaration.remove_prefix(std::min<std::size_t>(5, declaration.size()));
    while (true) {
        skip(PelCharacters::space);
        const std::u16string_view name =
            declaration.substr(0, declaration.find_first_of(u"= \t\r\n"));
        declaration.remove_prefix(name.size());
        skip(PelCharacters::space);
        if (declaration.empty() || declaration.front() != u'=')
            return {};
        declaration.remove_prefix(1);
        skip(PelCharacters::space);
        const std::size_t end =
            declaration.empty() ? std::u16string_view::npos : declaration.find(declaration[0], 1);
        if (end == std::u16string_view::npos)
            return {};
        if (name == u"encoding")
            return PelString(declaration.substr(1, end - 1)).toUtf8();
        declaration.remove_prefix(end + 1);
    }
}

// The names that leave the byte order open.
bool isNeutralName(std::size_t unit, const std::string& name) {
    const PelString text(name.c_str());
    const auto isAmong = [&](std::initializer_list<const XMLCh*> names) {
        return std::any_of(names.begin(), names.end(), [&](const XMLCh* other) {
            return xercesc::XMLString::compareIStringASCII(text.view().data(), other) == 0;
        });
    };
    return unit == 2 ? isAmong({XMLUni::fgUTF16EncodingString, XMLUni::fgUTF16EncodingString2,
                                XMLUni::fgUTF16EncodingString3, XMLUni::fgUTF16EncodingString4,
                                XMLUni::fgUTF16EncodingString5, XMLUni::fgUTF16EncodingString6,
                                XMLUni::fgUTF16EncodingString7})
                     : isAmong({XMLUni::fgUCS4EncodingString, XMLUni::fgUCS4EncodingString2,
                                XMLUni::fgUCS4EncodingString3, XMLUni::fgUCS4EncodingString4,
                                XMLUni::fgUCS4EncodingString5});
}

// Whether a text that begins with a declaration can be in the encoding that this names. Where a
// character takes several bytes, only their own encoding can be.
bool canBeIn(const std::string& name, const Family& family, const XMLByte* bytes,
             std::size_t size) {
    if (family.unit.size > 1)
        return isNeutralName(family.unit.size, name) ||
               PelEncodingCheck::areSame(name.c_str(), family.encoding);
    return isDeclaration(PelEncodingCheck::beginning(name.c_str(), bytes, size, 6));
}

} // namespace

PelXercesOpenStreams::~PelXercesOpenStreams() {
    while (!streams.empty())
        delete streams.front();
}

PelXercesCheckedStream::PelXercesCheckedStream(PelXercesOpenStreams& streams,
                                               std::unique_ptr<xercesc::BinInputStream> ownStream,
                                               const XMLCh* knownEncoding)
    : stream(std::move(ownStream)), encoding(PelString(knownEncoding).toUtf8()),
      openStreams(streams), place(streams.streams.insert(streams.streams.end(), this)) {
}

PelXercesCheckedStream::~PelXercesCheckedStream() {
    openStreams.streams.erase(place);
}

XMLSize_t PelXercesCheckedStream::readBytes(XMLByte* bytes, XMLSize_t wanted) {
    room = std::max(room, wanted);
    ++calls;
    if (!hasFault) {
        const XMLSize_t size = stream->readBytes(bytes, wanted);
        const std::size_t good =
            check == nullptr ? passFirstBytes(bytes, size) : passBytes(bytes, size);
        if (good > 0 || calls == 1 || !hasFault)
            return good;
    }
    if (isEngineAtEnd(wanted))
        throwFault();
    return 0;
}

// Whether the engine has scanned all that was before the fault. It asks for more earlier: to look
// ahead, and with bytes that it has yet to decode. Up to three may be the rest of a sequence, for
// which it asks once only; but not when it has not tried them yet.
bool PelXercesCheckedStream::isEngineAtEnd(XMLSize_t wanted) const {
    const xercesc::XMLReader* const reader =
        openStreams.readers != nullptr ? openStreams.readers->getCurrentReader() : nullptr;
    const bool isScanning = reader != nullptr && reader->charsLeftInBuffer() > 0;
    const XMLSize_t longestRest = calls > 2 ? 3 : 0;
    return !isScanning && room - wanted <= longestRest;
}

std::size_t PelXercesCheckedStream::passBytes(const XMLByte* bytes, std::size_t size) {
    const std::size_t good = check->passBytes(bytes, size);
    hasFault = good < size || (size == 0 && !check->mayEnd());
    // One that began in the bytes before is not to be seen here.
    if (hasFault && (good > 0 || calls == 1) && size - good >= unit.size) {
        faultyUnit = 0;
        for (std::size_t i = 0; i < unit.size; ++i)
            faultyUnit =
                *faultyUnit << 8 | bytes[good + (unit.isLittleEndian ? unit.size - 1 - i : i)];
    }
    return good;
}

std::size_t PelXercesCheckedStream::passFirstBytes(XMLByte* bytes, std::size_t size) {
    if (!encoding.empty()) {
        check = PelEncodingCheck::forEncoding(encoding.c_str());
        hasFault = check == nullptr;
        if (encoding == "UTF-16LE" || encoding == "UTF-16BE")
            unit = {2, encoding == "UTF-16LE"};
        return hasFault ? 0 : passBytes(bytes, size);
    }
    const Family family = familyOf(bytes, size);
    unit = family.unit;
    const std::size_t mark = markSize(family, bytes, size);
    XMLByte* const text = bytes + mark;
    const std::u16string declaration = declarationOf(family, text, size - mark);
    encoding = namedEncoding(declaration);
    if (!encoding.empty() && !canBeIn(encoding, family, text, size - mark)) {
        hasFault = true; // before the declaration ends, and the engine believes it
        return mark + declaration.size() * family.unit.size;
    }
    if (encoding.empty() || family.unit.size > 1)
        encoding = family.encoding;
    // Without this space the engine has decoded what follows before it knows the encoding.
    if (!declaration.empty() && text[0] == '<' && family.unit.size == 1)
        text[5] = XMLByte{' '};
    check = PelEncodingCheck::forEncoding(encoding.c_str());
    return mark + passBytes(text, size - mark);
}

void PelXercesCheckedStream::throwFault() const {
    using xercesc::TranscodingException;
    using xercesc::XMLExcepts;
    const PelString name = encoding.c_str();
    if (check == nullptr)
        throw TranscodingException(__FILE__, __LINE__, XMLExcepts::Trans_CantCreateCvtrFor,
                                   name.view().data());
    if (!faultyUnit)
        throw TranscodingException(__FILE__, __LINE__, XMLExcepts::Trans_BadSrcSeq);
    std::array<XMLCh, 9> digits{};
    xercesc::XMLString::binToText(*faultyUnit, digits.data(), digits.size() - 1, 16);
    throw TranscodingException(__FILE__, __LINE__, XMLExcepts::Trans_BadSrcCP, digits.data(),
                               name.view().data());
}
