// SPDX-License-Identifier: MIT
//
// Writes hostile documents, and reads a file and says what that took. A process for each, so that
// what the one takes does not show in the other.
//
//     hostile list
//     hostile write SHAPE BYTES FOLDER
//     hostile read FILE          prints: seconds KiB message

#include "hostile_shapes.h"

#include <qrndom/QRNDOM.h>

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <sys/resource.h>

namespace {

void list() {
    for (const HostileShape& shape : hostileShapes())
        std::cout << shape.name << "\n";
}

void write(const std::string& name, std::size_t bytes, const std::filesystem::path& folder) {
    const auto& shapes = hostileShapes();
    const auto found = std::find_if(shapes.begin(), shapes.end(),
                                    [&](const HostileShape& shape) { return shape.name == name; });
    if (found == shapes.end())
        throw std::runtime_error("no shape " + name);
    std::filesystem::create_directories(folder);
    for (const auto& [file, text] : found->make(bytes))
        if (!(std::ofstream(folder / file, std::ios::binary) << text).flush())
            throw std::runtime_error("cannot write " + file);
}

// The clock starts before the process's own start shows: all of it counts.
void read(const char* file) {
    PelDOMUtilites& services = *PelDOMUtilites::getUtilities(PelDOM::PLATFORM_XERCES);
    services.init();
    const bool isRead = services.readDocument(file).isNull() == 0;
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
    };
    std::cout << seconds(usage.ru_utime) + seconds(usage.ru_stime) << " " << usage.ru_maxrss << " "
              << (isRead ? "a document" : PelDOMUtilites::getLastReadMessage().toUtf8()) << "\n";
}

} // namespace

int main(int argc, char** argv) try {
    const std::string what = argc > 1 ? argv[1] : "";
    if (what == "list" && argc == 2)
        list();
    else if (what == "write" && argc == 5)
        write(argv[2], std::stoul(argv[3]), argv[4]);
    else if (what == "read" && argc == 3)
        read(argv[2]);
    else
        throw std::runtime_error("hostile list | write SHAPE BYTES FOLDER | read FILE");
    return 0;
} catch (const std::exception& failure) {
    std::cerr << failure.what() << "\n";
    return 2;
}
