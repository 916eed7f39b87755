#include "UI/OSMenuHandle.h"

#include "Diagnostics/Failure.h"
#include "Strings/SortedVectorMap.h"
#include "UI/Internal/CurrentEvent.h"
#include "UI/Internal/KestrinMenu.h"
#include "UI/Internal/NativeGeometry.h"
#include "UI/Internal/TextHandOver.h"

#include "Platform/UI/NativeView.h"

#include <new>
#include <utility>

namespace Kestrin {

namespace {

// Menu IDs that are given out run from 1 to this; 32767 is never used.
constexpr short kLastMenuID = 32766;
constexpr int kMenuIDAttempts = 32767;

short gMenuID = 1;

short NextMenuID(short id) {
    return id >= kLastMenuID ? short{1} : static_cast<short>(id + 1);
}

sorted_vector_map<short, OSMenuHandle>& PrototypeMenus() {
    static sorted_vector_map<short, OSMenuHandle> menus;
    return menus;
}

short FreshMenuID() {
    short candidate = gMenuID;
    OSMenuHandle taken;
    for (int attempts = 0; OSMenuHandle::GetPrototypeMenu(candidate, taken);
         candidate = NextMenuID(candidate))
        if (++attempts == kMenuIDAttempts)
            FailNILError("Source/UI/OSMenuHandle", __LINE__);
    gMenuID = NextMenuID(candidate);
    return candidate;
}

NativeMenuItem& ItemOf(KestrinMenu& menu, short i) {
    return menu.ItemAt(i - 1);
}

/// The data object that each item is appended with.
KestrinMenuItemData& DataOf(KestrinMenu& menu, short i) {
    return static_cast<KestrinMenuItemData&>(*ItemOf(menu, i).RepresentedObject());
}

} // namespace

OSMenuHandle::OSMenuHandle()
    : OSMenuHandle(Cell()) {}

OSMenuHandle::OSMenuHandle(Cell menu)
    : fMenu(std::make_unique<Cell>(std::move(menu))) {}

OSMenuHandle::OSMenuHandle(const OSMenuHandle& other)
    : OSMenuHandle(*other.fMenu) {}

OSMenuHandle& OSMenuHandle::operator=(const OSMenuHandle& other) {
    *fMenu = *other.fMenu;
    return *this;
}

OSMenuHandle::~OSMenuHandle() = default;

OSMenuHandle OSMenuHandle::CreateNewStandaloneMenu(short id) {
    try {
        OSMenuHandle handle(std::make_shared<KestrinMenu>());
        (*handle.fMenu)->SetID(id);
        (*handle.fMenu)->SetAutoenablesItems(false);
        return handle;
    } catch (const std::bad_alloc&) {
        throw Error(Error::kMenuCreationFailed);
    }
}

OSMenuHandle OSMenuHandle::CreateNewHierarchicalMenu() {
    return CreateNewStandaloneMenu(FreshMenuID());
}

bool OSMenuHandle::GetPrototypeMenu(short id, OSMenuHandle& out) {
    const auto place = PrototypeMenus().find(id);
    if (place == PrototypeMenus().end())
        return false;
    out = place->second;
    return true;
}

void OSMenuHandle::MakePrototypeMenu() const {
    PrototypeMenus()[GetMenuID()] = *this;
}

bool OSMenuHandle::IsEmpty() const {
    return *fMenu == nullptr;
}

short OSMenuHandle::GetMenuID() const {
    return (*fMenu)->GetID();
}

std::shared_ptr<const NativeMenu> OSMenuHandle::GetNativeMenu() const {
    return *fMenu;
}

short OSMenuHandle::NumMenuItems() const {
    return static_cast<short>((*fMenu)->NumberOfItems());
}

short OSMenuHandle::AppendItem(const UString& text) {
    auto item = std::make_unique<NativeMenuItem>(StandardText(text));
    item->SetRepresentedObject(std::make_shared<KestrinMenuItemData>(text));
    item->SetTarget(&MenuTargetSingleton::Instance());
    (*fMenu)->AddItem(std::move(item));
    return NumMenuItems();
}

void OSMenuHandle::DeleteItem(short i) {
    (*fMenu)->RemoveItem(i - 1);
}

UString OSMenuHandle::GetMenuItemText(short i) const {
    return DataOf(**fMenu, i).GetText();
}

unsigned int OSMenuHandle::GetMenuItemCommandID(short i) const {
    return ItemOf(**fMenu, i).Tag();
}

void OSMenuHandle::SetMenuItemCommandID(short i, unsigned int code) {
    ItemOf(**fMenu, i).SetTag(code);
}

unsigned int OSMenuHandle::GetMenuItemRefCon(short i) const {
    return DataOf(**fMenu, i).GetRefCon();
}

void OSMenuHandle::SetMenuItemRefCon(short i, unsigned int value) {
    DataOf(**fMenu, i).SetRefCon(value);
}

void OSMenuHandle::SetMenuItemCheck(short i, bool on) {
    ItemOf(**fMenu, i).SetOn(on);
}

bool OSMenuHandle::IsMenuItemChecked(short i) const {
    return ItemOf(**fMenu, i).IsOn();
}

bool OSMenuHandle::IsItemEnabled(short i) const {
    return ItemOf(**fMenu, i).IsEnabled();
}

void OSMenuHandle::EnableItem(short i, bool enable) {
    ItemOf(**fMenu, i).SetEnabled(enable);
}

int OSMenuHandle::PopUpMenuSelect(const Point& where, short item) {
    const View* view = CurrentEventView();
    if (view == nullptr)
        return 0;
    const NativeView& nativeView = NativeViewOf(*view);
    (*fMenu)->PopUp(nativeView, nativeView.FromScreen(ToNative(where)), item - 1);
    return 0;
}

} // namespace Kestrin
