// SPDX-License-Identifier: MIT
#include "write/characters/PelXercesCharacterSet.h"

#include <xercesc/framework/XMLRecognizer.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/TranscodingException.hpp>
#include <xercesc/util/XMLUCS4Transcoder.hpp>
#include <xercesc/util/XMLUTF16Transcoder.hpp>
#include <xercesc/util/XMLUTF8Transcoder.hpp>

#include <algorithm>
#include <array>

using xercesc::XMLPlatformUtils;
using xercesc::XMLRecognizer;
using xercesc::XMLTranscoder;

namespace {

constexpr XMLSize_t blockSize = 64;

std::unique_ptr<XMLTranscoder> converterFor(const std::u16string& encoding) {
    xercesc::XMLTransService::Codes outcome = xercesc::XMLTransService::Ok;
    std::unique_ptr<XMLTranscoder> converter(XMLPlatformUtils::fgTransService->makeNewTranscoderFor(
        encoding.c_str(), outcome, blockSize, XMLPlatformUtils::fgMemoryManager));
    if (!converter)
        ThrowXML1(xercesc::TranscodingException, xercesc::XMLExcepts::Trans_CantCreateCvtrFor,
                  encoding.c_str());
    return converter;
}

} // namespace

PelXercesCharacterSet::PelXercesCharacterSet(const std::u16string& encoding)
    : converter(converterFor(encoding)),
      isUniversal(isUtf8() || isUtf16() ||
                  dynamic_cast<xercesc::XMLUCS4Transcoder*>(converter.get()) != nullptr),
      units(isUniversal ? 0 : 0x10000, Answer::unknown) {
}

bool PelXercesCharacterSet::isUtf8() const {
    return dynamic_cast<xercesc::XMLUTF8Transcoder*>(converter.get()) != nullptr;
}

bool PelXercesCharacterSet::isUtf16() const {
    return dynamic_cast<xercesc::XMLUTF16Transcoder*>(converter.get()) != nullptr;
}

bool PelXercesCharacterSet::isRecognised() const {
    constexpr std::u16string_view start = u"<?xml version";
    std::array<XMLByte, blockSize> bytes{};
    XMLSize_t eaten = 0;
    const XMLSize_t count =
        converter->transcodeTo(start.data(), start.size(), bytes.data(), bytes.size(), eaten,
                               XMLTranscoder::UnRep_RepChar);
    const bool isAscii =
        std::equal(start.begin(), start.end(), bytes.begin(), bytes.begin() + count);
    return isAscii ||
           XMLRecognizer::basicEncodingProbe(bytes.data(), count) != XMLRecognizer::UTF_8;
}

bool PelXercesCharacterSet::ask(char16_t unit) {
    const bool isHeld = comesBack({&unit, 1});
    units[unit] = isHeld ? Answer::yes : Answer::no;
    return isHeld;
}

bool PelXercesCharacterSet::holds(char16_t high, char16_t low) {
    const char32_t key = (static_cast<char32_t>(high) << 16) | low;
    const auto known = pairs.find(key);
    if (known != pairs.end())
        return known->second;
    const std::array<char16_t, 2> pair{high, low};
    return pairs[key] = comesBack({pair.data(), pair.size()});
}

// Converters leave characters out that nobody sees, and put a `<` for one that looks like it.
// Between two letters, a converter is in the state in which it began.
bool PelXercesCharacterSet::comesBack(std::u16string_view character) const {
    const std::u16string text = u"x" + std::u16string(character) + u"x";
    std::array<XMLByte, blockSize> bytes{};
    std::array<XMLCh, blockSize> back{};
    std::array<unsigned char, blockSize> sizes{};
    XMLSize_t eaten = 0;
    try {
        const XMLSize_t count =
            converter->transcodeTo(text.data(), text.size(), bytes.data(), bytes.size(), eaten,
                                   XMLTranscoder::UnRep_Throw);
        const XMLSize_t length = converter->transcodeFrom(bytes.data(), count, back.data(),
                                                          back.size(), eaten, sizes.data());
        return std::u16string_view(back.data(), length) == text;
    } catch (const xercesc::TranscodingException&) {
        return false;
    }
}

bool PelXercesCharacterSet::hasByteLineFeed() const {
    std::array<XMLByte, blockSize> bytes{};
    XMLSize_t eaten = 0;
    const XMLSize_t count = converter->transcodeTo(u"\n", 1, bytes.data(), bytes.size(), eaten,
                                                   XMLTranscoder::UnRep_RepChar);
    return count == 1 && bytes[0] == 0x0A;
}
