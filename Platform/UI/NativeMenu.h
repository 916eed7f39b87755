#pragma once

#include "Platform/UI/CGGeometry.h"

#include <cstdint>
#include <memory>
#include <string>

namespace Kestrin {

class NativeMenu;
class NativeMenuItem;
class NativeView;

/// The root of what a menu item can carry for its user.
class NativeObject {
public:
    virtual ~NativeObject() = default;
};

/// Takes the choices of menu items. One target may serve any number of items; items do not own it.
class NativeMenuTarget {
public:
    virtual ~NativeMenuTarget() = default;

    /// `sender` was chosen. The menu is closed by then.
    virtual void DoMenu(const NativeMenuItem& sender) = 0;

    /// Whether `item` of a menu that enables its items automatically can be chosen now.
    virtual bool ValidateMenuItem(const NativeMenuItem& item) = 0;
};

/// One line of a menu. Texts are UTF-16 and shown literally: nothing in them is a mnemonic or a
/// shortcut, and control characters show as blanks.
class NativeMenuItem : public std::enable_shared_from_this<NativeMenuItem> {
public:
    explicit NativeMenuItem(std::u16string title);
    /// A copy shares the represented object and the submenu.
    NativeMenuItem(const NativeMenuItem&) = default;
    NativeMenuItem& operator=(const NativeMenuItem&) = delete;

    const std::u16string& Title() const { return fTitle; }

    /// A number for the item's user; 0 at first.
    std::uint32_t Tag() const { return fTag; }
    void SetTag(std::uint32_t tag) { fTag = tag; }

    /// Whether the item bears a check mark.
    bool IsOn() const { return fOn; }
    void SetOn(bool on) { fOn = on; }

    /// Counts unless the menu enables its items automatically.
    bool IsEnabled() const { return fEnabled; }
    void SetEnabled(bool enabled) { fEnabled = enabled; }

    /// Null: choosing the item tells nobody.
    NativeMenuTarget* Target() const { return fTarget; }
    void SetTarget(NativeMenuTarget* target) { fTarget = target; }

    const std::shared_ptr<NativeObject>& RepresentedObject() const { return fRepresentedObject; }
    void SetRepresentedObject(std::shared_ptr<NativeObject> object);

    const std::shared_ptr<NativeMenu>& Submenu() const { return fSubmenu; }
    void SetSubmenu(std::shared_ptr<NativeMenu> submenu);

private:
    std::u16string fTitle;
    std::uint32_t fTag = 0;
    bool fOn = false;
    bool fEnabled = true;
    NativeMenuTarget* fTarget = nullptr;
    std::shared_ptr<NativeObject> fRepresentedObject;
    std::shared_ptr<NativeMenu> fSubmenu;
};

/// A menu: a row of items that can be shown as a pop-up. It is shared by all who hold it and needs
/// no display until it is shown. Items are addressed from 0; indices are not checked.
class NativeMenu {
public:
    NativeMenu();
    /// A copy has copies of the items.
    NativeMenu(const NativeMenu& other);
    ~NativeMenu();
    NativeMenu& operator=(const NativeMenu&) = delete;

    // Items

    int NumberOfItems() const;
    NativeMenuItem& ItemAt(int index);
    const NativeMenuItem& ItemAt(int index) const;
    void AddItem(std::unique_ptr<NativeMenuItem> item);
    void InsertItem(std::unique_ptr<NativeMenuItem> item, int index);
    void RemoveItem(int index);

    /// Whether targets decide which items are enabled (so at first) or the items do.
    void SetAutoenablesItems(bool automatic);

    /// Whether the item can be chosen now.
    bool IsItemEnabled(int index) const;

    // Tracking

    /// Shows the menu over `view` and waits until it closes; a choice goes to the item's target
    /// before this returns. The item of index `item` stands with its top left corner at `where`, in
    /// the view's own coordinates, as far as the screen allows; with -1 the menu's own corner does.
    /// The menu, the view and its window may all be destroyed while it is open: it then closes, and
    /// nothing is chosen.
    void PopUp(const NativeView& view, CGPoint where, int item);

    /// For the platform's own files.
    struct Data;
    Data& GetData() const { return *fData; }

private:
    std::unique_ptr<Data> fData;
};

} // namespace Kestrin
