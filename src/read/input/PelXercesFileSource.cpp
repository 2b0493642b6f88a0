// SPDX-License-Identifier: MIT
#include "read/input/PelXercesFileSource.h"

#include "read/input/PelXercesCheckedStream.h"
#include "read/input/PelXercesReadMemory.h"
#include "read/scan/PelPlainScanner.h"

#include <xercesc/util/BinInputStream.hpp>
#include <xercesc/util/XMLExceptMsgs.hpp>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>

using InputFile = PelPlatform::InputFile;

namespace {

bool isOpenedAgain(PelXercesReadLimits& limits, const std::string& path) {
    std::error_code ignored;
    return limits.opensAgain(std::filesystem::canonical(path, ignored).string());
}

class FileStream final : public xercesc::BinInputStream {
public:
    FileStream(const std::string& path, InputFile::Kind kind, PelXercesReadLimits& readLimits)
        : file(path, kind), limits(readLimits) {
        isAgain = isOpenedAgain(limits, path);
    }

    bool isOpen() const { return file.isOpen(); }

    XMLFilePos curPos() const override { return position; }
    const XMLCh* getContentType() const override { return nullptr; }

    XMLSize_t readBytes(XMLByte* bytes, XMLSize_t wanted) override {
        const long count = file.read(bytes, wanted);
        if (count < 0)
            throw xercesc::XMLPlatformUtilsException(
                __FILE__, __LINE__, xercesc::XMLExcepts::File_CouldNotReadFromFile);
        position += static_cast<XMLFilePos>(count);
        limits.addFileInput(static_cast<std::size_t>(count), isAgain);
        return static_cast<XMLSize_t>(count);
    }

private:
    InputFile file;
    PelXercesReadLimits& limits;
    bool isAgain;
    XMLFilePos position = 0;
};

class LoadedStream final : public xercesc::BinInputStream {
public:
    LoadedStream(const XMLByte* loadedBytes, std::size_t loadedSize, bool isReadAgain,
                 PelXercesReadLimits& readLimits)
        : bytes(loadedBytes), size(loadedSize), limits(readLimits), isAgain(isReadAgain) {}

    XMLFilePos curPos() const override { return position; }
    const XMLCh* getContentType() const override { return nullptr; }

    XMLSize_t readBytes(XMLByte* to, XMLSize_t wanted) override {
        const XMLSize_t count = std::min<XMLSize_t>(wanted, size - position);
        std::memcpy(to, bytes + position, count);
        position += count;
        limits.addFileInput(count, isAgain);
        return count;
    }

private:
    const XMLByte* bytes;
    std::size_t size;
    PelXercesReadLimits& limits;
    bool isAgain;
    std::size_t position = 0;
};

} // namespace

// What a document's relative names are resolved against is the full path; what is opened is the
// caller's own name, so that ".." means what it means to the file system.
PelXercesFileSource::PelXercesFileSource(const PelString& name, PelXercesReadMemory& memory)
    : LocalFileInputSource((PelPlatform::currentDirectory() + u"/").view().data(),
                           name.view().data(), &memory),
      readMemory(memory), kind(InputFile::Kind::anyButFolder),
      path(PelPlatform::fileSystemName(name)) {
}

PelXercesFileSource::PelXercesFileSource(const PelString& base, const PelString& name,
                                         PelXercesReadMemory& memory)
    : LocalFileInputSource(base.view().data(), name.view().data(), &memory), readMemory(memory),
      kind(InputFile::Kind::regularFile), path(PelPlatform::fileSystemName(getSystemId())) {
}

bool PelXercesFileSource::isReadable() const {
    return InputFile(path, kind).isOpen();
}

bool PelXercesFileSource::load() {
    constexpr std::size_t begin = 4096;
    size = PelPlatform::regularFileSize(path);
    if (size == 0)
        return false;
    InputFile file(path, InputFile::Kind::regularFile);
    std::unique_ptr<XMLByte[]> loaded(new XMLByte[size + 1]); // more than there is shows its end
    long count = file.isOpen() ? file.read(loaded.get(), std::min(size, begin)) : -1;
    if (count < 0 || !PelPlainScanner::mayBePlain(loaded.get(), static_cast<std::size_t>(count)))
        return false;
    const auto first = static_cast<std::size_t>(count);
    count = file.read(loaded.get() + first, size + 1 - first);
    if (count < 0 || first + static_cast<std::size_t>(count) > size)
        return false;
    size = first + static_cast<std::size_t>(count);
    bytes = std::move(loaded);
    return true;
}

xercesc::BinInputStream* PelXercesFileSource::makeStream() const {
    PelXercesReadLimits& limits = readMemory.getLimits();
    std::unique_ptr<xercesc::BinInputStream> stream;
    if (bytes) {
        stream.reset(new (&readMemory)
                         LoadedStream(bytes.get(), size, isOpenedAgain(limits, path), limits));
    } else {
        auto* const file = new (&readMemory) FileStream(path, kind, limits);
        stream.reset(file);
        if (!file->isOpen()) {
            readMemory.getEntities().setFailure(getSystemId(),
                                                PelPlatform::whyUnreadable(path, kind));
            return nullptr;
        }
    }
    return new (&readMemory)
        PelXercesCheckedStream(readMemory.getStreams(), std::move(stream), getEncoding());
}
