#pragma once

#include "Strings/UString.h"

#include "Platform/UI/NativeMenu.h"

namespace Kestrin {

/// A platform menu that knows its menu ID.
class KestrinMenu : public NativeMenu {
public:
    KestrinMenu() = default;

    void SetID(short id) { fMenuID = id; }
    short GetID() const { return static_cast<short>(fMenuID); }

    std::shared_ptr<NativeMenu> Copy() const override;

private:
    KestrinMenu(const KestrinMenu&) = default;

    int fMenuID = 0;
};

/// An item that keeps the text that it was given beside the title that is shown, since the
/// framework's surrogates are not those of the platform.
class KestrinMenuItem : public NativeMenuItem {
public:
    explicit KestrinMenuItem(const UString& text);

    const UString& GetText() const { return fText; }

    std::shared_ptr<NativeMenuItem> Copy() const override;

private:
    KestrinMenuItem(const KestrinMenuItem&) = default;

    UString fText;
};

/// What an item carries for its user.
class KestrinMenuItemData : public NativeObject {
public:
    void SetRefCon(unsigned int refCon) { fRefCon = refCon; }
    unsigned int GetRefCon() const { return fRefCon; }

private:
    unsigned int fRefCon = 0;
};

/// Turns the choices of all the framework's menu items into commands on the chain of command. An
/// item's tag is its command's code.
class MenuTargetSingleton : public NativeMenuTarget {
public:
    static MenuTargetSingleton& Instance();

    void DoMenu(const NativeMenuItem& sender) override;
    bool ValidateMenuItem(const NativeMenuItem& item) override;

private:
    MenuTargetSingleton() = default;
};

} // namespace Kestrin
