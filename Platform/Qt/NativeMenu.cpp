#include "Platform/UI/NativeMenu.h"

#include "Platform/Qt/QtPopUp.h"

#include <utility>
#include <vector>

namespace Kestrin {

NativeMenuItem::NativeMenuItem(std::u16string title)
    : fTitle(std::move(title)) {}

void NativeMenuItem::SetRepresentedObject(std::shared_ptr<NativeObject> object) {
    fRepresentedObject = std::move(object);
}

void NativeMenuItem::SetSubmenu(std::shared_ptr<NativeMenu> submenu) {
    fSubmenu = std::move(submenu);
}

struct NativeMenu::Data {
    std::vector<std::shared_ptr<NativeMenuItem>> items;
    bool autoenablesItems = true;
    OpenPopUp shown;
};

NativeMenu::NativeMenu()
    : fData(std::make_unique<Data>()) {}

NativeMenu::NativeMenu(const NativeMenu& other)
    : NativeMenu() {
    fData->autoenablesItems = other.fData->autoenablesItems;
    for (const auto& item : other.fData->items)
        fData->items.push_back(std::make_shared<NativeMenuItem>(*item));
}

NativeMenu::~NativeMenu() = default;

int NativeMenu::NumberOfItems() const {
    return static_cast<int>(fData->items.size());
}

NativeMenuItem& NativeMenu::ItemAt(int index) {
    return *fData->items[static_cast<std::size_t>(index)];
}

const NativeMenuItem& NativeMenu::ItemAt(int index) const {
    return *fData->items[static_cast<std::size_t>(index)];
}

void NativeMenu::AddItem(std::unique_ptr<NativeMenuItem> item) {
    fData->items.push_back(std::move(item));
}

void NativeMenu::InsertItem(std::unique_ptr<NativeMenuItem> item, int index) {
    fData->items.insert(fData->items.begin() + index, std::move(item));
}

void NativeMenu::RemoveItem(int index) {
    fData->items.erase(fData->items.begin() + index);
}

bool NativeMenu::IsItemEnabled(int index) const {
    const NativeMenuItem& item = ItemAt(index);
    return fData->autoenablesItems && item.Target() != nullptr
               ? item.Target()->ValidateMenuItem(item)
               : item.IsEnabled();
}

void NativeMenu::SetAutoenablesItems(bool automatic) {
    fData->autoenablesItems = automatic;
}

void NativeMenu::PopUp(const NativeView& view, CGPoint where, int item) {
    // This object and the item may go while the pop-up is open: neither is touched behind it.
    const std::weak_ptr<const NativeMenuItem> chosen =
        TrackPopUp(*this, view, where, item, fData->shown);
    if (const auto sender = chosen.lock(); sender && sender->Target() != nullptr)
        sender->Target()->DoMenu(*sender);
}

QMenu* OpenWidgetOf(const NativeMenu& menu) {
    return menu.GetData().shown.fWidget.data();
}

} // namespace Kestrin
