#include "tests/fuzz/FuzzedStudio.h"

#include <cstdint>

// The bytes are a document for midisetup import. It is brought in whole or not at all; what the
// studio is then comes back from its own export without a change.

using namespace FuzzedStudio;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    PlugIn(OneUnit());
    Begin(SmallStudio());
    static const std::string before = MidiSetup({"export"}).output;
    const Answer imported = MidiSetup({"import", "-y", "-"}, {bytes, bytes + count});
    const Answer after = MidiSetup({"export"});
    Require(after.exitCode == 0, "the studio can be exported");
    Require(imported.exitCode == 0 || after.output == before, "nothing of a refused document");
    const Answer again = MidiSetup({"import", "-y", "-"}, after.output);
    Require(again.output == "There is nothing to change.\n", "the export changes nothing");
    return 0;
}
