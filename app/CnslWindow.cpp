#include "app/CnslWindow.h"

#include "Commands/ChainOfCommand.h"
#include "Resources/LocalizedStrings.h"
#include "UI/DrawingContext.h"
#include "UI/KeyCodes.h"

#include "app/CBasicApp.h"
#include "app/CnslView.h"
#include "app/Look.h"

using namespace Kestrin;

CnslWindow::CnslWindow(CBasicApp* app)
    : RequestHandler(app)
    , fApp(app) {}

CnslWindow::~CnslWindow() {
    fConsole.reset();
    RemoveFromSuperview();
    Window::DestroyWindow(fWindow);
}

void CnslWindow::Open() {
    if (fWindow == nullptr) {
        fWindow =
            Window::Create(*this, LookupString("Velt Sorvex Mackie Control Surface Settings"),
                           static_cast<unsigned int>(kWindowSize.width),
                           static_cast<unsigned int>(kWindowSize.height), Window::kMiniaturizable);
        PlaceInView(fWindow->GetRootView(), 0, 0);
        SetDimensions(kWindowSize);
        fConsole = std::make_unique<CnslView>(fApp, this);
        fConsole->Init();
        ShowHide(true);
        fWindow->ShowHide(true);
    }
    fWindow->Activate();
}

void CnslWindow::Close() {
    if (fWindow != nullptr) {
        fConsole.reset();
        RemoveFromSuperview();
        Window::DestroyWindow(fWindow);
    }
    fWindow = nullptr;
    fApp->Quit();
}

void CnslWindow::WindowClosedNotification(Window*) {
    Close();
}

void CnslWindow::WindowActivationChanged(Window*, bool) {
    ChainOfCommand::Instance()->SetGopher(this);
}

bool CnslWindow::DoTextInput(const UString&, unsigned int, unsigned char key) {
    if (fConsole == nullptr)
        return false;
    if (key == kKeyReturn || key == kKeyEnter)
        fConsole->Handle(kCommandOk);
    else if (key == kKeyEscape)
        fConsole->Handle(kCommandCancel);
    else
        return false;
    return true;
}

void CnslWindow::DoDraw(DrawingContext& context) {
    context.FillRect(GetLocalRect(), kContentBG);
}

bool CnslWindow::CanHandle(const CommandSpecifier&) {
    return false;
}

bool CnslWindow::HandleCommand(const CommandSpecifier&) {
    return false;
}
