// SPDX-License-Identifier: MIT
#pragma once

#include <qrndom/PelString.h>

#include <xercesc/framework/LocalFileInputSource.hpp>

#include <string>

/// A local file as the parser reads it. Unlike the engine's own source, it finds its file by the
/// UTF-8 form of the name, whatever converter the process has set for the engine.
class PelXercesFileSource final : public xercesc::LocalFileInputSource {
public:
    /// The file that a caller names, relative to the current directory.
    explicit PelXercesFileSource(const PelString& name);

    /// The file that a document names, relative to the entity with the system identifier `base`.
    PelXercesFileSource(const PelString& base, const PelString& name);

    /// Null when the file cannot be opened.
    xercesc::BinInputStream* makeStream() const override;

private:
    std::string path;
};
