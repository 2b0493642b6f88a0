// SPDX-License-Identifier: MIT
#include "write/target/PelFileStream.h"

#include <cstddef>

namespace {

constexpr std::size_t room = std::size_t{64} * 1024;

} // namespace

PelFileStream::Buffer::Buffer(PelPlatformReplacement& target) : file(target), bytes(room) {
    setp(bytes.data(), bytes.data() + bytes.size());
}

PelFileStream::Buffer::int_type PelFileStream::Buffer::overflow(int_type character) {
    if (sync() != 0)
        return traits_type::eof();
    if (!traits_type::eq_int_type(character, traits_type::eof()))
        sputc(traits_type::to_char_type(character));
    return traits_type::not_eof(character);
}

int PelFileStream::Buffer::sync() {
    const bool isGood = file.write(pbase(), static_cast<std::size_t>(pptr() - pbase()));
    setp(bytes.data(), bytes.data() + bytes.size());
    return isGood ? 0 : -1;
}
