// SPDX-License-Identifier: MIT
#include "output/PelXercesRepertoire.h"

#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/TranscodingException.hpp>
#include <xercesc/util/XMLUCS4Transcoder.hpp>
#include <xercesc/util/XMLUTF16Transcoder.hpp>
#include <xercesc/util/XMLUTF8Transcoder.hpp>

#include <array>

using xercesc::XMLPlatformUtils;
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

PelXercesRepertoire::PelXercesRepertoire(const std::u16string& encoding)
    : converter(converterFor(encoding)),
      isUniversal(dynamic_cast<xercesc::XMLUTF8Transcoder*>(converter.get()) != nullptr ||
                  dynamic_cast<xercesc::XMLUTF16Transcoder*>(converter.get()) != nullptr ||
                  dynamic_cast<xercesc::XMLUCS4Transcoder*>(converter.get()) != nullptr),
      units(isUniversal ? 0 : 0x10000, Answer::unknown) {
}

bool PelXercesRepertoire::holds(char16_t unit) {
    Answer& answer = units[unit];
    if (answer == Answer::unknown)
        answer = converter->canTranscodeTo(unit) ? Answer::yes : Answer::no;
    return answer == Answer::yes;
}

bool PelXercesRepertoire::holds(char16_t high, char16_t low) {
    const char32_t key = (static_cast<char32_t>(high) << 16) | low;
    const auto known = pairs.find(key);
    if (known != pairs.end())
        return known->second;
    const std::array<XMLCh, 2> pair{high, low};
    std::array<XMLByte, blockSize> bytes{};
    XMLSize_t eaten = 0;
    bool isHeld = false;
    try {
        const XMLSize_t count =
            converter->transcodeTo(pair.data(), pair.size(), bytes.data(), bytes.size(), eaten,
                                   XMLTranscoder::UnRep_Throw);
        isHeld = count > 0 && eaten == pair.size();
    } catch (const xercesc::TranscodingException&) {
        isHeld = false;
    }
    return pairs[key] = isHeld;
}

bool PelXercesRepertoire::hasByteLineFeed() const {
    std::array<XMLByte, blockSize> bytes{};
    XMLSize_t eaten = 0;
    const XMLSize_t count = converter->transcodeTo(u"\n", 1, bytes.data(), bytes.size(), eaten,
                                                   XMLTranscoder::UnRep_RepChar);
    return count == 1 && bytes[0] == 0x0A;
}
