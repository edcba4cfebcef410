/// \file
/// Follows a program of steps in a fresh process, and compares what was seen there with what a model
/// says.
#pragma once

#include "model/step.hpp"

#include "support/process.hpp"

#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace hueline::test {

/// What was seen after one step.
struct Seen {
    std::string out; ///< Bytes that reached standard output in this step.
    std::string err; ///< Bytes that reached standard error.
    Facts facts;
};

std::ostream& operator<<(std::ostream& os, Sinks sinks);

/// Whatever follows steps in a process of its own.
class Subject {
public:
    Subject() = default;
    Subject(Subject const&) = delete;
    Subject& operator=(Subject const&) = delete;
    virtual ~Subject() = default;

    virtual Facts perform(Step const& step) = 0;
};

/// Makes a subject in a forked child and has it follow the steps. Less is returned than there are steps
/// if the child ended early; why stands in the last one's facts.
std::vector<Seen> in_a_child(Sinks sinks, std::vector<Step> const& steps,
                             std::function<std::unique_ptr<Subject>()> const& make);

/// The first step after which the two differ, and in what; empty if there is none.
std::string difference(Sinks sinks, std::vector<Step> const& steps, std::vector<Seen> const& expected,
                       std::vector<Seen> const& got);

} // namespace hueline::test
