// A program that prints what its application is told and ends when it has started.

#include "Diagnostics/Failure.h"

#include "App/Application.h"

#include <cstdio>

void Log(const char*, ...) {}

namespace {

class PrintingApplication : public Kestrin::Application {
public:
    PrintingApplication()
        : Application({}, UString("Start", UString::kASCII)) {}

    void OpenApplication() override { std::puts("open"); }
    void FinishedLaunching() override {
        std::puts("launched");
        Quit();
    }
};

} // namespace

int main() {
    PrintingApplication application;
    application.Run();
    std::printf("%g\n", 0.5);
}
