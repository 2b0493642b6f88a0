// SPDX-License-Identifier: MIT
#pragma once

#include <xercesc/parsers/XercesDOMParser.hpp>

class PelXercesReadMemory;

/// The engine's parser, building a tree that is ready to be shared: the tree's memory is that of
/// all trees, while the parser's own goes with the read.
class PelXercesTreeBuilder final : public xercesc::XercesDOMParser {
public:
    explicit PelXercesTreeBuilder(PelXercesReadMemory& memory);

    void startDocument() override;
};
