#include "Diagnostics/Failure.h"

#include "app/CBasicApp.h"

/// The program reports nothing of the framework's own affairs.
void Log(const char*, ...) {}

int main() {
    try {
        CBasicApp app{Kestrin::Application::PlatformParameters()};
        app.Run();
    } catch (...) {
        Log("Caught exception!");
    }
    return 0;
}
