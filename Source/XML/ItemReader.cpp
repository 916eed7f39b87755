#include "XML/ItemReader.h"

#include "Diagnostics/Failure.h"
#include "Strings/TextConversions.h"
#include "XML/ItemNames.h"

#include <algorithm>
#include <boost/smart_ptr/make_shared.hpp>
#include <cstdio>
#include <optional>

namespace Kestrin {

namespace {

constexpr unsigned int kThisPlatform = FourCharCode("MacX");

// Room that a file may claim beyond what its text fills.
constexpr std::size_t kRawDataSlack = std::size_t{1} << 20;
constexpr int kRawDataTooLargeLine = 412;

/// Takes out an item of which one of the last ones is known to be the place.
void RemoveLast(std::vector<boost::shared_ptr<Item>>& items, const boost::shared_ptr<Item>& item) {
    items.erase(std::next(std::find(items.rbegin(), items.rend(), item)).base());
}

boost::shared_ptr<RawDataBuffer> Decode(const UString& text, std::uint32_t size) {
    // Every byte takes two digits.
    if (size > text.length() / 2 + kRawDataSlack)
        FailString("XMLSerializable", "Source/XML/XMLSerializable", kRawDataTooLargeLine);
    auto buffer = boost::make_shared<RawDataBuffer>();
    buffer->size = size;
    buffer->data = std::make_unique<unsigned char[]>(size);
    UStringToRawData(text, buffer->data.get(), size);
    return buffer;
}

} // namespace

/// What an element says of itself.
struct ItemReader::Element {
    explicit Element(Item::ItemType code)
        : type(code) {}

    /// Empties the attribute.
    void Take(AttributePair& attribute) {
        if (attribute.name == kItemNameAttributeUString)
            name = std::move(attribute.value);
        else if (attribute.name == kValueAttributeUString)
            value = std::move(attribute.value);
        else if (attribute.name == kSizeAttributeUString)
            size = std::move(attribute.value);
        else
            TakeForeign(attribute);
    }

    void TakeForeign(AttributePair& attribute) {
        if (attribute.name == kLanguageAttributeUString)
            language = UStringToOSType(attribute.value);
        else if (attribute.name == kPlatformAttributeUString)
            isForThisPlatform = UStringToOSType(attribute.value) == kThisPlatform;
        foreign.push_back(std::move(attribute));
    }

    Item::ItemType type;
    unsigned int language = kDefaultLanguage;
    bool isForThisPlatform = true;
    std::optional<UString> name;
    std::optional<UString> value;
    UString size;
    AttributeList foreign;
};

ItemReader::ItemReader(Parser& parser, unsigned int language)
    : fParser(parser)
    , fLanguage(language) {}

void ItemReader::ReadChildren(ContainerItem& container) {
    ReadUnindexed(container);
    container.RebuildIndex();
}

/// The index waits until all children are there: entry by entry it would cost the square of their
/// number.
void ItemReader::ReadUnindexed(ContainerItem& container) {
    boost::shared_ptr<Item> previous;
    while (fParser.DownToChild()) {
        ReadElement(container, previous);
        fParser.UpToParent();
    }
    container.SetChanged(false);
}

void ItemReader::ReadElement(ContainerItem& container, boost::shared_ptr<Item>& previous) {
    Element element(fParser.CurrentElementCode());
    fParser.ReadAllAttributes(fAttributes);
    for (AttributePair& attribute : fAttributes)
        element.Take(attribute);
    if (!element.isForThisPlatform)
        return;
    boost::shared_ptr<Item> item;
    if (element.name)
        item = MakeItem(element);
    // What is left unread beneath a wrapper, an unknown element or a leaf belongs here as well, in
    // front of the leaf.
    ReadUnindexed(container);
    if (item == nullptr)
        return;
    item->SetAttributes(std::move(element.foreign));
    Place(container, item, element.language, previous);
}

/// Takes the name and the value out of the element.
boost::shared_ptr<Item> ItemReader::MakeItem(Element& element) {
    UString name = std::move(*element.name);
    if (element.type == Item::kUString)
        return CreateUString(std::move(name),
                             element.value ? std::move(*element.value) : fParser.ReadText());
    const UString value = std::move(element.value).value_or(UString());
    switch (element.type) {
    case Item::kRawData:
        return MakeRawData(std::move(name), element.size);
    case Item::kDouble:
        return boost::make_shared<DoubleItem>(std::move(name), UStringToDouble(value));
    case Item::kOSType:
        return boost::make_shared<OSTypeItem>(std::move(name), UStringToOSType(value));
    case Item::kSInt32:
        return boost::make_shared<SInt32Item>(
            std::move(name), static_cast<int>(UStringToNum(value, kDecimalFormat)));
    case Item::kContainer:
        return MakeContainer(std::move(name));
    default:
        std::fputs("ParseSerialXML: unknown type!", stdout);
        return {};
    }
}

boost::shared_ptr<Item> ItemReader::MakeRawData(UString name, const UString& size) {
    const auto count = static_cast<std::uint32_t>(UStringToNum(size, kDecimalFormat));
    return CreateRawData(std::move(name), Decode(fParser.ReadText(), count));
}

boost::shared_ptr<Item> ItemReader::MakeContainer(UString name) {
    auto container = CreateContainer(std::move(name));
    ReadChildren(*container);
    return container;
}

/// A translation takes the place of the entry right before it; other languages are left out.
void ItemReader::Place(ContainerItem& container, const boost::shared_ptr<Item>& item,
                       unsigned int language, boost::shared_ptr<Item>& previous) const {
    const bool isDefault = language == kDefaultLanguage;
    if (!isDefault && language != fLanguage) {
        previous.reset();
        return;
    }
    if (!isDefault && previous != nullptr && previous->GetName() == item->GetName() &&
        previous->GetType() == item->GetType())
        RemoveLast(container.fItems, previous);
    container.fItems.push_back(item);
    previous = item;
}

} // namespace Kestrin
