#include "kestry/kit/text.hpp"

#include "ascii.hpp"
#include "escape_machine.hpp"

#include <utility>

namespace kestry::kit {

std::string strip_escapes(std::string_view text)
{
    escape_stripper stripper;
    std::string result = stripper.strip(text);
    result += stripper.finish();
    return result;
}

std::string escape_stripper::strip(std::string_view piece)
{
    std::string result;
    if (partial.empty()) {
        strip(piece, result, more::may_follow);
    } else { // a character that the last piece has begun
        partial += piece;
        strip(std::exchange(partial, {}), result, more::may_follow);
    }
    return result;
}

std::string escape_stripper::finish()
{
    std::string result;
    strip(std::exchange(partial, {}), result, more::never);
    *this = {};
    return result;
}

void escape_stripper::strip(std::string_view text, std::string& result, more after)
{
    using effect = detail::escape_machine::effect;

    result.reserve(text.size());
    detail::escape_machine machine(static_cast<detail::escape_machine::state>(state), held.size());
    std::size_t kept = 0; // up to here the text is dealt with
    std::size_t at = 0;
    auto const drop_to = [&](std::size_t end) {
        result += text.substr(kept, at - kept);
        kept = end;
    };
    while (at < text.size()) {
        if (machine.current() == detail::escape_machine::state::ground) {
            at += detail::ascii_text(text.substr(at));
            if (at == text.size()) {
                break;
            }
        }
        detail::character const next = detail::decode(text.substr(at));
        if (next.is == detail::character::state::cut_off && after == more::may_follow) {
            partial = text.substr(at);
            break;
        }
        bool const was_in_string = machine.is_in_string();
        switch (machine.step(next)) {
        case effect::text:
            held.clear();
            break;
        case effect::execute:
            break;
        case effect::part:
            if (was_in_string) {
                held += text.substr(at, next.size);
            }
            drop_to(at + next.size);
            break;
        case effect::begin:
        case effect::whole:
        case effect::end:
            held.clear();
            drop_to(at + next.size);
            break;
        case effect::give_up:
            result += std::exchange(held, {});
            break;
        }
        at += next.size;
    }
    result += text.substr(kept, at - kept);
    state = static_cast<unsigned char>(machine.current());
}

} // namespace kestry::kit
