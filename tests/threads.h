// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <thread>
#include <vector>

/// Runs the work in four threads at once, each with its number.
inline void inFourThreads(const std::function<void(std::size_t)>& work) {
    std::vector<std::thread> threads;
    for (std::size_t number = 0; number < 4; ++number)
        threads.emplace_back(work, number);
    for (std::thread& thread : threads)
        thread.join();
}
