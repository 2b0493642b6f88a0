// SPDX-License-Identifier: MIT
#include "read/input/PelXercesLocalResolver.h"

#include "read/input/PelXercesDOMTreeErrorReporter.h"
#include "read/input/PelXercesReadMemory.h"
#include "read/input/PelXercesReadSettings.h"
#include "read/input/PelXercesSource.h"

#include <xercesc/framework/URLInputSource.hpp>
#include <xercesc/framework/XMLBuffer.hpp>
#include <xercesc/sax/Locator.hpp>
#include <xercesc/util/XMLURL.hpp>
#include <xercesc/util/XMLUni.hpp>
#include <xercesc/util/XMLUri.hpp>

#include <charconv>
#include <optional>
#include <string>

using Stream = PelXercesSource::Stream;
using xercesc::XMLString;
using xercesc::XMLURL;

namespace {

#ifdef QRNDOM_REMOTE_ENTITIES
constexpr bool areRemoteRead = true;
#else
constexpr bool areRemoteRead = false;
#endif

// The bytes that a URL's path stands for, as UTF-8; nothing for a path with a NUL.
PelString withoutEscapes(const PelString& urlPath) {
    const std::string escaped = urlPath.toUtf8();
    std::string path;
    for (std::size_t i = 0; i < escaped.size(); ++i) {
        path.push_back(escaped[i]);
        if (escaped[i] != '%' || i + 2 >= escaped.size())
            continue;
        const char* const digits = &escaped[i + 1];
        unsigned char byte = 0;
        if (std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2) {
            path.back() = static_cast<char>(byte);
            i += 2;
        }
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
    PelXercesEntities& entities = memory.getEntities();
    const bool isSubset = entities.takeExpectsSubset();
    const XMLCh* const name = resource->getSystemId();
    const XMLCh* base = resource->getBaseURI();
    if (base == nullptr || *base == 0)
        base = resource->getLocator() != nullptr ? resource->getLocator()->getSystemId() : u"";
    XMLURL url;
    std::optional<PelXercesFile> file;
    const XMLCh* whyUnreadable = nullptr;
    if (!url.setURL(base, name, url) || url.isRelative()) {
        xercesc::XMLBuffer plainName;
        xercesc::XMLUri::normalizeURI(name, plainName);
        file.emplace(base, plainName.getRawBuffer(), memory);
        if (PelXercesEntities::hasScheme(name) &&
            !(settings.isAnythingExternalRead() && file->isReadable())) {
            whyUnreadable = u"an address of this kind is not read";
            file.reset();
        }
    } else if (isLocalFile(url)) {
        const PelString path = withoutEscapes(url.getPath());
        if (path.isEmpty() == 0)
            file.emplace(PelString(), path, memory);
        else
            whyUnreadable = u"no file has such a name";
    } else if (!areRemoteRead) {
        whyUnreadable = u"an address on the network is not read";
    }
    const PelString id = file ? file->id : PelString(name);
    entities.add(id, base, name);
    if (!settings.isAnythingExternalRead())
        return leaveOut(id, u"is not read, as it was set");
    if (isSubset && settings.validation == PelDOMReader::NEVER &&
        (whyUnreadable != nullptr || (file && !file->isReadable())))
        return leaveOut(id, u"is left out, since it cannot be read");
    if (file)
        return new (&memory) PelXercesSource(memory, *file);
    if (whyUnreadable != nullptr)
        return new (&memory) PelXercesSource(memory, id, [this, id, whyUnreadable] {
            memory.getEntities().setFailure(id, whyUnreadable);
            return Stream();
        });
    return new (&memory) PelXercesSource(memory, url.getURLText(), [this, url] {
        return Stream(xercesc::URLInputSource(url, &memory).makeStream());
    });
}

xercesc::InputSource* PelXercesLocalResolver::leaveOut(const PelString& id, const XMLCh* reason) {
    reporter.note(false, (memory.getEntities().nameOf(id) + u" " + reason).view().data());
    return new (&memory) PelXercesSource(memory, id, nullptr, 0);
}
