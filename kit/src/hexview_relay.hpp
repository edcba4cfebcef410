/// \file
/// Text of a hex view that one thread makes and another one writes.
#pragma once

#include "hexview_print.hpp"

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <string>

namespace kestry::kit::detail {

/// Holds one piece of text between the two threads, so that each has something to do.
class relay : public text_sink {
public:
    /// By the thread that makes text: waits until the piece before has been taken.
    bool put(char const* text, std::size_t size) override
    {
        std::unique_lock lock(mutex);
        changed.wait(lock, [this] { return piece.empty() || is_stopped; });
        if (is_stopped) {
            return false;
        }
        piece.assign(text, size);
        changed.notify_all();
        return true;
    }

    /// By the thread that makes text: there is no more.
    void end()
    {
        std::lock_guard const lock(mutex);
        is_ended = true;
        changed.notify_all();
    }

    /// By the thread that writes: waits for the next piece. Returns false if there is none.
    bool take(std::string& text)
    {
        std::unique_lock lock(mutex);
        text.clear();
        changed.wait(lock, [this] { return !piece.empty() || is_ended; });
        text.swap(piece);
        changed.notify_all();
        return !text.empty();
    }

    /// By the thread that writes: no more is wanted.
    void stop()
    {
        std::lock_guard const lock(mutex);
        is_stopped = true;
        changed.notify_all();
    }

private:
    std::mutex mutex;
    std::condition_variable changed;
    std::string piece;
    bool is_ended = false;
    bool is_stopped = false;
};

} // namespace kestry::kit::detail
