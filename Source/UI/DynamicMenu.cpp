#include "UI/DynamicMenu.h"

#include "Commands/ChainOfCommand.h"
#include "Commands/HandlerReference.h"

#include <algorithm>

namespace Kestrin {

namespace {

constexpr unsigned int kFirstCommand = 6000;
constexpr long kCommandCount = 4096;
constexpr short kListFront = -1;

template <typename Element>
void Remove(std::vector<Element*>& elements, const Element* element) {
    elements.erase(std::remove(elements.begin(), elements.end(), element), elements.end());
}

} // namespace

CommandIDPool DynamicMenu::sCmdIDPool(kFirstCommand, kCommandCount);
unsigned int DynamicMenu::sLiveMenus = 0;
std::vector<DynamicMenu*>& DynamicMenu::sMenuList = *new std::vector<DynamicMenu*>;

MenuItemSelectedListener::~MenuItemSelectedListener() {
    for (DynamicMenu* menu : DynamicMenu::sMenuList)
        menu->RemoveListener(this);
}

/// Makes a menu the gopher, alone, and gives the chain back at the end of its life. The menu and
/// whoever had the chain may go meanwhile.
class DynamicMenu::BorrowedChain {
public:
    explicit BorrowedChain(DynamicMenu& menu)
        : fMenu(menu)
        , fMenuAlive(menu.fAlive)
        , fGopher(ChainOfCommand::Instance()->GetGopher())
        , fHadGopher(fGopher.Get() != nullptr)
        , fSuccessor(menu.GetSuccessor()) {
        menu.SetSuccessor(nullptr);
    }

    ~BorrowedChain() {
        // Where the former gopher went meanwhile, whoever took over since keeps the chain.
        if (!fHadGopher || fGopher.Get() != nullptr || IsMenuGopher())
            ChainOfCommand::Instance()->SetGopher(fGopher.Get());
        if (!fMenuAlive.expired())
            fMenu.SetSuccessor(fSuccessor.Get());
    }

    BorrowedChain(const BorrowedChain&) = delete;
    BorrowedChain& operator=(const BorrowedChain&) = delete;

private:
    bool IsMenuGopher() const {
        return !fMenuAlive.expired() && ChainOfCommand::Instance()->GetGopher() == &fMenu;
    }

