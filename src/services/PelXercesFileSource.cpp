// SPDX-License-Identifier: MIT
#include "services/PelXercesFileSource.h"

#include "core/PelPlatform.h"

#include <xercesc/util/BinFileInputStream.hpp>

#include <filesystem>
#include <memory>
#include <system_error>

using xercesc::BinFileInputStream;

// What a document's relative names are resolved against is the full path; what is opened is the
// caller's own name, so that ".." means what it means to the file system.
PelXercesFileSource::PelXercesFileSource(const PelString& name)
    : LocalFileInputSource((PelPlatform::currentDirectory() + u"/").view().data(),
                           name.view().data()),
      path(PelPlatform::fileSystemName(name)) {
}

PelXercesFileSource::PelXercesFileSource(const PelString& base, const PelString& name)
    : LocalFileInputSource(base.view().data(), name.view().data()),
      path(PelPlatform::fileSystemName(getSystemId())) {
}

xercesc::BinInputStream* PelXercesFileSource::makeStream() const {
    // The engine would open a folder, fail to read it and lose some memory over that.
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored))
        return nullptr;
    auto stream = std::unique_ptr<BinFileInputStream>(
        new (getMemoryManager()) BinFileInputStream(path.c_str(), getMemoryManager()));
    return stream->getIsOpen() ? stream.release() : nullptr;
}
