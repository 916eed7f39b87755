#include "app/CnslView.h"

#include "Resources/LocalizedStrings.h"
#include "Surfaces/SurfaceDiscovery.h"
#include "Surfaces/SurfaceGroups.h"
#include "UI/DrawingContext.h"
#include "UI/MessageBox.h"

#include "app/BtnUI.h"
#include "app/CBasicApp.h"
#include "app/DatabaseAlerts.h"
#include "app/HelpDocument.h"
#include "app/Look.h"
#include "app/MenuUI.h"
#include "app/NumericEditBox.h"

using namespace Kestrin;

namespace {

constexpr Point kMenuOrigin{20, 20};
constexpr float kFirstRowTop = 80;
constexpr float kRowHeight = 40;
constexpr float kButtonWidth = 100;

/// A setting's label and, to its right, its box.
struct SettingRow {
    const char* caption;
    const SurfaceSetting& setting;
};

/// From the top down; the buttons stand below them.
constexpr SettingRow kRows[] = {{"Group", kGroupSetting},
                                {"Group position", kGroupPositionSetting}};

constexpr float RowTop(std::size_t row) {
    return kFirstRowTop + kRowHeight * static_cast<float>(row);
}

UString CaptionOf(const SettingRow& row) {
    // Keys: "Group", "Group position"
    return LookupString(row.caption);
}

} // namespace

CnslView::CnslView(CBasicApp* app, View* parent)
    : fApp(app) {
    BuildControls();
    PlaceInView(parent, kContentRect.x, kContentRect.y);
    SetDimensions(kContentRect.width, kContentRect.height);
    ShowHide(true);
}

CnslView::~CnslView() = default;

void CnslView::BuildControls() {
    fMenu = std::make_unique<MenuUI>(this, LookupString("Edit settings for"));
    fMenu->SetToolTip(LookupString(
        "Choosing another surface keeps the two numbers of this one the other way round:\n"
        "the group as its position and the position as its group."));
    fMenu->PlaceInView(this, kMenuOrigin);
    fMenu->ShowHide(true);

    for (const SettingRow& row : kRows) {
        const Point origin{150, RowTop(fBoxes.size())};
        fBoxes.push_back(std::make_unique<NumericEditBox>());
        fBoxes.back()->Init(this, origin, 80, row.setting.first, row.setting.last, CaptionOf(row));
    }

    AddButton(fHelp, "Help", kCommandHelp, 250);
    AddButton(fCancel, "Cancel", kCommandCancel, 350);
    AddButton(fOk, "Ok", kCommandOk, 450);
}

void CnslView::AddButton(std::unique_ptr<BtnUI>& button, const char* caption, unsigned int command,
                         float x) {
    // Keys: "Help", "Cancel", "Ok"
    button = std::make_unique<BtnUI>(LookupString(caption), this, command, kButtonWidth);
    button->PlaceInView(this, x, RowTop(std::size(kRows)));
    button->ShowHide(true);
}

void CnslView::Init() {
    GetAvailableDevices(fSurfaces);
    NormaliseGroupPositions(fSurfaces);
    if (fSurfaces.empty()) {
        TellWhyDatabaseIsRefused();
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
    if (MessageBox(question, title, kMessageBoxYesNo) == 1)
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
    for (std::size_t row = 0; row < fBoxes.size(); ++row)
        fBoxes[row]->Show(kRows[row].setting.Shown(fSurfaces, index));
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
    KeepEntries(&SurfaceSetting::valueOnSwitch);
    SetCurrentSurfaceIndex(fMenu->GetItemValue(fMenu->GetCurrentItem()));
}

void CnslView::Confirm() {
    KeepEntries(&SurfaceSetting::value);
    SetCurrentSurfaceIndex(fCurrent);
    if (const OSStatus status = WriteGroupSettings(fSurfaces); status == noErr)
        fApp->Quit();
    else
        TellThatNothingWasStored(status);
}

void CnslView::KeepEntries(SettingPlace place) {
    if (fCurrent >= fSurfaces.size())
        return;
    for (std::size_t row = 0; row < fBoxes.size(); ++row)
        fSurfaces[fCurrent].*(kRows[row].setting.*place) = fBoxes[row]->Get();
}

void CnslView::DoDraw(DrawingContext& context) {
    context.FillRect(GetLocalRect(), kContentBG);
    context.SetupFont(kControlFont, kFontSize, kWhite);
    for (std::size_t row = 0; row < std::size(kRows); ++row)
        context.DrawString(CaptionOf(kRows[row]), {20, RowTop(row), 120, 25}, kTextAlignRight);
}
