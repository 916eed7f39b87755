#include "Diagnostics/Failure.h"
#include "Resources/LocalizedStrings.h"

#include "app/CBasicApp.h"

#include <iostream>
#include <string_view>

/// The program reports nothing of the framework's own affairs.
void Log(const char*, ...) {}

namespace {

/// What the command line asks for in place of the window, or nothing. The toolkit reads the rest.
std::string TextFor(int count, char** arguments) {
    for (int i = 1; i < count; ++i) {
        const std::string_view argument = arguments[i];
        if (argument == "--version")
            return "sorvex-mackie-setup " PROGRAM_VERSION "\n";
        if (argument == "--help" || argument == "-h")
            return Kestrin::LookupString("Usage: sorvex-mackie-setup [--help | --version]\n\n"
                                         "Opens a window in which you give each control surface "
                                         "its group and its position.\n")
                .utf8_str();
    }
    return {};
}

} // namespace

int main(int count, char** arguments) {
    try {
        const std::string text = TextFor(count, arguments);
        if (!text.empty()) {
            std::cout << text;
            return 0;
        }
        CBasicApp app{Kestrin::Application::PlatformParameters()};
        app.Run();
    } catch (...) {
        Log("Caught exception!");
    }
    return 0;
}
