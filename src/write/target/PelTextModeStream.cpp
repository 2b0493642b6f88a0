// SPDX-License-Identifier: MIT
#include "write/target/PelTextModeStream.h"

#include "core/PelPlatform.h"

#include <algorithm>
#include <cerrno>

PelTextModeStream::PelTextModeStream(const PelString& name) : std::ostream(nullptr) {
    init(&buffer);
    const auto mode = std::ios_base::out | std::ios_base::trunc | std::ios_base::binary;
    errno = 0;
    if (!buffer.check(buffer.file.open(PelPlatform::fileSystemName(name), mode) != nullptr))
        setstate(failbit);
}

bool PelTextModeStream::close() {
    errno = 0;
    return buffer.check(buffer.file.close() != nullptr) && good();
}

bool PelTextModeStream::Buffer::check(bool isGood) {
    if (!isGood && error == 0)
        error = errno != 0 ? errno : EIO;
    return isGood;
}

bool PelTextModeStream::Buffer::store(const char* bytes, std::streamsize count) {
    errno = 0;
    return check(file.sputn(bytes, count) == count);
}

PelTextModeStream::Buffer::int_type PelTextModeStream::Buffer::overflow(int_type character) {
    if (traits_type::eq_int_type(character, traits_type::eof()))
        return traits_type::not_eof(character);
    const char byte = traits_type::to_char_type(character);
    return xsputn(&byte, 1) == 1 ? character : traits_type::eof();
}

std::streamsize PelTextModeStream::Buffer::xsputn(const char* bytes, std::streamsize count) {
    if (!isText)
        return store(bytes, count) ? count : 0;
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
    return store(converted.data(), static_cast<std::streamsize>(converted.size())) ? count : 0;
}

int PelTextModeStream::Buffer::sync() {
    errno = 0;
    return check(file.pubsync() == 0) ? 0 : -1;
}
