#include "tests/tools/MidiSetup.h"

#include <sys/wait.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

std::string ReadAll(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

ProgramRun RunProgram(const std::vector<std::string>& arguments, const std::string& input,
                      const std::string& program) {
    const TemporaryFolder folder;
    std::ofstream(folder / "in", std::ios::binary) << input;
    std::string command = "'" + program + "'";
    for (const std::string& argument : arguments)
        command += " '" + argument + "'";
    const std::string files = folder.Path().string();
    command += " <" + files + "/in >" + files + "/out 2>" + files + "/errors";
    const int status = std::system(command.c_str());
    return {WEXITSTATUS(status), ReadAll(folder / "out"), ReadAll(folder / "errors")};
}

std::string MidiSetup::Do(const std::vector<std::string>& arguments, const std::string& input) {
    const ProgramRun run = RunProgram(arguments, input);
    EXPECT_EQ(run.exitCode, 0) << arguments[0] << ": " << run.errors;
    EXPECT_EQ(run.errors, "");
    return run.output;
}

std::string MidiSetup::Refused(const std::vector<std::string>& arguments, int exitCode) {
    const ProgramRun run = RunProgram(arguments);
    EXPECT_EQ(run.exitCode, exitCode) << testing::PrintToString(arguments);
    EXPECT_EQ(run.output, "");
    return run.errors;
}

void MidiSetup::AddBoxAndSurfaces() {
    Do({"add", "interface", "Box", "--ports", "2", "--manufacturer", "Velt"});
    Do({"add", "external", "Desk", "--manufacturer", "Mackie", "--model", "Mackie Control"});
    Do({"add", "external", "Old", "--manufacturer", "Mackie", "--model", "HUI"});
}
