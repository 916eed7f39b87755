#include "Diagnostics/Failure.h"
#include "XML/XMLSerializable.h"

#include <algorithm>
#include <boost/smart_ptr/shared_ptr.hpp>
#include <new>

namespace Kestrin {

namespace {

constexpr int kAddedToItselfLine = 50;
constexpr int kNoContainerLine = 585;

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
    // The new item's own name becomes the key, which outlives that of an earlier namesake.
    const NameIndex::value_type added(NameKey(item->GetName()),
                                      static_cast<std::uint32_t>(fItems.size()));
    *fIndex.insert(added).first = added;
    fItems.push_back(item);
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
    NameIndex::Entries entries;
    entries.reserve(fItems.size());
    for (const boost::shared_ptr<Item>& item : fItems)
        entries.emplace_back(NameKey(item->GetName()), static_cast<std::uint32_t>(entries.size()));
    // Of namesakes the last one stands first, which stays.
    std::sort(entries.begin(), entries.end(), [](const auto& a, const auto& b) {
        return a.first < b.first || (a.second > b.second && !(b.first < a.first));
    });
    const auto kept = std::unique(entries.begin(), entries.end(), [](const auto& a, const auto& b) {
        return !(a.first < b.first);
    });
    entries.erase(kept, entries.end());
    fIndex = NameIndex(std::move(entries));
}

boost::shared_ptr<Item> ContainerItem::GetItem(ItemType type, const UString& name) const {
    const auto found = fIndex.find(NameKey(name));
    if (found == fIndex.end() || fItems[found->second]->GetType() != type)
        return {};
    return fItems[found->second];
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