    DynamicMenu& fMenu;
    std::weak_ptr<const bool> fMenuAlive;
    HandlerReference fGopher;
    bool fHadGopher;
    HandlerReference fSuccessor;
};

DynamicMenu::DynamicMenu()
    : RequestHandler(nullptr)
    , fMenu(OSMenuHandle::CreateNewHierarchicalMenu()) {
    fMenu.InsertMenuBeforeMenuID(kListFront);
    ++sLiveMenus;
    sMenuList.push_back(this);
    fListeners.push_back(this);
}

DynamicMenu::~DynamicMenu() {
    RemoveListener(this);
    --sLiveMenus;
    for (short i = fMenu.NumMenuItems(); i > 0; --i) {
        if (const unsigned int command = fMenu.GetMenuItemCommandID(i); command != 0)
            sCmdIDPool.ReleaseID(command);
        fMenu.DeleteItem(i);
    }
    fSubMenus.clear();
    Remove(sMenuList, this);
    for (DynamicMenu* menu : sMenuList)
        Remove(menu->fSubMenus, this);
    fMenu.RemoveFromMenuList();
}

unsigned short DynamicMenu::AppendItem(const UString& text, unsigned int value) {
    const short item = fMenu.AppendItem(text);
    fMenu.SetMenuItemCommandID(item, sCmdIDPool.GetNextID());
    fMenu.SetMenuItemRefCon(item, value);
    return static_cast<unsigned short>(item);
}

unsigned int DynamicMenu::GetItemValue(unsigned short item) const {
    return fMenu.GetMenuItemRefCon(static_cast<short>(item));
}

unsigned short DynamicMenu::GetNumItems() const {
    return static_cast<unsigned short>(fMenu.NumMenuItems());
}

bool DynamicMenu::IsItem(unsigned short item) const {
    return item != 0 && item <= GetNumItems();
}

void DynamicMenu::CheckItem(unsigned short item) {
    for (unsigned short i = 1; i <= GetNumItems(); ++i)
        fMenu.SetMenuItemCheck(static_cast<short>(i), i == item);
}

void DynamicMenu::MakeCurrent(unsigned short item) {
    CheckItem(item);
    fCurrentItem = item;
    fCurrentValue = IsItem(item) ? GetItemValue(item) : 0;
}

void DynamicMenu::SetCurrentItem(unsigned short item) {
    if (item != 0 && !fNoCurrentItem)
        MakeCurrent(item);
}

void DynamicMenu::SetCurrentItemByValue(unsigned int value) {
    if (fNoCurrentItem)
        return;
    if (const unsigned short item = FindItemByValue(value); item != 0)
        MakeCurrent(item);
}

UString DynamicMenu::GetCurrentItemStr() const {
    if (fNoCurrentItem || !IsItem(fCurrentItem))
        return UString();
    return fMenu.GetMenuItemText(static_cast<short>(fCurrentItem));
}

unsigned short DynamicMenu::FindItemByValue(unsigned int value) const {
    for (unsigned short i = 1; i <= GetNumItems(); ++i)
        if (GetItemValue(i) == value)
            return i;
    return 0;
}

unsigned short DynamicMenu::FindItemByCommand(const CommandSpecifier& command) const {
    for (unsigned short i = 1; i <= GetNumItems(); ++i)
        if (fMenu.GetMenuItemCommandID(static_cast<short>(i)) == command.Code())
            return i;
    return 0;
}

void DynamicMenu::RemoveListener(MenuItemSelectedListener* listener) {
    Remove(fListeners, listener);
}

bool DynamicMenu::CanHandle(const CommandSpecifier& command) {
    if (const unsigned short item = FindItemByCommand(command); item != 0)
        return fMenu.IsItemEnabled(static_cast<short>(item));
    return AnyOf(fSubMenus, [&](DynamicMenu* menu) { return menu->CanHandle(command); });
}

bool DynamicMenu::HandleCommand(const CommandSpecifier& command) {
    const unsigned short item = FindItemByCommand(command);
    if (item == 0)
        return OfferToSubMenus(command);
    if (!fNoCurrentItem)
        MakeCurrent(item);
    TellListeners(item);
    return true;
}

/// Calls `call` with those of `elements` that were there at first and still are, until it answers
/// true. Whatever it calls may delete this menu and may add and remove elements.
template <typename Element, typename Call>
bool DynamicMenu::AnyOf(const std::vector<Element*>& elements, Call call) {
    const std::weak_ptr<const bool> alive = fAlive;
    for (Element* element : std::vector(elements)) {
        if (alive.expired())
            return false;
        if (std::find(elements.begin(), elements.end(), element) != elements.end() && call(element))
            return true;
    }
    return false;
}

bool DynamicMenu::OfferToSubMenus(const CommandSpecifier& command) {
    return AnyOf(fSubMenus, [&](DynamicMenu* menu) { return menu->HandleCommand(command); });
}

void DynamicMenu::TellListeners(unsigned short item) {
    const unsigned int value = GetItemValue(item);
    AnyOf(fListeners, [&](MenuItemSelectedListener* listener) {
        listener->ItemSelected(this, item, value);
        return false;
    });
}

void DynamicMenu::PopupSelect(int x, int y) {
    const BorrowedChain chain(*this);
    if (!ChainOfCommand::Instance()->SetGopher(this))
        return;
    const short item =
        fNoCurrentItem || !IsItem(fCurrentItem) ? short{0} : static_cast<short>(fCurrentItem);
    // The menu may be gone when this returns.
    fMenu.PopUpMenuSelect({static_cast<float>(x), static_cast<float>(y)}, item);
}

void DynamicMenu::ItemSelected(DynamicMenu*, unsigned short, unsigned int) {}

} // namespace Kestrin
