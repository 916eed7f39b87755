#include "app/CnslView.h"

#include "Resources/LocalizedStrings.h"
#include "Surfaces/SurfaceDiscovery.h"
#include "Surfaces/SurfaceGroups.h"
#include "UI/DrawingContext.h"
#include "UI/MessageBox.h"

#include "app/BtnUI.h"
#include "app/CBasicApp.h"
#include "app/HelpDocument.h"
#include "app/Look.h"
#include "app/MenuUI.h"
#include "app/NumericEditBox.h"

using namespace Kestrin;

namespace {

constexpr Point kMenuOrigin{20, 20};
constexpr Rect kGroupLabel{20, 80, 120, 25};
constexpr Rect kGroupPositionLabel{20, 120, 120, 25};
constexpr Point kGroupOrigin{150, 80};
constexpr Point kGroupPositionOrigin{150, 120};
constexpr float kBoxWidth = 80;
constexpr float kButtonTop = 160;
constexpr float kButtonWidth = 100;

constexpr unsigned int kYesNoQuestion = 4;
constexpr int kAnsweredYes = 1;

} // namespace

CnslView::CnslView(CBasicApp* app, View* parent)
    : fApp(app) {
    BuildControls();
    PlaceInView(parent, kContentRect.x, kContentRect.y);
    SetDimensions(kContentRect.width, kContentRect.height);
    ShowHide(true);
}

CnslView::~CnslView() {
    fOk.reset();
    fCancel.reset();
    fHelp.reset();
    fMenu.reset();
    fGroupPosition.reset();
    fGroup.reset();
}

void CnslView::BuildControls() {
    fMenu = std::make_unique<MenuUI>(this, LookupString("Edit settings for"));
    fMenu->PlaceInView(this, kMenuOrigin);
    fMenu->ShowHide(true);

    fGroup = std::make_unique<NumericEditBox>();
    fGroup->Init(this, kGroupOrigin, kBoxWidth, kFirstGroupSetting, kLastGroupSetting,
                 LookupString("Group"));
    fGroupPosition = std::make_unique<NumericEditBox>();
    fGroupPosition->Init(this, kGroupPositionOrigin, kBoxWidth, kFirstGroupSetting,
                         kLastGroupSetting, LookupString("Group position"));

    AddButton(fHelp, "Help", kCommandHelp, 250);
    AddButton(fCancel, "Cancel", kCommandCancel, 350);
    AddButton(fOk, "Ok", kCommandOk, 450);
}

void CnslView::AddButton(std::unique_ptr<BtnUI>& button, const char* caption, unsigned int command,
                         float x) {
    // Keys: "Help", "Cancel", "Ok"
    button = std::make_unique<BtnUI>(LookupString(caption), this, command, kButtonWidth);
    button->PlaceInView(this, x, kButtonTop);
    button->ShowHide(true);
}

void CnslView::Init() {
    GetAvailableDevices(fSurfaces);
    NormaliseGroupPositions(fSurfaces);
    if (fSurfaces.empty()) {
        OfferHelp();
        return;
    }
    FillMenu();
    SetCurrentSurfaceIndex(0);
}

void CnslView::OfferHelp() {
    const UString question =
        LookupString("No compatible surfaces are installed.\n\nDo you want to view the help file?");
    const UString title = LookupString("Can't configure control surfaces");
    if (MessageBox(question, title, kYesNoQuestion) == kAnsweredYes)
        OpenHelpDocument();
}

void CnslView::FillMenu() {
    for (unsigned int index = 0; index < fSurfaces.size(); ++index) {
        char name[kMidiEndpointNameSize] = {};
        GetMidiEndpointName(fSurfaces[index], name);
        fMenu->AppendItem(UString(name, UString::kUTF8), index);
    }
}

void CnslView::SetCurrentSurfaceIndex(unsigned int index) {
    if (index >= fSurfaces.size())
        return;
    fCurrent = index;
    fGroup->Show(fSurfaces[index].groupID);
    fGroupPosition->Show(FreeGroupPosition(fSurfaces, index));
    fMenu->SetCurrentItemByValue(index);
    fMenu->ShowCurrentItem();
}

void CnslView::Handle(unsigned int command) {
    switch (command) {
    case kCommandCancel:
        fApp->Quit();
        break;
    case kCommandHelp:
        OpenHelpDocument();
        break;
    case kCommandMenu:
        SwitchSurface();
        break;
    case kCommandOk:
        Confirm();
        break;
    default:
        break;
    }
}

void CnslView::SwitchSurface() {
    // Crosswise, on purpose: mixers in use rely on what switching has always stored.
    if (MidiDevice* surface = CurrentSurface())
        KeepSettingsOnSwitch(*surface, fGroup->Get(), fGroupPosition->Get());
    SetCurrentSurfaceIndex(fMenu->GetItemValue(fMenu->GetCurrentItem()));
}

void CnslView::Confirm() {
    if (MidiDevice* surface = CurrentSurface()) {
        KeepSettingsOnConfirm(*surface, fGroup->Get(), fGroupPosition->Get());
        SetCurrentSurfaceIndex(fCurrent);
    }
    WriteGroupSettings(fSurfaces);
    fApp->Quit();
}

MidiDevice* CnslView::CurrentSurface() {
    return fCurrent < fSurfaces.size() ? &fSurfaces[fCurrent] : nullptr;
}

void CnslView::DoDraw(DrawingContext& context) {
    context.FillRect(GetLocalRect(), kContentBG);
    context.SetupFont(kControlFont, kFontSize, kWhite);
    context.DrawString(LookupString("Group"), kGroupLabel, kTextAlignRight);
    context.DrawString(LookupString("Group position"), kGroupPositionLabel, kTextAlignRight);
}
