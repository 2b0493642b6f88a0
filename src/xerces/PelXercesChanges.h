// SPDX-License-Identifier: MIT
#pragma once

#include <xercesc/dom/DOMNode.hpp>

#include <array>
#include <cstddef>

/// The latest changes to the structure of a tree, from which its live lists bring what they
/// remember up to date without walking the tree again.
class PelXercesChanges {
public:
    /// A node that became a child or ceased to be one. The nodes may be gone since: they are there
    /// to be compared with others, not to be followed. Names stay as long as the tree.
    struct Change {
        const xercesc::DOMNode* parent = nullptr; ///< Null when only a name changed.
        const xercesc::DOMNode* node = nullptr;
        xercesc::DOMNode* previous = nullptr; ///< Its neighbours as a child; the previous one of a
        xercesc::DOMNode* next = nullptr;     ///< node without a next is not always set.
        const XMLCh* name = nullptr;          ///< Null unless it is an element.
        bool isRemoval = false;
        bool isLeaf = false; ///< It had no children then.
    };

    /// Told of every change, right after it.
    class Watcher {
    public:
        Watcher() = default;
        Watcher(const Watcher&) = delete;
        Watcher& operator=(const Watcher&) = delete;
        virtual void follow(const Change& change) noexcept = 0;

    protected:
        ~Watcher() = default;

    private:
        friend class PelXercesChanges;

        Watcher* previous = nullptr;
        Watcher* next = nullptr;
    };

    void record(const Change& change) {
        latest[total++ % latest.size()] = change;
        for (Watcher* watcher = watchers; watcher != nullptr; watcher = watcher->next)
            watcher->follow(change);
    }

    void add(Watcher& watcher) noexcept {
        watcher.next = watchers;
        if (watchers != nullptr)
            watchers->previous = &watcher;
        watchers = &watcher;
    }

    void drop(Watcher& watcher) noexcept {
        (watcher.previous != nullptr ? watcher.previous->next : watchers) = watcher.next;
        if (watcher.next != nullptr)
            watcher.next->previous = watcher.previous;
    }

    /// The number of changes so far.
    std::size_t count() const { return total; }

    /// Whether the changes from `first` on can still be asked for.
    bool remembers(std::size_t first) const { return total - first <= latest.size(); }

    const Change& operator[](std::size_t number) const { return latest[number % latest.size()]; }

private:
    std::array<Change, 32> latest;
    std::size_t total = 0;
    Watcher* watchers = nullptr;
};
