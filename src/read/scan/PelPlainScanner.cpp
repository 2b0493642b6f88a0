// SPDX-License-Identifier: MIT
#include "read/scan/PelPlainScanner.h"

#include "read/scan/PelPlainMarkup.h"
#include "read/scan/PelPlainUtf16.h"
#include "read/scan/PelPlainUtf8.h"
#include "xerces/engine/PelXercesFields.h"

#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLUni.hpp>

#include <string_view>
#include <utility>

using xercesc::XMLUni;

namespace {

template <class Source>
PelXercesNewDocument readAs(const void* bytes, std::size_t size, const XMLCh* systemId,
                            const XMLCh* encoding, const PelXercesReadLimits::Bounds& bounds,
                            std::unique_ptr<PelXercesKeptSource> source) {
    using Unit = typename Source::Unit;
    const auto* const text = static_cast<const Unit*>(bytes);
    PelPlainTree tree(systemId, encoding, bounds, std::move(source));
    PelPlainMarkup<Source> markup(text, text + size / sizeof(Unit), tree);
    return markup.read() ? tree.take() : PelXercesNewDocument();
}

} // namespace

const XMLCh* PelPlainScanner::nativeUtf16() {
    return xercesc::XMLPlatformUtils::fgXMLChBigEndian ? XMLUni::fgUTF16BEncodingString2
                                                       : XMLUni::fgUTF16LEncodingString2;
}

bool PelPlainScanner::mayBePlain(const void* bytes, std::size_t size) {
    const std::string_view text(static_cast<const char*>(bytes), size);
    const std::size_t first = text.find_first_not_of("\xEF\xBB\xBF \t\r\n");
    return first != text.npos && text[first] == '<' && text.find('\0') == text.npos &&
           text.find("<!DOCTYPE") == text.npos;
}

PelXercesNewDocument PelPlainScanner::read(const void* bytes, std::size_t size, Encoding encoding,
                                           const XMLCh* systemId,
                                           const PelXercesReadLimits::Bounds& bounds,
                                           std::unique_ptr<PelXercesKeptSource> source) {
    try {
        // The process can tell the engine to take other characters for line ends too.
        if (xercesc::XMLPlatformUtils::isNELRecognized() || !PelXercesFields::areKnown() ||
            !bounds.areFarFrom(size))
            return {};
        if (encoding == Encoding::utf8)
            return readAs<PelPlainUtf8>(bytes, size, systemId, XMLUni::fgUTF8EncodingString, bounds,
                                        std::move(source));
        if (size % sizeof(XMLCh) != 0)
            return {};
        return readAs<PelPlainUtf16>(bytes, size, systemId, nativeUtf16(), bounds, nullptr);
    } catch (...) { // no memory left, most likely: for the engine to find out
        return {};
    }
}
