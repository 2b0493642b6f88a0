// SPDX-License-Identifier: MIT
#include "core/PelNumberText.h"
#include "core/PelTextConversion.h"

#include <qrndom/PelDOM.h>
#include <qrndom/PelString.h>

#include <algorithm>
#include <ostream>
#include <utility>

namespace {

constexpr char narrowSubstitute = '\x1A';

std::u16string copyOf(const char16_t* text) {
    return text != nullptr ? std::u16string(text) : std::u16string();
}

std::u16string copyOf(const unsigned short* text) {
    std::u16string copy;
    if (text != nullptr)
        while (*text != 0)
            copy.push_back(static_cast<char16_t>(*text++));
    return copy;
}

std::u16string copyOf(const char* text) {
    return text != nullptr ? PelTextConversion::fromUtf8(text) : std::u16string();
}

char narrow(char16_t unit) {
    return unit <= 0xFF ? static_cast<char>(static_cast<unsigned char>(unit)) : narrowSubstitute;
}

// Gives the form that `slot` holds and builds it first if need be. Readers may race to build it:
// the first to publish wins.
template <class Unit, class Convert>
const Unit* formOf(std::u16string_view text, std::atomic<Unit*>& slot, Convert convert) {
    Unit* known = slot.load(std::memory_order_acquire);
    if (known != nullptr)
        return known;
    Unit* made = new Unit[text.size() + 1];
    *std::transform(text.begin(), text.end(), made, convert) = Unit();
    if (slot.compare_exchange_strong(known, made, std::memory_order_acq_rel))
        return made;
    delete[] made;
    return known;
}

} // namespace

PelString::PelString(const char16_t* source) : text(copyOf(source)) {
}

PelString::PelString(const unsigned short* source) : text(copyOf(source)) {
}

PelString::PelString(const char* source) : text(copyOf(source)) {
}

PelString::PelString(std::u16string_view source) : text(source) {
}

PelString::PelString(std::u16string&& source) noexcept : text(std::move(source)) {
}

PelString::PelString(const PelString& other) : text(other.text) {
}

PelString::PelString(PelString&& other) noexcept : text(std::move(other.text)) {
    other.replace(std::u16string());
}

PelString::~PelString() {
    dropForms();
}

PelString& PelString::operator=(const PelString& other) {
    if (this != &other)
        replace(std::u16string(other.text));
    return *this;
}

PelString& PelString::operator=(PelString&& other) noexcept {
    if (this != &other) {
        replace(std::move(other.text));
        other.replace(std::u16string());
    }
    return *this;
}

PelString& PelString::operator=(std::nullptr_t) noexcept {
    replace(std::u16string());
    return *this;
}

// The text may be this string's own buffer or form, so it is copied before anything is dropped.
PelString& PelString::operator=(const char16_t* source) {
    replace(copyOf(source));
    return *this;
}

PelString& PelString::operator=(const unsigned short* source) {
    replace(copyOf(source));
    return *this;
}

PelString& PelString::operator=(const char* source) {
    replace(copyOf(source));
    return *this;
}

PelString PelString::fromLatin1(const char* bytes, std::size_t size) {
    std::u16string wide(size, u'\0');
    std::transform(bytes, bytes + size, wide.begin(),
                   [](char byte) { return static_cast<unsigned char>(byte); });
    return PelString(std::move(wide));
}

// The two 16-bit types may not alias, so the other one gets a buffer of its own.
const unsigned short* PelString::getStringWAsUnsignedShort() const {
    return formOf(text, wideForm, [](char16_t unit) { return static_cast<unsigned short>(unit); });
}

const char* PelString::getStringA() const {
    return formOf(text, narrowForm, narrow);
}

std::string PelString::toUtf8() const {
    return PelTextConversion::toUtf8(text);
}

long PelString::find(const PelString& part, long from) const noexcept {
    // A negative position becomes one beyond every text.
    const std::size_t found = text.find(part.text, static_cast<std::size_t>(from));
    return found != text.npos ? static_cast<long>(found) : -1;
}

PelString PelString::substr(long position, long length) const {
    if (position < 0 || position > this->length() || length < 0)
        return PelString();
    return PelString(
        view().substr(static_cast<std::size_t>(position), static_cast<std::size_t>(length)));
}

bool PelString::startsWith(const PelString& part) const noexcept {
    return view().substr(0, part.text.size()) == part.view();
}

bool PelString::toLong(long& value) const {
    return PelNumberText::read(text, value);
}

bool PelString::toDouble(double& value) const {
    return PelNumberText::read(text, value);
}

PelString& PelString::operator+=(const PelString& other) {
    text += other.text;
    dropForms();
    return *this;
}

std::u16string PelString::decoded(std::string_view utf8) {
    return PelTextConversion::fromUtf8(utf8);
}

bool PelString::holds(std::string_view utf8) const noexcept {
    return PelTextConversion::isSame(text, utf8);
}

void PelString::replace(std::u16string&& changed) noexcept {
    text = std::move(changed);
    dropForms();
}

// Nobody else reads the string at that time. Few strings have these forms, and an exchange takes
// longer than all the rest of a short string.
void PelString::dropForms() noexcept {
    if (wideForm.load(std::memory_order_relaxed) != nullptr)
        delete[] wideForm.exchange(nullptr, std::memory_order_relaxed);
    if (narrowForm.load(std::memory_order_relaxed) != nullptr)
        delete[] narrowForm.exchange(nullptr, std::memory_order_relaxed);
}

PelString operator+(const PelString& left, const PelString& right) {
    PelString sum;
    sum.text.reserve(left.text.size() + right.text.size());
    sum.text.append(left.text).append(right.text);
    return sum;
}

bool operator==(const PelString& left, const PelString& right) noexcept {
    return left.text == right.text;
}

bool operator!=(const PelString& left, const PelString& right) noexcept {
    return left.text != right.text;
}

bool operator<(const PelString& left, const PelString& right) noexcept {
    return left.text < right.text;
}

std::ostream& operator<<(std::ostream& stream, const PelString& string) {
    return stream << string.toUtf8();
}

PelDOM::Error PelDOM::checkString(const PelString& string, int /*kind*/) {
    return string.isEmpty() != 0 ? INVALID_VALUE : SUCCESS;
}
