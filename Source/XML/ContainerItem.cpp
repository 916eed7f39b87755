#include "Diagnostics/Failure.h"
#include "XML/XMLSerializable.h"

#include <algorithm>
#include <boost/smart_ptr/shared_ptr.hpp>
#include <mutex>
#include <new>

namespace Kestrin {

namespace {

constexpr int kAddedToItselfLine = 50;
constexpr int kNoContainerLine = 585;

} // namespace

ContainerItem::NameKey::NameKey(const UString& key)
    : hash(std::hash<std::string_view>()(
          {reinterpret_cast<const char*>(key.data()), key.length() * sizeof(*key.data())}))
    , name(&key) {}

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
    const auto place = static_cast<std::uint32_t>(fItems.size());
    fItems.push_back(item);
    SetChanged(true);
    if (!fIsIndexed)
        return;
    // The new child's own name becomes the key, which outlives that of an earlier namesake.
    const NameIndex::value_type added{NameKey(item->GetName()), place};
    *fIndex.insert(added).first = added;
}

// By value: the caller's reference may be the list's own, which goes.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
void ContainerItem::RemoveItem(boost::shared_ptr<Item> item) {
    const auto found = std::find(fItems.begin(), fItems.end(), item);
    if (item == nullptr || found == fItems.end())
        return;
    fItems.erase(found);
    fIsIndexed = false;
}

const ContainerItem::NameIndex& ContainerItem::Index() const {
    static std::mutex building;
    if (!fIsIndexed.load(std::memory_order_acquire)) {
        const std::lock_guard lock(building);
        if (!fIsIndexed.load(std::memory_order_relaxed)) {
            fIndex = MakeIndex();
            fIsIndexed.store(true, std::memory_order_release);
        }
    }
    return fIndex;
}

ContainerItem::NameIndex ContainerItem::MakeIndex() const {
    using Entry = NameIndex::value_type;
    std::vector<Entry> entries;
    entries.reserve(fItems.size());
    for (const auto& item : fItems)
        entries.emplace_back(NameKey(item->GetName()), static_cast<std::uint32_t>(entries.size()));
    const auto isBefore = [](const Entry& a, const Entry& b) {
        return a.first < b.first || (!(b.first < a.first) && a.second < b.second);
    };
    std::sort(entries.begin(), entries.end(), isBefore);
    // Namesakes stand in the order of their places: the last of them stays.
    const auto areNamesakes = [](const Entry& later, const Entry& earlier) {
        return !(earlier.first < later.first);
    };
    const auto kept = std::unique(entries.rbegin(), entries.rend(), areNamesakes);
    entries.erase(entries.begin(), kept.base());
    return NameIndex(std::move(entries));
}

const boost::shared_ptr<Item>* ContainerItem::Find(ItemType type, const UString& name) const {
    const NameIndex& index = Index();
    const auto found = index.find(NameKey(name));
    if (found == index.end())
        return nullptr;
    const boost::shared_ptr<Item>& item = fItems[found->second];
    return item->GetType() == type ? &item : nullptr;
}

boost::shared_ptr<Item> ContainerItem::GetItem(ItemType type, const UString& name) const {
    const boost::shared_ptr<Item>* item = Find(type, name);
    return item != nullptr ? *item : boost::shared_ptr<Item>();
}

boost::shared_ptr<UStringItem> ContainerItem::GetUStringItem(const UString& name) const {
    return boost::dynamic_pointer_cast<UStringItem>(GetItem(kUString, name));
}

const UString* ContainerItem::FindUString(const UString& name) const {
    const boost::shared_ptr<Item>* item = Find(kUString, name);
    if (item == nullptr)
        return nullptr;
    const Item& found = **item;
    // Asked for by far the most often, and far quicker to tell than by a cast.
    if (typeid(found) == typeid(UStringItem))
        return &static_cast<const UStringItem&>(found).GetValue();
    const auto* text = dynamic_cast<const UStringItem*>(&found);
    return text != nullptr ? &text->GetValue() : nullptr;
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
