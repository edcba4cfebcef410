// Programs of the whole string interface: colorizer objects and dumps that come and go in any
// order, the switches, and every function that returns a string.

#include "kestry/hueline_classic.hpp"

#include "program.hpp"

#include "model/classic_library.hpp"
#include "model/classic_model.hpp"

namespace {

using namespace hueline::fuzz;
using hueline::test::ClassicLibrary;
using hueline::test::ClassicOperation;
using hueline::test::operations_of_a_program;

// Has seen the switches before any program; never destroyed.
kestry::Hueline const* const at_load = new kestry::Hueline;

// Leaves everything as at load.
class Library : public ClassicLibrary {
public:
    ~Library()
    {
        program.objects.clear();
        // A copy puts back the switch as its original found it.
        static_cast<void>(kestry::Hueline(*at_load));
        kestry::Hueline::setNoFrillsMode(false);
        kestry::HexDump::_longDumps = false;
        std::locale::global(std::locale::classic());
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    Input input(data, size);
    hueline::test::ClassicModel model;
    Library library;
    std::vector<Step> program;
    while (!input.is_empty() && program.size() < 100) {
        ClassicOperation const* const operation = operation_numbered(input.byte(), operations_of_a_program());
        if (operation == nullptr) {
            continue;
        }
        Step const step = read_step(input, *operation);
        program.push_back(step);
        compare(program, model.perform(step).facts, library.perform(*operation, step));
    }
    return 0;
}
