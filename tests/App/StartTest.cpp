#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <string>
#include <utility>

namespace {

/// Runs the start program with these words of a command line before and behind it; its status and
/// all that it writes.
std::pair<int, std::string> Start(const std::string& environment, const std::string& arguments) {
    const std::string command = "env " + environment + " " START_PROGRAM " " + arguments + " 2>&1";
    std::FILE* pipe = popen(command.c_str(), "r");
    std::string output;
    for (int c; (c = std::fgetc(pipe)) != EOF;)
        output += static_cast<char>(c);
    return {WEXITSTATUS(pclose(pipe)), output};
}

TEST(Start, HandsFilesAndAddressesOverButNoOptions) {
    using Result = std::pair<int, std::string>;
    EXPECT_EQ(Start("", ""), Result(0, "open\nlaunched\n0.5\n"));
    EXPECT_EQ(Start("", "-style fusion --verbose"), Result(0, "open\nlaunched\n0.5\n"));
    EXPECT_EQ(Start("", "/etc/hosts http://localhost/"), Result(0, "open\nopen\nlaunched\n0.5\n"));
}

TEST(Start, WithoutADisplaySaysWhatToDoAndEnds) {
    for (const char* environment : {"-u QT_QPA_PLATFORM -u DISPLAY -u WAYLAND_DISPLAY",
                                    "-u QT_QPA_PLATFORM -u WAYLAND_DISPLAY DISPLAY=:4711",
                                    "QT_QPA_PLATFORM=no-such-platform"}) {
        const auto [status, output] = Start(environment, "");
        EXPECT_EQ(status, 1) << environment;
        EXPECT_THAT(output, testing::HasSubstr("set DISPLAY or WAYLAND_DISPLAY")) << environment;
    }
}

} // namespace
