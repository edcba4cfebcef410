#include "kestry/kit/text.hpp"

#include "columns.hpp"

#include <utf8proc.h>

namespace kestry::kit {

std::size_t display_width(std::string_view text) noexcept
{
    detail::column_counter counter;
    counter.add(text);
    return counter.columns();
}

char const* unicode_version() noexcept { return utf8proc_unicode_version(); }

} // namespace kestry::kit
