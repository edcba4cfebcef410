/// \file
/// The names in the tables of docs/coming-from.md, as coming_from.awk finds them.
#pragma once

#include "support/testing.hpp"

namespace hueline::test {

/// Something that stands beside the escape string that it writes.
struct Name {
    std::string bytes; ///< In the notation of readable().
    void (*insert)(std::ostream& os);
};

std::vector<Name> stream_names();
std::vector<Name> classic_names();
std::vector<Name> kit_names();

/// \name All names
/// Insert every name of the tables; those of the kit are only evaluated.
/// \{
void insert_stream_names(std::ostream& os);
void insert_classic_names(std::ostream& os);
void insert_kit_names(std::ostream& os);
/// \}

} // namespace hueline::test
