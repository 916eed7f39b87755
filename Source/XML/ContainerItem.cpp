#include "Diagnostics/Failure.h"
#include "XML/XMLSerializable.h"

#include <algorithm>
#include <bit>
#include <boost/smart_ptr/shared_ptr.hpp>
#include <cstdint>
#include <new>

namespace Kestrin {

namespace {

constexpr int kAddedToItselfLine = 50;
constexpr int kNoContainerLine = 585;

constexpr int kPlaceBits = 32;

} // namespace

ContainerItem::ContainerItem(UString name)
    : Item(kContainer, std::move(name)) {}

ContainerItem::~ContainerItem() {
    ReleaseItems();
}

/// As each container's destructor would do it, but with the containers that are being emptied in a
/// list instead of on the stack.
void ContainerItem::ReleaseItems() {
    std::vector<boost::shared_ptr<Item>> opened;
    ContainerItem* emptied = this;
    for (;;) {
        if (emptied->fItems.empty()) {
            if (opened.empty())
                return;
            opened.pop_back();
            emptied = opened.empty() ? this : static_cast<ContainerItem*>(opened.back().get());
            continue;
        }
        boost::shared_ptr<Item> last = std::move(emptied->fItems.back());
        emptied->fItems.pop_back();
        if (last->GetType() != kContainer || last.use_count() > 1)
            continue;
        emptied = static_cast<ContainerItem*>(last.get());
        opened.push_back(std::move(last));
    }
}

void ContainerItem::AddItem(const boost::shared_ptr<Item>& item) {
    if (item == nullptr)
        return;
    if (item.get() == this)
        FailString("XMLSerializable", "Source/XML/XMLSerializable", kAddedToItselfLine);
    fItems.push_back(item);
    if (2 * fItems.size() > fIndex.size())
        MakeIndex();
    else
        AddToIndex(fItems.size() - 1);
    SetChanged(true);
}

// By value: the caller's reference may be the list's own, which goes.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
void ContainerItem::RemoveItem(boost::shared_ptr<Item> item) {
    const auto found = std::find(fItems.begin(), fItems.end(), item);
    if (item == nullptr || found == fItems.end())
        return;
    fItems.erase(found);
    MakeIndex();
}

void ContainerItem::MakeIndex() {
    fIndex.assign(std::bit_ceil(2 * fItems.size()), 0);
    for (std::size_t place = 0; place < fItems.size(); ++place)
        AddToIndex(place);
}

void ContainerItem::AddToIndex(std::size_t place) {
    const Item& item = *fItems[place];
    fIndex[EntryOf(item.fName, item.fNameHash)] =
        std::uint64_t{item.fNameHash} << kPlaceBits | (place + 1);
}

/// The number of the entry of that name, or of the free one where it would stand.
std::size_t ContainerItem::EntryOf(const UString& name, std::uint32_t nameHash) const {
    const std::size_t last = fIndex.size() - 1;
    std::size_t at = nameHash & last;
    const auto isOther = [&](std::uint64_t entry) {
        return entry >> kPlaceBits != nameHash || ItemOf(entry)->GetName() != name;
    };
    while (fIndex[at] != 0 && isOther(fIndex[at]))
        at = (at + 1) & last;
    return at;
}

const boost::shared_ptr<Item>& ContainerItem::ItemOf(std::uint64_t entry) const {
    return fItems[static_cast<std::uint32_t>(entry) - 1];
}

boost::shared_ptr<Item> ContainerItem::GetItem(ItemType type, const UString& name) const {
    if (fItems.empty())
        return {};
    const std::uint64_t entry = fIndex[EntryOf(name, HashOf(name))];
    return entry != 0 && ItemOf(entry)->GetType() == type ? ItemOf(entry) : nullptr;
}

boost::shared_ptr<UStringItem> ContainerItem::GetUStringItem(const UString& name) const {
    return boost::dynamic_pointer_cast<UStringItem>(GetItem(kUString, name));
}

bool ContainerItem::HasChanged() const {
    return Item::HasChanged() ||
           std::any_of(fItems.begin(), fItems.end(),
                       [](const boost::shared_ptr<Item>& item) { return item->HasChanged(); });
}

boost::shared_ptr<ContainerItem> CreateContainer(UString name) {
    boost::shared_ptr<ContainerItem> container(new (std::nothrow) ContainerItem(std::move(name)));
    if (container == nullptr)
        FailNILError("Source/XML/XMLSerializable", kNoContainerLine);
    return container;
}

} // namespace Kestrin
