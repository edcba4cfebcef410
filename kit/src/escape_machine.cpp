#include "escape_machine.hpp"

namespace kestry::kit::detail {

escape_sequence read_sequence(std::string_view text) noexcept
{
    using effect = escape_machine::effect;
    using state = escape_machine::state;

    escape_machine machine;
    character const introducer = decode(text);
    std::size_t at = introducer.size;
    if (machine.step(introducer) == effect::whole) {
        return {state::escape, true, false, '\0', at, {}};
    }
    escape_sequence found = {machine.current(), false, false, '\0', 0, {}};
    std::size_t body = at;
    while (at < text.size()) {
        character const next = decode(text.substr(at));
        bool const was_in_string = machine.is_in_string();
        bool const was_escape = machine.current() == state::escape;
        effect const what = machine.step(next);
        switch (what) {
        case effect::execute:
            found.has_controls = true;
            break;
        case effect::part:
            if (was_escape && machine.current() != state::escape && machine.current() != state::intermediate) {
                found.kind = machine.current();
                body = at + next.size;
            }
            break;
        case effect::end:
            found.is_complete = true;
            found.final_byte = static_cast<char>(was_in_string ? '\0' : next.code);
            found.body = text.substr(body, at - body);
            found.size = at + next.size;
            return found;
        case effect::begin:
            if (was_in_string && text.substr(at, 2) == "\x1b\\") {
                found.is_complete = true;
                found.body = text.substr(body, at - body);
                found.size = at + 2;
                return found;
            }
            found.size = at;
            return found;
        case effect::text:
        case effect::whole:
            found.size = at;
            return found;
        case effect::give_up:
            found.size = body;
            return found;
        }
        at += next.size;
    }
    found.size = at;
    return found;
}

} // namespace kestry::kit::detail
