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
void RemoveLast(std::vector<boost::shared_ptr<Item>>& items, const Item* item) {
    const auto isItem = [item](const auto& other) { return other.get() == item; };
    items.erase(std::next(std::find_if(items.rbegin(), items.rend(), isItem)).base());
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

    /// Takes an attribute, in UTF-8.
    void Take(std::string_view attribute, const char* text) {
        if (attribute == kItemNameAttribute)
            name.emplace(text, UString::kUTF8);
        else if (attribute == kValueAttribute)
            value.emplace(text, UString::kUTF8);
        else if (attribute == kSizeAttribute)
            size = UString(text, UString::kUTF8);
        else
            TakeForeign(UString(std::string(attribute), UString::kUTF8),
                        UString(text, UString::kUTF8));
    }

    void TakeForeign(UString attribute, UString text) {
        if (attribute == kLanguageAttributeUString)
            language = UStringToOSType(text);
        else if (attribute == kPlatformAttributeUString)
            isForThisPlatform = UStringToOSType(text) == kThisPlatform;
        foreign.push_back({std::move(attribute), std::move(text)});
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
    const Item* previous = nullptr;
    while (fParser.DownToChild()) {
        ReadElement(container, previous);
        fParser.UpToParent();
    }
    container.SetChanged(false);
}

void ItemReader::ReadElement(ContainerItem& container, const Item*& previous) {
    Element element(fParser.CurrentElementCode());
    fParser.VisitAttributes(
        [&element](const char* name, const char* value) { element.Take(name, value); });
    if (!element.isForThisPlatform)
        return;
    boost::shared_ptr<Item> item;
    if (element.name)
        item = MakeItem(element);
    // What is left unread beneath a wrapper, an unknown element or a leaf belongs here as well, in
    // front of the leaf.
    ReadChildren(container);
    if (item == nullptr)
        return;
    item->SetAttributes(std::move(element.foreign));
    Place(container, std::move(item), element.language, previous);
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
void ItemReader::Place(ContainerItem& container, boost::shared_ptr<Item> item,
                       unsigned int language, const Item*& previous) const {
    const bool isDefault = language == kDefaultLanguage;
    if (!isDefault && language != fLanguage) {
        previous = nullptr;
        return;
    }
    if (!isDefault && previous != nullptr && previous->GetName() == item->GetName() &&
        previous->GetType() == item->GetType())
        RemoveLast(container.fItems, previous);
    previous = item.get();
    container.fItems.push_back(std::move(item));
}

} // namespace Kestrin
