#include "XML/ItemReader.h"

#include "Diagnostics/Failure.h"
#include "Strings/TextConversions.h"
#include "XML/ItemNames.h"

#include <algorithm>
#include <boost/smart_ptr/make_shared.hpp>
#include <cstdio>
#include <cstring>

namespace Kestrin {

namespace {

constexpr unsigned int kThisPlatform = FourCharCode("MacX");

// Room that a file may claim beyond what its text fills.
constexpr std::size_t kRawDataSlack = 1024 * 1024;
constexpr int kRawDataTooLargeLine = 412;

const UString* FindValue(const AttributeList& attributes, const UString& name) {
    const auto found =
        std::find_if(attributes.begin(), attributes.end(),
                     [&name](const AttributePair& pair) { return pair.name == name; });
    return found != attributes.end() ? &found->value : nullptr;
}

/// Takes out an item of which one of the last ones is known to be the place.
void RemoveLast(std::vector<boost::shared_ptr<Item>>& items, const boost::shared_ptr<Item>& item) {
    items.erase(std::next(std::find(items.rbegin(), items.rend(), item)).base());
}

const UString& ValueOrEmpty(const UString* value) {
    return value != nullptr ? *value : UString::kEmptyString;
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
    Item::ItemType type = 0;
    AttributeList attributes;
    unsigned int language = kDefaultLanguage;
    const UString* name = nullptr;
    const UString* value = nullptr;
    const UString* size = nullptr;
    const UString* platform = nullptr;

    explicit Element(Parser& parser)
        : type(parser.CurrentElementCode()) {
        parser.ReadAllAttributes(attributes);
        name = FindValue(attributes, kItemNameAttributeUString);
        value = FindValue(attributes, kValueAttributeUString);
        size = FindValue(attributes, kSizeAttributeUString);
        platform = FindValue(attributes, kPlatformAttributeUString);
        if (const UString* code = FindValue(attributes, kLanguageAttributeUString))
            language = UStringToOSType(*code);
    }

    bool IsForThisPlatform() const {
        return platform == nullptr || UStringToOSType(*platform) == kThisPlatform;
    }
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
    Element element(fParser);
    if (!element.IsForThisPlatform())
        return;
    boost::shared_ptr<Item> item;
    if (element.name != nullptr)
        item = MakeItem(element);
    // What is left unread beneath a wrapper, an unknown element or a leaf belongs here as well, in
    // front of the leaf.
    ReadUnindexed(container);
    if (item == nullptr)
        return;
    item->SetAttributes(std::move(element.attributes));
    Place(container, item, element.language, previous);
}

boost::shared_ptr<Item> ItemReader::MakeItem(const Element& element) {
    const UString& name = *element.name;
    const UString& value = ValueOrEmpty(element.value);
    switch (element.type) {
    case Item::kRawData:
        return MakeRawData(element);
    case Item::kDouble:
        return boost::make_shared<DoubleItem>(name, UStringToDouble(value));
    case Item::kOSType:
        return boost::make_shared<OSTypeItem>(name, UStringToOSType(value));
    case Item::kSInt32:
        return boost::make_shared<SInt32Item>(
            name, static_cast<int>(UStringToNum(value, kDecimalFormat)));
    case Item::kUString:
        return element.value != nullptr ? CreateUString(name, value)
                                        : CreateUString(name, fParser.ReadText());
    case Item::kContainer:
        return MakeContainer(element);
    default:
        std::fputs("ParseSerialXML: unknown type!", stdout);
        return {};
    }
}

boost::shared_ptr<Item> ItemReader::MakeRawData(const Element& element) {
    const long size = UStringToNum(ValueOrEmpty(element.size), kDecimalFormat);
    return CreateRawData(*element.name,
                         Decode(fParser.ReadText(), static_cast<std::uint32_t>(size)));
}

boost::shared_ptr<Item> ItemReader::MakeContainer(const Element& element) {
    auto container = CreateContainer(*element.name);
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
