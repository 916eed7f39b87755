#include "Diagnostics/Failure.h"
#include "Resources/LocalizedStrings.h"

#include <cstdio>
#include <cstdlib>

void Log(const char*, ...) {}

namespace {

/// A text at namespace scope, which is made before much of the library is.
[[maybe_unused]] const UString kEarlyText =
    std::getenv("EARLY") != nullptr ? Kestrin::LookupString("Greeting") : UString();

} // namespace

/// Prints the localized text of each argument on a line, or "-50" for what cannot be looked up.
int main(int count, char** arguments) {
    for (int i = 1; i < count; ++i) {
        try {
            std::puts(Kestrin::LookupString(arguments[i]).utf8_str().c_str());
        } catch (int fault) {
            std::printf("%d\n", fault);
        }
    }
}
