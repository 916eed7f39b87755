#pragma once

#include "Strings/UString.h"
#include "UI/Geometry.h"

#include <memory>

namespace Kestrin {

class KestrinMenu;
class NativeMenu;

/// A share in one platform menu, or in none. Copies refer to the same menu, which lives as long as
/// the last of them. Items are addressed from 1 to NumMenuItems(); indices are not checked, and
/// item operations need a menu.
class OSMenuHandle {
public:
    /// Thrown when a platform menu cannot be made.
    class Error {
    public:
        enum Code : int { kMenuCreationFailed = 2 };

        explicit Error(int code)
            : fCode(code) {}
        int GetCode() const { return fCode; }

    private:
        int fCode;
    };

    /// An empty handle.
    OSMenuHandle();
    OSMenuHandle(const OSMenuHandle& other);
    OSMenuHandle& operator=(const OSMenuHandle& other);
    virtual ~OSMenuHandle();

    // Making

    static OSMenuHandle CreateNewStandaloneMenu(short id);

    /// A menu under an ID that no prototype menu bears. Where all are taken, FailNILError reports.
    static OSMenuHandle CreateNewHierarchicalMenu();

    // Prototype menus: defined ahead of time, known by their IDs

    static bool GetPrototypeMenu(short id, OSMenuHandle& out);

    /// Replaces an earlier prototype of this menu's ID.
    void MakePrototypeMenu() const;

    // The menu list and the menu bar

    /// -1 registers the menu at the front of the list alone, 0 puts it at the end, any other number
    /// before the first listed menu whose ID is at least that. Numbers from 0 up also put it into
    /// the menu bar. An empty handle is not listed.
    void InsertMenuBeforeMenuID(short id);

    /// Takes the menu out of the list and the menu bar; nothing happens if it is not listed.
    void RemoveFromMenuList();

    // The menu

    bool IsEmpty() const;
    short GetMenuID() const;
    /// The platform menu itself; null for an empty handle.
    std::shared_ptr<const NativeMenu> GetNativeMenu() const;

    // Items

    short NumMenuItems() const;
    short AppendItem(const UString& text);
    void DeleteItem(short i);
    UString GetMenuItemText(short i) const;

    /// The 32-bit code of the command that the item sends.
    unsigned int GetMenuItemCommandID(short i) const;
    void SetMenuItemCommandID(short i, unsigned int code);

    /// A number for the item's user; 0 at first.
    unsigned int GetMenuItemRefCon(short i) const;
    void SetMenuItemRefCon(short i, unsigned int value);

    void SetMenuItemCheck(short i, bool on);
    bool IsMenuItemChecked(short i) const;
    bool IsItemEnabled(short i) const;
    void EnableItem(short i, bool enable);

    // Tracking

    /// Shows the menu as a pop-up with the corner of `item` (0: of the menu) at `where`, in screen
    /// coordinates, and waits until it closes; the choice arrives as a command on the chain of
    /// command before this returns. It needs the mouse-down, key or accessibility event that a view
    /// is handling and returns at once without one. Always returns 0.
    int PopUpMenuSelect(const Point& where, short item);

private:
    using Cell = std::shared_ptr<KestrinMenu>;

    explicit OSMenuHandle(Cell menu);

    std::unique_ptr<Cell> fMenu;
};

} // namespace Kestrin
