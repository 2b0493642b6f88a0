// SPDX-License-Identifier: MIT
#include "reading/PelXercesFileSource.h"

#include "reading/PelXercesReadMemory.h"

#include <xercesc/util/BinInputStream.hpp>
#include <xercesc/util/XMLExceptMsgs.hpp>

#include <filesystem>
#include <memory>
#include <system_error>

using InputFile = PelPlatform::InputFile;

namespace {

class FileStream final : public xercesc::BinInputStream {
public:
    FileStream(const std::string& path, InputFile::Kind kind, PelXercesReadLimits& readLimits)
        : file(path, kind), limits(readLimits) {
        std::error_code ignored;
        isAgain = limits.opensAgain(std::filesystem::canonical(path, ignored).string());
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

} // namespace

// What a document's relative names are resolved against is the full path; what is opened is the
// caller's own name, so that ".." means what it means to the file system.
PelXercesFileSource::PelXercesFileSource(const PelString& name, PelXercesReadMemory& memory)
    : LocalFileInputSource((PelPlatform::currentDirectory() + u"/").view().data(),
                           name.view().data(), &memory),
      limits(memory.getLimits()), kind(InputFile::Kind::anyButFolder),
      path(PelPlatform::fileSystemName(name)) {
}

PelXercesFileSource::PelXercesFileSource(const PelString& base, const PelString& name,
                                         PelXercesReadMemory& memory)
    : LocalFileInputSource(base.view().data(), name.view().data(), &memory),
      limits(memory.getLimits()), kind(InputFile::Kind::regularFile),
      path(PelPlatform::fileSystemName(getSystemId())) {
}

xercesc::BinInputStream* PelXercesFileSource::makeStream() const {
    auto stream =
        std::unique_ptr<FileStream>(new (getMemoryManager()) FileStream(path, kind, limits));
    return stream->isOpen() ? stream.release() : nullptr;
}
