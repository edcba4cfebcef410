/// \file
/// A terminal for progress on which no time passes by itself.
#pragma once

#include "kestry/kit/progress.hpp"

#include "support/screen.hpp"
#include "support/testing.hpp"

namespace hueline::test {

class FakeTerminal final : public kestry::kit::progress::draw_target {
public:
    std::chrono::steady_clock::time_point now() override { return time; }
    extent size() override { return room; }
    bool takes_a_frame() override { return !busy; }
    bool in_foreground() override { return foreground; }
    bool write(std::string_view bytes) override
    {
        if (!works) {
            return false;
        }
        ++writes;
        fresh += bytes;
        all += bytes;
        return true;
    }

    /// What was written since it was last asked.
    std::string taken() { return std::exchange(fresh, {}); }

    Screen screen() const { return Screen(all, room.rows, room.columns); }

    std::chrono::steady_clock::time_point time = {};
    extent room = {80, 24};
    bool busy = false;
    bool foreground = true;
    bool works = true;
    int writes = 0;
    std::string all = {};

private:
    std::string fresh = {};
};

} // namespace hueline::test
