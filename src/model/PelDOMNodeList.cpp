// SPDX-License-Identifier: MIT
#include "model/PelDOMCursor.h"
#include "model/PelDOMNodeImp.h"

#include <qrndom/PelDOMElement.h>
#include <qrndom/PelDOMNodeList.h>

#include <utility>

namespace {

/// Goes through a list that a user implements.
class PositionCursor : public PelDOMCursor {
public:
    explicit PositionCursor(const PelDOMNodeList& listed) : list(listed) {}

    bool step() override { return list.item(++index, node) == PelDOM::SUCCESS; }

    PelDOMNodeImp* getNode() const override { return node ? node.getNodeImp()->clone() : nullptr; }

private:
    const PelDOMNodeList list;
    long index = -1;
    PelDOMNode node;
};

} // namespace

PelDOMNodeList::PelDOMNodeList(PelDOMNodeListImp* implementation) : imp(implementation) {
}

PelDOMNodeList::PelDOMNodeList(const PelDOMNodeList& orig) : imp(nullptr) {
    assign(orig);
}

PelDOMNodeList::PelDOMNodeList(PelDOMNodeList&& orig) noexcept
    : imp(std::exchange(orig.imp, nullptr)) {
}

PelDOMNodeList::~PelDOMNodeList() {
    delete imp;
}

PelDOMNodeList& PelDOMNodeList::operator=(PelDOMNodeList& rhs) {
    *this = std::as_const(rhs);
    return rhs;
}

const PelDOMNodeList& PelDOMNodeList::operator=(const PelDOMNodeList& rhs) {
    if (this != &rhs)
        assign(rhs);
    return rhs;
}

PelDOMNodeList& PelDOMNodeList::operator=(PelDOMNodeList&& rhs) noexcept {
    delete std::exchange(imp, std::exchange(rhs.imp, nullptr));
    return *this;
}

bool PelDOMNodeList::isSameList(const PelDOMNodeList& other) const noexcept {
    if (imp == other.imp)
        return true;
    const auto* const own = dynamic_cast<const PelDOMListImp*>(imp);
    const auto* const others = dynamic_cast<const PelDOMListImp*>(other.imp);
    return own != nullptr && others != nullptr && own->isSameList(*others);
}

PelDOMIterator<PelDOMNode> PelDOMNodeList::begin() const {
    if (imp == nullptr)
        return {};
    const auto* const own = dynamic_cast<const PelDOMListImp*>(imp);
    return PelDOMIterator<PelDOMNode>(
        PelDOMPlace(own != nullptr ? own->walk() : std::make_shared<PositionCursor>(*this)));
}

void PelDOMNodeList::assign(const PelDOMNodeList& other) {
    PelDOMNodeListImp* const taken = other.imp != nullptr ? other.imp->clone() : nullptr;
    delete std::exchange(imp, taken);
}

long PelDOMNodeList::length() const {
    return callImp(imp, &PelDOMNodeListImp::length);
}

PelDOM::Error PelDOMNodeList::item(long index, PelDOMNode& out) const {
    return callImp(imp, &PelDOMNodeListImp::item, index, out);
}

PelDOMNodeListImp::PelDOMNodeListImp() = default;

PelDOMNodeListImp::PelDOMNodeListImp(const PelDOMNodeListImp& /*other*/) = default;

PelDOMNodeListImp& PelDOMNodeListImp::operator=(const PelDOMNodeListImp& /*other*/) = default;

PelDOMNodeListImp::~PelDOMNodeListImp() = default;

PelDOMPlace::PelDOMPlace(std::shared_ptr<PelDOMCursor> start) : cursor(std::move(start)) {
    step();
}

PelDOMNodeImp* PelDOMPlace::getNode() const {
    return cursor != nullptr ? cursor->getNode() : nullptr;
}

void PelDOMPlace::step() {
    if (cursor != nullptr && !cursor->step())
        cursor.reset();
}

PelDOMIterator<PelDOMElement> PelDOMElementRange::begin() const {
    return PelDOMIterator<PelDOMElement>(
        PelDOMPlace(selection != nullptr ? selection->walk() : nullptr));
}
