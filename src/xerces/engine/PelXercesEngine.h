// SPDX-License-Identifier: MIT
#pragma once

#include <qrndom/PelString.h>

/// The engine's start and stop.
///
/// The engine counts its starts without a lock and falls to pieces under live trees when the count
/// reaches zero, so every tree and every read holds a share that keeps it up. Any thread may take
/// and drop shares.
class PelXercesEngine {
public:
    /// One start of the engine. False when it cannot be started: memory is short, or an earlier
    /// start has left it half built. Lets the exceptions of the engine's own start through.
    static bool start();

    /// One stop of the engine. A stop that no start stands for does not take the engine away from
    /// shares, nor from a program that has started it by itself.
    static void stop();

    /// The engine's release and how it is used, as one line for people. Starts it for as long as
    /// the call takes.
    static PelString describe();

    /// Keeps the engine up while it lives.
    class Share {
    public:
        /// Starts the engine if no other share has. Throws PelXercesOutOfMemory where it cannot be
        /// started, and lets the engine's exceptions through.
        Share();
        Share(const Share& other) noexcept;
        Share& operator=(const Share&) = delete;
        ~Share();
    };
};
