/// \file
/// What catches the output of a part of the tour, on its way to the terminal or instead.
#pragma once

#include <kestry/kit/progress.hpp>

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <streambuf>
#include <string>
#include <string_view>

namespace demo {

/// Puts blanks to the left of every row.
class Margin {
public:
    explicit Margin(std::size_t columns) : blanks(columns, ' ') {}

    /// Returns the text with them. It may come in pieces.
    std::string apply(std::string_view text);

private:
    std::string const blanks;
    bool at_start = true;
};

/// Takes the place of the buffer of std::cout as long as it lives, and holds what is written.
class Capture : public std::streambuf {
public:
    Capture();
    ~Capture() override;
    Capture(Capture const&) = delete;
    Capture& operator=(Capture const&) = delete;

    /// What has been held.
    std::string const& text() const { return held; }

protected:
    int_type overflow(int_type c) override;
    std::streamsize xsputn(char const* bytes, std::streamsize n) override;

    std::streambuf* const before;
    std::string held;
};

/// A Capture that passes on at each flush what it holds, with a margin, and calls a function after that.
class LiveCapture final : public Capture {
public:
    LiveCapture(std::size_t margin_columns, std::function<void()> after_flush);

protected:
    int sync() override;

private:
    Margin margin;
    std::function<void()> const after;
};

/// Standard output as a terminal of live bars, with a margin.
class BarsOnScreen final : public kestry::kit::progress::draw_target {
public:
    explicit BarsOnScreen(std::size_t margin_columns) : columns(margin_columns), margin(margin_columns) {}

    std::chrono::steady_clock::time_point now() override { return std::chrono::steady_clock::now(); }
    extent size() override;
    bool takes_a_frame() override;
    bool in_foreground() override;
    bool write(std::string_view bytes) override;

private:
    std::size_t const columns; // of the margin
    Margin margin;
};

/// Where bars do not move: they leave their last state alone, and no time passes but what is let pass.
class BarsInText final : public kestry::kit::progress::draw_target {
public:
    std::chrono::steady_clock::time_point now() override { return time; }
    extent size() override { return {}; }
    bool takes_a_frame() override { return true; }
    bool in_foreground() override { return true; }
    bool write(std::string_view bytes) override;

    std::chrono::steady_clock::time_point time = {};
};

} // namespace demo
