// SPDX-License-Identifier: MIT
#include "read/input/PelXercesEntities.h"

#include "core/PelCharacters.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace {

// With the slash at its end; empty for a name without one.
PelString folderOf(const PelString& name) {
    const std::u16string_view text = name.view();
    return PelString(text.substr(0, text.rfind(u'/') + 1));
}

// A file may be called as an address is.
bool isRelative(const PelString& name, const PelString& id) {
    const std::size_t folder = id.view().rfind(name.view());
    const bool isFileBeside = folder != std::u16string_view::npos && folder > 0 &&
                              folder + name.view().size() == id.view().size();
    return !name.startsWith(u"/") && (!PelXercesEntities::hasScheme(name) || isFileBeside);
}

} // namespace

PelSurrogateIndex::PelSurrogateIndex(const char* encoding)
    : converter(PelConverter::open(encoding)) {
}

void PelSurrogateIndex::add(const void* bytes, std::size_t size) {
    const char* next = static_cast<const char*>(bytes);
    const char* const bytesEnd = next + size;
    std::array<UChar, 4096> units{};
    UErrorCode status = U_BUFFER_OVERFLOW_ERROR;
    auto& [line, column] = end;
    while (converter && status == U_BUFFER_OVERFLOW_ERROR) {
        UChar* target = units.data();
        status = U_ZERO_ERROR;
        ucnv_toUnicode(converter.get(), &target, target + units.size(), &next, bytesEnd, nullptr, 0,
                       &status);
        for (const UChar* unit = units.data(); unit < target; last = *unit++) {
            if (*unit == u'\n' || *unit == u'\r') {
                line += *unit == u'\n' && last == u'\r' ? 0 : 1;
                column = 0;
                continue;
            }
            column += *unit == u'\uFEFF' && line == 1 && column == 0 ? 0 : 1;
            if (PelCharacters::isLowSurrogate(*unit))
                places.push_back(end);
        }
    }
    if (U_FAILURE(status))
        converter.reset();
}

bool PelSurrogateIndex::isKnown(unsigned long line, unsigned long column) const {
    return !converter || end >= Place(line, column);
}

unsigned long PelSurrogateIndex::countBefore(unsigned long line, unsigned long column) const {
    const auto begin = std::lower_bound(places.begin(), places.end(), Place(line, 0));
    const auto before = std::lower_bound(begin, places.end(), Place(line, column));
    return static_cast<unsigned long>(before - begin);
}

void PelXercesEntities::addDocument(const PelString& id, const PelString& name,
                                    const PelString& base, const void* bytes, std::size_t size) {
    documentId = id;
    entities[id] = {name, folderOf(base), PelPlatform::fileSystemName(name), bytes, size, 0, {}};
}

void PelXercesEntities::add(const PelString& id, const PelString& parentId, const PelString& name) {
    const auto parent = entities.find(parentId);
    const PelString shown =
        parent != entities.end() && isRelative(name, id) ? parent->second.folder + name : name;
    entities.try_emplace(
        id, Entity{shown, folderOf(shown), PelPlatform::fileSystemName(id), nullptr, 0, 0, {}});
}

bool PelXercesEntities::hasScheme(const PelString& name) {
    constexpr std::u16string_view letters = u"abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
    const std::u16string_view text = name.view();
    const std::u16string_view scheme = text.substr(0, text.find(u':'));
    return scheme.size() < text.size() && scheme.find_first_of(letters) == 0 &&
           scheme.find_first_not_of(std::u16string(letters).append(u"0123456789+-.")) ==
               scheme.npos;
}

PelString PelXercesEntities::nameOf(const PelString& id) const {
    const auto entity = entities.find(id.isEmpty() != 0 ? documentId : id);
    return entity != entities.end() ? entity->second.name : id;
}

unsigned long PelXercesEntities::inCharacters(const PelString& id, const char* encoding,
                                              unsigned long line, unsigned long column) {
    const auto found = entities.find(id);
    if (found == entities.end())
        return column;
    Entity& entity = found->second;
    if (!entity.pairs)
        entity.pairs.emplace(encoding);
    while (!entity.pairs->isKnown(line, column) && addPiece(entity)) {
    }
    return column - entity.pairs->countBefore(line, column);
}

// What the engine has read of it, and what lies ahead, may be gigabytes.
bool PelXercesEntities::addPiece(Entity& entity) {
    std::array<char, 0x4000> piece{};
    if (entity.bytes != nullptr) {
        const std::size_t size = std::min(piece.size(), entity.size - entity.done);
        entity.pairs->add(static_cast<const char*>(entity.bytes) + entity.done, size);
        entity.done += size;
        return size > 0;
    }
    if (std::exchange(openEntity, &entity) != &entity) {
        file.emplace(entity.path, PelPlatform::InputFile::Kind::regularFile);
        for (std::size_t left = entity.done; left > 0; left -= std::min(left, piece.size()))
            file->read(piece.data(), std::min(left, piece.size()));
    }
    const long size = file->isOpen() ? file->read(piece.data(), piece.size()) : 0;
    if (size <= 0)
        return false;
    entity.pairs->add(piece.data(), static_cast<std::size_t>(size));
    entity.done += static_cast<std::size_t>(size);
    return true;
}
