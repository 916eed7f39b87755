#include "tools/messages/Messages.h"
#include "tools/midisetup/CommandLine.h"

int main(int argc, char** argv) {
    UseLanguageOfUser();
    return MidiSetup::RunCommandLine({argv + 1, argv + argc});
}
