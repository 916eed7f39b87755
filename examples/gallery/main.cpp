// The framework by example: an application with one window, views that draw and take events, a
// pop-up menu, a text field and an alert.

#include "Diagnostics/Failure.h"
#include "examples/gallery/GalleryWindow.h"

#include "App/Application.h"

#include <cstdarg>
#include <cstdio>

/// The framework's reports; a program says what becomes of them.
void Log(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::vfprintf(stderr, format, arguments);
    va_end(arguments);
}

int main() {
    Kestrin::Application application({}, "Gallery"_u);
    application.RebuildMenuBar();
    const GalleryWindow window;
    application.Run();
    return 0;
}
