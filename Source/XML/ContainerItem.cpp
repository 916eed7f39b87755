#include "Diagnostics/Failure.h"
#include "XML/XMLSerializable.h"

#include <algorithm>
#include <boost/smart_ptr/shared_ptr.hpp>
#include <new>

namespace Kestrin {

namespace {

constexpr int kAddedToItselfLine = 50;
constexpr int kNoContainerLine = 585;

/// A child's place, ordered by its name. The name's first four units stand in one number, which
/// settles most comparisons without a look at the child.
struct NamedPlace {
    std::uint64_t start = 0;
    const UString* name = nullptr;
    std::uint32_t place = 0;

    bool operator<(const NamedPlace& other) const {
        if (start != other.start)
            return start < other.start;
        if (*name < *other.name)
            return true;
        return !(*other.name < *name) && place < other.place;
    }
};

std::uint64_t StartOf(const UString& name) {
    std::uint64_t start = 0;
    for (std::size_t i = 0; i < 4; ++i)
        start = start << 16 | (i < name.length() ? name[i] : 0u);
    return start;
}

std::vector<NamedPlace> SortedPlaces(const std::vector<boost::shared_ptr<Item>>& items) {
    std::vector<NamedPlace> places;
    places.reserve(items.size());
    for (const auto& item : items) {
        const UString& name = item->GetName();
        places.push_back({StartOf(name), &name, static_cast<std::uint32_t>(places.size())});
    }
    if (!std::is_sorted(places.begin(), places.end()))
        std::sort(places.begin(), places.end());
    return places;
}

} // namespace

ContainerItem::ContainerItem(const UString& name)
    : Item(kContainer, name) {}

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
        auto* container = dynamic_cast<ContainerItem*>(last.get());
        if (container == nullptr || last.use_count() > 1)
            continue;
        opened.push_back(std::move(last));
        emptied = container;
    }
}

void ContainerItem::AddItem(const boost::shared_ptr<Item>& item) {
    if (item == nullptr)
        return;
    if (item.get() == this)
        FailString("XMLSerializable", "Source/XML/XMLSerializable", kAddedToItselfLine);
    fIndex[item->GetName()] = static_cast<std::uint32_t>(fItems.size());
    fItems.push_back(item);
    SetChanged(true);
}

void ContainerItem::RemoveItem(boost::shared_ptr<Item> item) {
    const auto found = std::find(fItems.begin(), fItems.end(), item);
    if (item == nullptr || found == fItems.end())
        return;
    fItems.erase(found);
    RebuildIndex();
}

void ContainerItem::RebuildIndex() {
    // In the order of the names every entry is added at the map's end, and the last of namesakes
    // wins.
    fIndex = {};
    for (const NamedPlace& entry : SortedPlaces(fItems))
        fIndex[*entry.name] = entry.place;
}

boost::shared_ptr<Item> ContainerItem::GetItem(ItemType type, const UString& name) const {
    const auto found = fIndex.find(name);
    if (found == fIndex.end())
        return {};
    const boost::shared_ptr<Item>& item = fItems[found->second];
    return item->GetType() == type ? item : boost::shared_ptr<Item>();
}

boost::shared_ptr<UStringItem> ContainerItem::GetUStringItem(const UString& name) const {
    return boost::dynamic_pointer_cast<UStringItem>(GetItem(kUString, name));
}

bool ContainerItem::HasChanged() const {
    return Item::HasChanged() ||
           std::any_of(fItems.begin(), fItems.end(),
                       [](const boost::shared_ptr<Item>& item) { return item->HasChanged(); });
}

boost::shared_ptr<ContainerItem> CreateContainer(const UString& name) {
    boost::shared_ptr<ContainerItem> container(new (std::nothrow) ContainerItem(name));
    if (container == nullptr)
        FailNILError("Source/XML/XMLSerializable", kNoContainerLine);
    return container;
}

} // namespace Kestrin
