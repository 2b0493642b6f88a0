// SPDX-License-Identifier: MIT
#pragma once

#include <xercesc/util/OutOfMemoryException.hpp>

#include <algorithm>
#include <cstdlib>
#include <cxxabi.h>
#include <dlfcn.h>
#include <execinfo.h>
#include <functional>
#include <new>
#include <string>
#include <typeinfo>
#include <utility>

/// The program's heap, of which one allocation can be made to fail.
namespace FailingMemory {

inline long untilFailure = -1; // allocations until one fails; below 0 none does
inline long alive = 0;         // allocations that are not yet freed
inline bool hasMetLossyEngine =
    false; // the failure met a part of the engine that loses memory then

inline bool isWithin(std::initializer_list<const char*> functions) {
    void* frames[64];
    return std::any_of(frames, frames + backtrace(frames, 64), [&](const void* frame) {
        Dl_info info{};
        const std::string name =
            dladdr(frame, &info) != 0 && info.dli_sname != nullptr ? info.dli_sname : "";
        return std::any_of(functions.begin(), functions.end(),
                           [&](auto f) { return name.find(f) != name.npos; });
    });
}

inline void failIfDue() {
    if (untilFailure < 0 || untilFailure-- > 0)
        return;
    // This destructor of the engine's allocates. When that fails, the process ends.
    if (isWithin({"ContentSpecNodeD"}))
        return;
    // Newer releases of the engine destroy the reader before twice.
    if (isWithin({"pushReaderAdoptEntity"}))
        return;
    // What this constructor had made so far was seen to be lost.
    hasMetLossyEngine = isWithin({"DOMDocumentImplC"});
    throw std::bad_alloc();
}

/// Whether that allocation of `use` failed. It may throw for that, and nothing else; in the
/// engine's own words only where it starts that.
inline bool failsAt(long allocation, const std::function<void()>& use, bool isStart = false) {
    hasMetLossyEngine = false;
    untilFailure = allocation;
    try {
        use();
    } catch (const std::bad_alloc&) {
    } catch (...) { // by its name: each library has a type of its own for some of the engine's
                    // exceptions
        const std::string name = abi::__cxa_current_exception_type()->name();
        if (!isStart || name != typeid(xercesc::OutOfMemoryException).name())
            throw;
    }
    return std::exchange(untilFailure, -1) < 0;
}

} // namespace FailingMemory

[[gnu::noinline]] void* operator new(std::size_t size) {
    FailingMemory::failIfDue();
    ++FailingMemory::alive;
    return std::malloc(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    try {
        return operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
    FailingMemory::alive -= memory != nullptr ? 1 : 0;
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    operator delete(memory);
}

// `alive` sees every loss at once, and the leak sanitizer would report the engine's own.
extern "C" int __lsan_is_turned_off() {
    return 1;
}
