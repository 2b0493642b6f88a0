// SPDX-License-Identifier: MIT
#pragma once

#include <xercesc/dom/DOMNode.hpp>

/// Tells those who remember something of a tree of each change to its structure.
class PelXercesChanges {
public:
    /// A node that became a child or ceased to be one, or an element with another name. What is
    /// below the node is as it was; the neighbours are those of the node's present or former place.
    struct Change {
        enum Kind { INSERTION, REMOVAL, RENAMING };

        Kind kind = INSERTION;
        xercesc::DOMNode* parent = nullptr;
        xercesc::DOMNode* node = nullptr;
        xercesc::DOMNode* previous = nullptr; ///< Of a removed node.
        xercesc::DOMNode* next = nullptr;
        const XMLCh* name = nullptr;       ///< Null unless it is an element.
        const XMLCh* formerName = nullptr; ///< Of a renamed element.
        bool isLeaf = false;               ///< It has no children.
    };

    /// Told of every change, right after it.
    class Watcher {
    public:
        Watcher() = default;
        Watcher(const Watcher&) = delete;
        Watcher& operator=(const Watcher&) = delete;

        /// May end with this watcher being dropped, but no other one.
        virtual void follow(const Change& change) noexcept = 0;

    protected:
        ~Watcher() = default;

    private:
        friend class PelXercesChanges;

        Watcher* previous = nullptr;
        Watcher* next = nullptr;
    };

    void record(const Change& change) noexcept {
        isChanged = true;
        for (Watcher* watcher = watchers; watcher != nullptr;) {
            Watcher* const next = watcher->next;
            watcher->follow(change);
            watcher = next;
        }
    }

    void add(Watcher& watcher) noexcept {
        watcher.previous = nullptr;
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

    /// Whether there was any change so far.
    bool hasAny() const { return isChanged; }

private:
    Watcher* watchers = nullptr;
    bool isChanged = false;
};
