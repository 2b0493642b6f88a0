// SPDX-License-Identifier: MIT
#include "reading/PelXercesLocalResolver.h"

#include "reading/PelXercesChecked.h"
#include "reading/PelXercesFileSource.h"
#include "reading/PelXercesReadMemory.h"

#include <xercesc/framework/URLInputSource.hpp>
#include <xercesc/framework/XMLBuffer.hpp>
#include <xercesc/sax/InputSource.hpp>
#include <xercesc/sax/Locator.hpp>
#include <xercesc/util/XMLURL.hpp>
#include <xercesc/util/XMLUni.hpp>
#include <xercesc/util/XMLUri.hpp>

#include <string>
#include <string_view>

using xercesc::XMLString;
using xercesc::XMLURL;

namespace {

/// A source that cannot be opened.
class UnreadableSource final : public xercesc::InputSource {
public:
    UnreadableSource(const XMLCh* systemId, xercesc::MemoryManager& memory)
        : InputSource(systemId, &memory) {}
    xercesc::BinInputStream* makeStream() const override { return nullptr; }
};

int hexValue(char digit) {
    constexpr std::string_view digits = "0123456789abcdef0123456789ABCDEF";
    const std::size_t found = digits.find(digit);
    return found == digits.npos ? -1 : static_cast<int>(found % 16);
}

// The bytes that a URL's path stands for, as UTF-8; nothing for a path with a NUL.
PelString withoutEscapes(const PelString& urlPath) {
    const std::string escaped = urlPath.toUtf8();
    std::string path;
    for (std::size_t i = 0; i < escaped.size(); ++i) {
        const int high =
            escaped[i] == '%' && i + 2 < escaped.size() ? hexValue(escaped[i + 1]) : -1;
        const int low = high >= 0 ? hexValue(escaped[i + 2]) : -1;
        path.push_back(low >= 0 ? static_cast<char>(high * 16 + low) : escaped[i]);
        if (low >= 0)
            i += 2;
    }
    return path.find('\0') == path.npos ? PelString(path.c_str()) : PelString();
}

bool isLocalFile(const XMLURL& url) {
    const XMLCh* const host = url.getHost();
    return url.getProtocol() == XMLURL::File &&
           (host == nullptr ||
            XMLString::compareIStringASCII(host, xercesc::XMLUni::fgLocalHostString) == 0);
}

} // namespace

xercesc::InputSource*
PelXercesLocalResolver::resolveEntity(xercesc::XMLResourceIdentifier* resource) {
    const XMLCh* const name = resource->getSystemId();
    const XMLCh* base = resource->getBaseURI();
    if (base == nullptr || *base == 0)
        base = resource->getLocator() != nullptr ? resource->getLocator()->getSystemId() : u"";
    XMLURL url;
    if (!url.setURL(base, name, url) || url.isRelative()) {
        xercesc::XMLBuffer plainName;
        xercesc::XMLUri::normalizeURI(name, plainName);
        return new (&memory) PelXercesFileSource(base, plainName.getRawBuffer(), memory);
    }
    if (isLocalFile(url)) {
        const PelString path = withoutEscapes(url.getPath());
        if (path.isEmpty() != 0)
            return new (&memory) UnreadableSource(name, memory);
        return new (&memory) PelXercesFileSource(PelString(), path, memory);
    }
#ifdef QRNDOM_REMOTE_ENTITIES
    return new (&memory) PelXercesChecked<xercesc::URLInputSource>(memory, url);
#else
    return new (&memory) UnreadableSource(name, memory);
#endif
}
