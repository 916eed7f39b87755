// A window of the framework with one text, for bench/start.

#include "Diagnostics/Failure.h"
#include "UI/DrawingContext.h"
#include "UI/View.h"
#include "UI/Window.h"

#include "App/Application.h"

void Log(const char*, ...) {}

using namespace Kestrin;

namespace {

constexpr RGBAColor kBackground{0.1f, 0.1f, 0.1f, 1};
constexpr RGBAColor kText{1, 1, 0, 1}; // a colour that no title bar has

UString Text(const char* text) {
    return UString(text, UString::kASCII);
}

struct Label : View {
    void DoDraw(DrawingContext& context) override {
        context.FillRect(GetLocalRect(), kBackground);
        context.SetupFont(kFontPlain, 14, kText);
        context.DrawString(Text("The first text"), GetLocalRect(), kTextAlignCenter);
    }
};

class WindowApplication : public Application, public Window::WindowEventClient {
public:
    WindowApplication()
        : Application({}, Text("Start")) {
        fLabel.PlaceInView(fWindow->GetRootView(), 0, 0);
        fLabel.SetDimensions(560, 200);
        fWindow->Activate();
    }
    ~WindowApplication() override { Window::DestroyWindow(fWindow); }

    void WindowClosedNotification(Window*) override { Quit(); }
    void WindowActivationChanged(Window*, bool) override {}

private:
    Window* fWindow = Window::Create(*this, Text("Start"), 560, 200, 0);
    Label fLabel;
};

} // namespace

int main() {
    WindowApplication application;
    application.Run();
}
