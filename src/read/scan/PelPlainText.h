// SPDX-License-Identifier: MIT
#pragma once

#include "read/scan/PelPlainRuns.h"
#include "xerces/engine/PelXercesFields.h"

/// The text of one node, as it is put together: a short one here, a long one in the document from
/// the beginning, so that it is there once.
class PelPlainText {
public:
    static constexpr std::size_t capacity = 4096;

    explicit PelPlainText(xercesc::DOMDocumentImpl& ownDocument) : document(ownDocument) {}
    PelPlainText(const PelPlainText&) = delete;
    PelPlainText& operator=(const PelPlainText&) = delete;

    /// Begins a new one.
    void clear() {
        end = units;
        large = nullptr;
    }

    /// Where the next unit goes, and how many may go there.
    char16_t* end = units;
    std::size_t room() const { return size() < capacity ? capacity - size() : 0; }

    /// There is room for some units at any time, if only in the slack.
    void put(char16_t unit) { *end++ = unit; }

    /// Makes room when there is little; what is to come has at most `more()` units.
    template <class Count>
    void makeRoom(Count more) {
        if (room() >= 2)
            return;
        if (large == nullptr)
            large = new (&document) xercesc::DOMBuffer(&document, size() + more() + 1);
        flush();
    }

    bool isLong() const { return large != nullptr; }

    /// Of a short text.
    std::size_t size() const { return static_cast<std::size_t>(end - units); }
    const char16_t* begin() const { return units; }
    const char16_t* terminated() {
        *end = 0;
        return units;
    }

    /// Of a long one.
    xercesc::DOMBuffer* take() {
        flush();
        return large;
    }

private:
    void flush() {
        large->append(units, size());
        end = units;
    }

    xercesc::DOMDocumentImpl& document;
    xercesc::DOMBuffer* large = nullptr;
    char16_t units[capacity + plainSlack];
};
