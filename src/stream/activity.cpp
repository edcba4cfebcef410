#include "kestry/hueline_stream.hpp"

#include "stream/unformatted.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <ostream>
#include <string_view>
#include <utility>

namespace kestry::Hueline {

namespace {

// One counter turns every spinner of the process.
std::uint32_t spinner_bump = 0;

// The frame that is due, one byte; none of an empty string. Advances the counter either way.
std::string_view next_frame(std::string const& frames)
{
    ++spinner_bump;
    auto const count = static_cast<std::uint32_t>(frames.size());
    return count == 0 ? std::string_view{} : std::string_view{&frames[spinner_bump % count], 1};
}

// Collects the text of a frame, so that a stream without a buffer gets it in one write. A frame that
// is longer than the buffer goes out in pieces. Unformatted: a width that is pending stays so.
class Frame {
public:
    // The buffer is not filled: no more is read from it than was put there.
    // cppcheck-suppress uninitMemberVar
    explicit Frame(std::ostream& stream) : os(stream) {} // NOLINT(cppcoreguidelines-pro-type-member-init)

    void add(std::string_view text)
    {
        if (text.size() > sizeof buffer - size) {
            flush();
        }
        if (text.size() > sizeof buffer) {
            insert(text);
            return;
        }
        size += text.copy(buffer + size, text.size());
    }

    void add(std::string_view text, std::int64_t times)
    {
        if (text.empty()) {
            return;
        }
        for (; times > 0; --times) {
            add(text);
        }
    }

    void flush()
    {
        if (size != 0) {
            insert({buffer, std::exchange(size, 0)});
        }
    }

    // A frame without any text is an empty insertion: as any other, it flushes a tied stream.
    void finish()
    {
        flush();
        if (!inserted) {
            insert("");
        }
    }

private:
    void insert(std::string_view text)
    {
        inserted = true;
        detail::unformatted(os, text);
    }

    std::ostream& os;
    bool inserted = false;
    std::size_t size = 0;
    char buffer[8192];
};

int percentage(progress_meter const& m)
{
    // The width of the bar as int arithmetic has it, without the undefined behaviour of an overflow.
    int const steps = static_cast<int>(static_cast<unsigned>(m.end) - static_cast<unsigned>(m.start));
    // A float at each step; volatile, because the registers of an i387 hold more digits than that.
    auto volatile const position = static_cast<float>(m.position);
    auto volatile const span = static_cast<float>(steps);
    float volatile const quotient = position / span;
    float volatile const product = quotient * 100.0F;
    float const percent = product;
    if (std::isnan(percent)) {
        return 0;
    }
    using Int = std::numeric_limits<int>;
    if (percent >= -static_cast<float>(Int::min())) { // 2^31 as float; INT_MAX is no float
        return Int::max();
    }
    return static_cast<int>(std::max(percent, static_cast<float>(Int::min())));
}

} // namespace

std::ostream& operator<<(std::ostream& os, spinner const& s)
{
    std::string_view const due = next_frame(s.frames); // advances also where the stream then throws
    Frame frame{os};
    frame.add(s.label);
    frame.add(due);
    frame.finish();
    return os;
}

std::ostream& operator<<(std::ostream& os, status_line const& s)
{
    std::int64_t const position = s.position;
    std::int64_t todo = s.end - position;

    Frame frame{os};
    frame.add(s.prefix);
    frame.add(s.done, position - s.start);
    if (s.start < position && position < s.end) {
        frame.add(s.spin_label);
        frame.add(next_frame(s.frames));
        --todo; // the spinner stands in the cell at position
    }
    frame.add(s.todo, todo);
    frame.add(s.suffix);
    frame.finish();
    return os;
}

std::ostream& operator<<(std::ostream& os, progress_meter const& m)
{
    Frame frame{os};
    frame.add(m.lead);
    frame.add(m.label);
    frame.add(" ");
    frame.add(m.before);
    frame.flush();
    os.setf(std::ios_base::dec, std::ios_base::basefield);
    os << percentage(m);
    frame.add("%");
    frame.add(m.after);
    frame.flush();
    return os;
}

} // namespace kestry::Hueline
