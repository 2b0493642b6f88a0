// SPDX-License-Identifier: MIT
#include "reading/PelXercesEntities.h"

#include "core/PelPlatform.h"

#include <array>
#include <string_view>

namespace {

// With the slash at its end; empty for a name without one.
PelString folderOf(const PelString& name) {
    const std::u16string_view text = name.view();
    return PelString(text.substr(0, text.rfind(u'/') + 1));
}

bool isRelative(const PelString& name) {
    const std::u16string_view text = name.view();
    return text.substr(0, 1) != u"/" && text.find(u"://") == text.npos;
}

// The bytes of a regular file; none when it cannot be read again.
std::string bytesOf(const std::string& path) {
    PelPlatform::InputFile file(path, PelPlatform::InputFile::Kind::regularFile);
    std::string bytes;
    std::array<char, 0x10000> piece{};
    for (long count = 0; file.isOpen() && (count = file.read(piece.data(), piece.size())) > 0;)
        bytes.append(piece.data(), static_cast<std::size_t>(count));
    return bytes;
}

} // namespace

void PelXercesEntities::addDocument(const PelString& id, const PelString& name,
                                    const PelString& base, const void* bytes, std::size_t size) {
    documentId = id;
    entities[id] = {name, folderOf(base), PelPlatform::fileSystemName(name), bytes, size, {}};
}

void PelXercesEntities::add(const PelString& id, const PelString& parentId, const PelString& name) {
    const auto parent = entities.find(parentId);
    const PelString shown =
        parent != entities.end() && isRelative(name) ? parent->second.folder + name : name;
    entities.insert(
        {id, {shown, folderOf(shown), PelPlatform::fileSystemName(id), nullptr, 0, {}}});
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
    if (!entity.pairs) {
        const std::string file = entity.bytes == nullptr ? bytesOf(entity.path) : std::string();
        entity.pairs.emplace(encoding, entity.bytes != nullptr ? entity.bytes : file.data(),
                             entity.bytes != nullptr ? entity.size : file.size());
    }
    return column - entity.pairs->countBefore(line, column);
}
