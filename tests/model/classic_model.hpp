/// \file
/// What the string interface does, in the plainest words that a program allows: slow, and
/// without a line in common with the library.
#pragma once

#include "model/comparison.hpp"
#include "model/step.hpp"

#include <sstream>
#include <string>
#include <vector>

namespace hueline::test {

/// A colorizer object or, if it is a dump, an object of the class derived from it.
struct ModelObject {
    bool is_dump = false;
    bool flipped = false;
    bool saved_color = false;
    bool initial_color = false;
    std::string text = "";
};

class ClassicModel {
public:
    /// Follows a step and says what has to be seen after it.
    Seen perform(Step const& step);

private:
    struct Operations;

    void act(Step const& step);

    bool is_using_color() const { return use_color && !no_frills; }
    ModelObject& object(Step const& step);
    void add_object(bool is_dump, std::string const& object_text);
    void destroy_object(Step const& step);
    void flip(ModelObject& flipped);
    void unflip(ModelObject const& unflipped);

    std::string sequence(long long code) const;
    std::string true_color(int a, int r, int g, int b) const;
    std::string vga(int value) const;
    std::string colored(int code, std::string const& decorated) const;
    std::string bright(int code, std::string const& decorated) const;
    std::string byte_dump(std::string const& bytes, std::string const& separator) const;
    std::string raw_data(std::string const& bytes) const;
    std::string now() const;

    bool use_color = false;
    bool no_frills = false;
    bool long_dumps = false;
    int clock = 0; // seconds since 1970
    int zone = 0;  // minutes that the local time is ahead
    std::vector<ModelObject> objects;
    std::ostringstream os;
    std::string result;
};

} // namespace hueline::test
