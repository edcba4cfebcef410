#include "recording.hpp"

#include "files.hpp"
#include "scenes.hpp"
#include "support/process.hpp"

#include <algorithm>
#include <functional>
#include <stdexcept>

namespace hueline::pictures {

namespace {

using test::Launch;
using test::on_pipes;
using test::on_terminals;
using test::Outcome;
using test::Sinks;
using test::sixteen_colors;

// Standard output first: of the programs that are drawn, one writes to both, in this order.
std::string all_output(std::string const& name, Outcome const& run, int status = 0)
{
    if (run.status != status) {
        throw std::runtime_error(name + " failed: " + run.report + run.err);
    }
    return run.out + run.err;
}

// ---------------------------------------------------------------------------------------------
// Scenes
// ---------------------------------------------------------------------------------------------

// The body of a function, as it is in the source.
std::string body_of(std::string const& function, std::string const& source)
{
    std::string const head = "\nvoid " + function + "()\n{\n";
    std::size_t const start = source.find(head);
    std::size_t const end = start == std::string::npos ? start : source.find("\n}\n", start);
    if (end == std::string::npos) {
        throw std::runtime_error("the sources have no function " + function);
    }
    std::string body;
    for (std::string const& line : lines_of(source.substr(start + head.size(), end + 1 - start - head.size()))) {
        body += line.substr(std::min<std::size_t>(line.size(), 4)) + '\n';
    }
    return body;
}

// Of the picture of a function: "true-colour" for true_color.
std::string file_name_of(std::string name)
{
    std::replace(name.begin(), name.end(), '_', '-');
    std::size_t const color = name.find("color");
    return color == std::string::npos ? name : name.replace(color, 5, "colour");
}

void record(std::vector<Scene> const& scenes, std::string const& source, std::function<void(Scene const&)> const& draw,
            std::vector<Recording>& recordings)
{
    for (Scene const& scene : scenes) {
        auto const body = [&] { draw(scene); };
        recordings.push_back({
            .name = file_name_of(scene.name),
            .title = scene.title,
            .code = body_of(scene.name, source),
            .language = "cpp",
            .terminal = all_output(scene.name, run_with(on_terminals, body)),
            .pipe = all_output(scene.name, run_with(on_pipes, body)),
            .frame_ms = scene.frame_ms,
            .cols = scene.cols,
            .rows = scene.rows,
        });
    }
}

// ---------------------------------------------------------------------------------------------
// Programs
// ---------------------------------------------------------------------------------------------

struct Program {
    std::string name;
    std::string title;
    std::vector<std::string> argv;
    std::string command; // as a person types it
    std::string input = {};
    int status = 0;
    int frame_ms = 0;
    int cols = 80;
};

std::vector<Program> programs()
{
    std::string const sources = SOURCES;
    std::string const capture = sources + "/examples/frame_monitor.capture";
    std::string const examples = EXAMPLES;
    return {
        {.name = "example-colour-policy",
         .title = "What was decided for each standard stream, and why, in green",
         .argv = {examples + "/colour_policy"},
         .command = "colour_policy"},
        {.name = "example-frame-monitor",
         .title = "Frames in hexadecimal, and damaged ones in red",
         .argv = {examples + "/frame_monitor", capture},
         .command = "frame_monitor frame_monitor.capture",
         .status = 1,
         .cols = 100},
        {.name = "example-hexview",
         .title = "Offsets, bytes and text of a file, in a colour for each kind of byte",
         .argv = {examples + "/hexview", capture},
         .command = "hexview frame_monitor.capture"},
        {.name = "example-logger",
         .title = "Log lines, each in the colour of its level",
         .argv = {examples + "/logger"},
         .command = "logger <logger.input",
         .input = contents_of(sources + "/examples/logger.input")},
        {.name = "demo-themes",
         .title = "Both forms of all themes, role by role",
         .argv = {DEMO, "themes"},
         .command = "hueline-demo themes"},
    };
}

void record(std::vector<Program> const& listed, std::vector<Recording>& recordings)
{
    for (Program const& program : listed) {
        Launch launch = {.input = program.input, .environment = sixteen_colors};
        launch.environment.insert(launch.environment.end(), {"LC_ALL=C", "LD_PRELOAD=" CLOCKS});
        auto const output_on = [&](Sinks sinks) {
            return all_output(program.name, run_program(sinks, program.argv, launch), program.status);
        };
        recordings.push_back({
            .name = program.name,
            .title = program.title,
            .code = program.command + '\n',
            .language = "sh",
            .terminal = output_on(on_terminals),
            .pipe = output_on(on_pipes),
            .frame_ms = program.frame_ms,
            .cols = program.cols,
        });
    }
}

} // namespace

std::vector<Recording> record_all()
{
    std::string const folder = std::string(SOURCES) + "/docs/pictures";
    std::vector<Recording> recordings;
    auto const draw_stream = [](Scene const& scene) {
        colorize_output();
        scene.draw();
    };
    auto const draw_classic = [](Scene const& scene) { draw_in_color(scene.draw); };
    auto const draw_kit = [](Scene const& scene) {
        static std::vector<std::string> const rich = {"COLORTERM=truecolor"};
        test::change_environment(sixteen_colors);
        test::change_environment(rich);
        scene.draw();
    };
    record(stream_scenes(), contents_of(folder + "/scenes_stream.cpp"), draw_stream, recordings);
    record(string_scenes(), contents_of(folder + "/scenes_classic.cpp"), draw_classic, recordings);
    record(kit_scenes(), contents_of(folder + "/scenes_kit.cpp"), draw_kit, recordings);

    record(programs(), recordings);
    return recordings;
}

std::vector<Recording> record_roles()
{
    auto const stream = [] {
        colorize_output();
        write_stream_roles();
    };
    auto const string = [] { draw_in_color(write_string_roles); };
    return {
        {.name = "stream",
         .title = "The roles of the stream themes",
         .terminal = all_output("stream", run_with(on_terminals, stream))},
        {.name = "string",
         .title = "The roles of the string themes",
         .terminal = all_output("string", run_with(on_terminals, string))},
    };
}

} // namespace hueline::pictures
