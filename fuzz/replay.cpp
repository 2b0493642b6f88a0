// SPDX-License-Identifier: MIT
// Gives the files named, those in the folders named, and as many inputs made by chance as a number says
// (the same each time) to a fuzz target one by one.
#include "support.h"

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

namespace {

void giveInputsByChance(unsigned long count) {
    for (unsigned long i = 0; i < count; ++i) {
        std::mt19937 random(static_cast<unsigned>(i));
        std::vector<unsigned char> bytes(random() % 4096);
        for (unsigned char& byte : bytes) byte = static_cast<unsigned char>(random());
        std::cout << i << std::endl; // before the run, which may be its last
        LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    }
}

} // namespace

int main(int argc, char** argv) {
    namespace fs = std::filesystem;
    std::vector<fs::path> files;
    for (int i = 1; i < argc; ++i) {
        if (const unsigned long count = std::strtoul(argv[i], nullptr, 10); count > 0)
            giveInputsByChance(count);
        else if (!fs::is_directory(argv[i]))
            files.emplace_back(argv[i]);
        else
            for (const auto& entry : fs::recursive_directory_iterator(argv[i]))
                if (entry.is_regular_file()) files.push_back(entry.path());
    }
    for (const fs::path& file : files) {
        std::ifstream stream(file, std::ios::binary);
        if (!stream) {
            std::cerr << "cannot read " << file << "\n";
            return 1;
        }
        std::cout << file.string() << std::endl; // before the run, which may be its last
        const std::string bytes = (std::ostringstream() << stream.rdbuf()).str();
        LLVMFuzzerTestOneInput(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
    }
    std::cout << files.size() << " inputs\n";
    return files.empty() ? 1 : 0;
}
