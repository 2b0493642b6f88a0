// SPDX-License-Identifier: MIT
#include "output/PelTextModeStream.h"

#include "core/PelPlatform.h"

#include <algorithm>

PelTextModeStream::PelTextModeStream(const PelString& name) : std::ostream(nullptr) {
    init(&buffer);
    const auto mode = std::ios_base::out | std::ios_base::trunc | std::ios_base::binary;
    if (buffer.file.open(PelPlatform::fileSystemName(name), mode) == nullptr)
        setstate(failbit);
}

PelTextModeStream::Buffer::int_type PelTextModeStream::Buffer::overflow(int_type character) {
    if (traits_type::eq_int_type(character, traits_type::eof()))
        return traits_type::not_eof(character);
    const char byte = traits_type::to_char_type(character);
    return xsputn(&byte, 1) == 1 ? character : traits_type::eof();
}

std::streamsize PelTextModeStream::Buffer::xsputn(const char* bytes, std::streamsize count) {
    if (!isText)
        return file.sputn(bytes, count);
    converted.clear();
    const char* const end = bytes + count;
    for (const char* run = bytes; run != end;) {
        const char* const lineEnd = std::find(run, end, '\n');
        converted.append(run, lineEnd);
        run = lineEnd;
        if (run != end) {
            converted.append("\r\n");
            ++run;
        }
    }
    const auto length = static_cast<std::streamsize>(converted.size());
    return file.sputn(converted.data(), length) == length ? count : 0;
}

int PelTextModeStream::Buffer::sync() {
    return file.pubsync();
}
