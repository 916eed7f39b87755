#pragma once

#include "Strings/UString.h"

#include "Platform/UI/NativeMenu.h"

#include <utility>

namespace Kestrin {

/// A platform menu that knows its menu ID; a copy has the same.
class KestrinMenu : public NativeMenu {
public:
    void SetID(short id) { fMenuID = id; }
    short GetID() const { return static_cast<short>(fMenuID); }

private:
    int fMenuID = 0;
};

/// What an item carries for its user: a number, and the text that the item was given, since in the
/// title that is shown the framework's surrogates are the platform's.
class KestrinMenuItemData : public NativeObject {
public:
    explicit KestrinMenuItemData(UString text)
        : fText(std::move(text)) {}

    const UString& GetText() const { return fText; }
    void SetRefCon(unsigned int refCon) { fRefCon = refCon; }
    unsigned int GetRefCon() const { return fRefCon; }

private:
    UString fText;
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
