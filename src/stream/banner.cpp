#include "kestry/hueline_stream.hpp"

#include <ostream>

namespace kestry::Hueline {

namespace {

char const* const release = HUELINE_RELEASE;

// Wipes the line that an animation leaves behind.
std::ostream& wipe_line(std::ostream& os) { return os << csi::cr << csi::el{0}; }

} // namespace

std::ostream& build_version_short(std::ostream& os) { return os << "Hueline ver. " << white << release; }

std::ostream& build_version(std::ostream& os)
{
    os << push << reset << green;
    os << "Kestry Hueline Library (Hueline)" << std::endl;
    os << thin << "hueline version " << release << " <hueline@kestry.example>" << std::endl;
    os << dark << "Copyright (C) 2026 Kestry. All rights reserved." << std::endl;
    os << bright << green << build_version_short << std::endl << std::endl;

    os << test_pattern_supported_m_codes;
    os << test_pattern_status_line << wipe_line;
    os << test_pattern_progress_line << wipe_line;

    os << bold << lite << test_pattern_matrix;
    os << bold << dark << test_pattern_matrix;
    os << thin << lite << test_pattern_matrix;
    os << thin << dark << test_pattern_matrix;
    os << italic << test_pattern_matrix;
    os << underline << test_pattern_matrix;
    os << blink << test_pattern_matrix;
    os << reset << test_pattern_matrix;

    os << test_pattern_greyscale << test_pattern_rgb << test_pattern_256bit;
    return os << pull;
}

} // namespace kestry::Hueline
