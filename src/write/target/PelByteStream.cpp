// SPDX-License-Identifier: MIT
#include "write/target/PelByteStream.h"

#include "core/PelPlatform.h"

#include <algorithm>
#include <cerrno>

std::streamsize PelByteStream::xsputn(const char* bytes, std::streamsize count) {
    return store(bytes, static_cast<std::size_t>(count)) ? count : 0;
}

int PelByteStream::overflow(int byte) {
    const char character = static_cast<char>(byte);
    return store(&character, 1) ? std::char_traits<char>::to_int_type(character)
                                : std::char_traits<char>::eof();
}

bool PelFileStream::store(const char* bytes, std::size_t count) {
    if (count > gathered.capacity() - gathered.size() && !storeRest())
        return false;
    if (count > gathered.capacity())
        return file.write(bytes, count);
    gathered.append(bytes, count);
    return true;
}

bool PelFileStream::storeRest() {
    const bool isGood = file.write(gathered.data(), gathered.size());
    gathered.clear();
    return isGood;
}

template <class Step>
bool PelTextModeStream::attempt(Step step) {
    errno = 0;
    const bool isGood = step();
    if (!isGood && error == 0)
        error = errno != 0 ? errno : EIO;
    return isGood;
}

PelTextModeStream::PelTextModeStream(const PelString& name) {
    const auto mode = std::ios_base::out | std::ios_base::trunc | std::ios_base::binary;
    const std::string path = PelPlatform::fileSystemName(name);
    if (!attempt([&] { return file.open(path, mode) != nullptr; }))
        setstate(failbit);
}

bool PelTextModeStream::close() {
    return attempt([this] { return file.close() != nullptr; }) && good();
}

bool PelTextModeStream::store(const char* bytes, std::size_t count) {
    if (isText) {
        const char* const last = bytes + count;
        converted.clear();
        while (bytes != last) {
            const char* const lineEnd = std::find(bytes, last, '\n');
            converted.append(bytes, lineEnd);
            if (lineEnd != last)
                converted.append("\r\n");
            bytes = lineEnd != last ? lineEnd + 1 : last;
        }
        bytes = converted.data();
        count = converted.size();
    }
    const auto size = static_cast<std::streamsize>(count);
    return attempt([&] { return file.sputn(bytes, size) == size; });
}

bool PelTextModeStream::storeRest() {
    return attempt([this] { return file.pubsync() == 0; });
}
