// SPDX-License-Identifier: MIT
#include "read/input/PelXercesSource.h"

#include "read/input/PelXercesCheckedStream.h"
#include "read/input/PelXercesReadMemory.h"
#include "read/scan/PelPlainScanner.h"

#include <xercesc/framework/LocalFileInputSource.hpp>
#include <xercesc/util/BinMemInputStream.hpp>
#include <xercesc/util/XMLExceptMsgs.hpp>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

using InputFile = PelPlatform::InputFile;

namespace {

class FileStream final : public xercesc::BinInputStream {
public:
    FileStream(const PelXercesFile& named, PelXercesReadLimits& readLimits, bool isReadAgain)
        : file(named.path, named.kind), limits(readLimits), isAgain(isReadAgain) {}

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
    const bool isAgain;
    XMLFilePos position = 0;
};

PelXercesSource::Stream openBytes(PelXercesReadMemory& memory, const void* bytes,
                                  std::size_t size) {
    using xercesc::BinMemInputStream;
    memory.getLimits().addInput(size);
    return PelXercesSource::Stream(new (&memory) BinMemInputStream(
        static_cast<const XMLByte*>(bytes), size, BinMemInputStream::BufOpt_Reference, &memory));
}

PelXercesSource::Stream openFile(PelXercesReadMemory& memory, const PelXercesFile& file) {
    std::error_code ignored;
    const bool isAgain =
        memory.getLimits().opensAgain(std::filesystem::canonical(file.path, ignored).string());
    if (file.bytes)
        return openBytes(memory, file.bytes.get(), file.size);
    std::unique_ptr<FileStream> stream(new (&memory) FileStream(file, memory.getLimits(), isAgain));
    if (stream->isOpen())
        return stream;
    memory.getEntities().setFailure(file.id, PelPlatform::whyUnreadable(file.path, file.kind));
    return nullptr;
}

PelString fullPath(const PelString& base, const PelString& name, PelXercesReadMemory& memory) {
    return xercesc::LocalFileInputSource(base.view().data(), name.view().data(), &memory)
        .getSystemId();
}

} // namespace

// What a document's relative names are resolved against is the full path; what is opened is the
// caller's own name, so that ".." means what it means to the file system.
PelXercesFile::PelXercesFile(const PelString& name, PelXercesReadMemory& memory)
    : id(fullPath(PelPlatform::currentDirectory() + u"/", name, memory)),
      kind(InputFile::Kind::anyButFolder), path(PelPlatform::fileSystemName(name)) {
}

PelXercesFile::PelXercesFile(const PelString& base, const PelString& name,
                             PelXercesReadMemory& memory)
    : id(fullPath(base, name, memory)), kind(InputFile::Kind::regularFile),
      path(PelPlatform::fileSystemName(id)) {
}

bool PelXercesFile::isReadable() const {
    return InputFile(path, kind).isOpen();
}

bool PelXercesFile::load(bool isWantedAnyhow) {
    constexpr std::size_t begin = 4096;
    size = PelPlatform::regularFileSize(path);
    if (size == 0)
        return false;
    InputFile file(path, InputFile::Kind::regularFile);
    std::shared_ptr<XMLByte[]> loaded(new XMLByte[size + 1]); // more than there is shows its end
    long count = file.isOpen() ? file.read(loaded.get(), std::min(size, begin)) : -1;
    if (count < 0 || !(isWantedAnyhow ||
                       PelPlainScanner::mayBePlain(loaded.get(), static_cast<std::size_t>(count))))
        return false;
    const auto first = static_cast<std::size_t>(count);
    count = file.read(loaded.get() + first, size + 1 - first);
    if (count < 0 || first + static_cast<std::size_t>(count) > size)
        return false;
    size = first + static_cast<std::size_t>(count);
    bytes = std::move(loaded);
    return true;
}

PelXercesSource::PelXercesSource(PelXercesReadMemory& memory, const PelString& id,
                                 const void* bytes, std::size_t size)
    : PelXercesSource(memory, id, [=] { return openBytes(readMemory, bytes, size); }) {
}

PelXercesSource::PelXercesSource(PelXercesReadMemory& memory, const PelXercesFile& file)
    : PelXercesSource(memory, file.id, [this, file] { return openFile(readMemory, file); }) {
}

PelXercesSource::PelXercesSource(PelXercesReadMemory& memory, const PelString& id,
                                 std::function<Stream()> open)
    : InputSource(id.view().data(), &memory), readMemory(memory), openStream(std::move(open)) {
}

xercesc::BinInputStream* PelXercesSource::makeStream() const {
    Stream stream = openStream();
    if (!stream)
        return nullptr;
    const XMLCh* const encoding = getEncoding() != nullptr ? getEncoding() : stream->getEncoding();
    return new (&readMemory)
        PelXercesCheckedStream(readMemory.getStreams(), std::move(stream), encoding);
}
