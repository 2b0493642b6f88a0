// SPDX-License-Identifier: MIT
#pragma once

/// The engine's start and stop.
///
/// The engine counts its starts without a lock and falls to pieces under live trees when the count
/// reaches zero, so every tree and every read holds a share that keeps it up. Any thread may take
/// and drop shares.
class PelXercesEngine {
public:
    /// One start of the engine; lets the engine's exceptions through.
    static void start();

    /// One stop of the engine. While shares are held, a stop that no start stands for does not take
    /// the engine away from them.
    static void stop();

    /// Keeps the engine up while it lives.
    class Share {
    public:
        /// Starts the engine if nothing else has; lets the engine's exceptions through.
        Share();
        Share(const Share& other) noexcept;
        Share& operator=(const Share&) = delete;
        ~Share();
    };
};
