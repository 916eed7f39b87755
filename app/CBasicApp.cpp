#include "app/CBasicApp.h"

#include "Commands/ChainOfCommand.h"
#include "Resources/ResourceAccess.h"

#include "app/CnslWindow.h"

using namespace Kestrin;

namespace {

const UString kApplicationName = "Sorvex Mackie Setup"_u;
const UString kIconName = "SorvexMackieSetup"_u;
const UString kIconType = "svg"_u;

} // namespace

CBasicApp::CBasicApp(const Application::PlatformParameters& parameters)
    : Application(parameters, kApplicationName)
    , RequestHandler(nullptr) {
    SetIcon(ResourceAccess::Instance().GetFile(kIconName, kIconType));
    RebuildMenuBar();
    ChainOfCommand::Instance()->SetGopher(this);
    fWindow = std::make_unique<CnslWindow>(this);
    fWindow->Open();
}

CBasicApp::~CBasicApp() = default;

void CBasicApp::FinishedLaunching() {
    RebuildMenuBar();
}

void CBasicApp::Quit() {
    Application::Quit();
}

bool CBasicApp::CanHandle(const CommandSpecifier&) {
    return false;
}

bool CBasicApp::HandleCommand(const CommandSpecifier&) {
    return false;
}
