// SPDX-License-Identifier: MIT
// Any bytes as a document, in UTF-8 and as UTF-16 in memory: the scanner of plain documents and the
// engine's parser come to the same verdict, message and tree.
#include "read/PelXercesReader.h"
#include "read/scan/PelPlainScanner.h"
#include "same_tree.h"
#include "support.h"

std::size_t plainInputs = 0;

namespace {

using Method = PelXercesReadSettings::Method;

PelXercesNodeRef readBy(
    Method method, const void* bytes, std::size_t size, const XMLCh* encoding, std::string& message) {
    PelXercesReadSettings settings;
    settings.method = method;
    PelXercesReader reader(settings);
    const PelXercesNodeRef node = reader.readText("text", bytes, size, encoding);
    message = node ? "" : reader.getMessages().at(0).toLine().toUtf8();
    return node;
}

void checkWays(const void* bytes, std::size_t size, const XMLCh* encoding) {
    std::string message, ownMessage;
    const PelXercesNodeRef engines = readBy(Method::engine, bytes, size, encoding, message);
    const PelXercesNodeRef own = readBy(Method::plainScanner, bytes, size, encoding, ownMessage);
    const auto form =
        encoding != nullptr ? PelPlainScanner::Encoding::nativeUtf16 : PelPlainScanner::Encoding::utf8;
    if (PelPlainScanner::read(bytes, size, form, u"Dummy").document) ++plainInputs;
    expectSame(static_cast<bool>(own), static_cast<bool>(engines), "verdict");
    expectSame(ownMessage, message, "message");
    if (own) expectSame(compareDocuments(*engines.getNode(), *own.getNode()) > 0, true, "trees");
}

} // namespace

int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    services().init();
    // In a block of their size, where reading past the end is seen.
    const std::vector<unsigned char> bytes(data, data + size);
    checkWays(bytes.data(), bytes.size(), nullptr);
    const std::string text(data, data + size);
    if (text.find('\0') != text.npos) return 0;
    const PelString wide(text.c_str());
    const std::vector<char16_t> units(wide.view().begin(), wide.view().end());
    checkWays(units.data(), units.size() * sizeof(char16_t), PelPlainScanner::nativeUtf16());
    return 0;
}
