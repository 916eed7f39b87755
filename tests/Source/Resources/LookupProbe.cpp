#include "Diagnostics/Failure.h"
#include "Resources/LocalizedStrings.h"

#include <cstdio>

void Log(const char*, ...) {}

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
