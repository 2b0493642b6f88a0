// SPDX-License-Identifier: MIT
#pragma once

#include <xercesc/dom/DOMNode.hpp>

/// Tells observers of each change to a tree's structure.
class PelXercesChangeLog {
public:
    /// A node that became a child or ceased to be one, or an element with another name. Parent and
    /// neighbours are those of the node's present or former place.
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

    /// Called right after every change.
    class Observer {
    public:
        Observer() = default;
        Observer(const Observer&) = delete;
        Observer& operator=(const Observer&) = delete;

        /// May drop this observer, but no other one.
        virtual void follow(const Change& change) noexcept = 0;

    protected:
        ~Observer() = default;

    private:
        friend class PelXercesChangeLog;

        Observer* previous = nullptr;
        Observer* next = nullptr;
    };

    void record(const Change& change) noexcept {
        isChanged = true;
        for (Observer* observer = observers; observer != nullptr;) {
            Observer* const next = observer->next;
            observer->follow(change);
            observer = next;
        }
    }

    void add(Observer& observer) noexcept {
        observer.previous = nullptr;
        observer.next = observers;
        if (observers != nullptr)
            observers->previous = &observer;
        observers = &observer;
    }

    void drop(Observer& observer) noexcept {
        (observer.previous != nullptr ? observer.previous->next : observers) = observer.next;
        if (observer.next != nullptr)
            observer.next->previous = observer.previous;
    }

    /// Whether there was any change so far.
    bool hasAny() const { return isChanged; }

private:
    Observer* observers = nullptr;
    bool isChanged = false;
};
