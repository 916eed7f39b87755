#pragma once

#include "Surfaces/SurfaceGroups.h"
#include "UI/View.h"

#include "app/Handler.h"

#include <memory>
#include <vector>

class BtnUI;
class CBasicApp;
class MenuUI;
class NumericEditBox;

/// The whole content of the program's window: the pop-up of surfaces, a box for each setting of the
/// surface that it shows, and the buttons "Help", "Cancel" and "Ok".
class CnslView : public Kestrin::View, public Handler {
public:
    /// Builds the controls and places itself, shown, at the origin of `parent`. `app` is asked to
    /// quit and must outlive the view.
    CnslView(CBasicApp* app, Kestrin::View* parent);
    ~CnslView() override;

    /// Finds the surfaces, which gives new ones their default settings, fills the pop-up and shows
    /// the first surface. With none it tells what is wrong with the database of MIDI objects, if
    /// anything, and asks whether to open the help document.
    void Init();

    /// Shows the surface `index`, counted from 0 in the order found; nothing when there is none
    /// such.
    void SetCurrentSurfaceIndex(unsigned int index);

    // What happens to it
    void Handle(unsigned int command) override;
    void DoDraw(Kestrin::DrawingContext& context) override;

private:
    using SettingPlace = SInt32 MidiDevice::*SurfaceSetting::*;

    void BuildControls();
    void AddButton(std::unique_ptr<BtnUI>& button, const char* caption, unsigned int command,
                   float x);
    void OfferHelp();
    void FillMenu();
    void SwitchSurface();
    void Confirm();
    /// Keeps what the boxes hold in the record of the surface that is shown, at these places of it.
    void KeepEntries(SettingPlace place);

    std::vector<std::unique_ptr<NumericEditBox>> fBoxes;
    std::unique_ptr<MenuUI> fMenu;
    std::unique_ptr<BtnUI> fHelp;
    std::unique_ptr<BtnUI> fCancel;
    std::unique_ptr<BtnUI> fOk;
    CBasicApp* fApp;
    std::vector<MidiDevice> fSurfaces;
    unsigned int fCurrent = 0;
};
