#include "XML/ItemReader.h"

#include "Diagnostics/Failure.h"
#include "Strings/TextConversions.h"
#include "XML/ItemNames.h"

#include <algorithm>
#include <boost/smart_ptr/make_shared.hpp>
#include <cstdio>

namespace Kestrin {

namespace {

constexpr unsigned int kThisPlatform = FourCharCode("MacX");

constexpr int kRawDataTooLargeLine = 412;

/// Takes out an item of which one of the last ones is known to be the place.
void RemoveLast(std::vector<boost::shared_ptr<Item>>& items, const Item* item) {
    const auto isItem = [item](const auto& other) { return other.get() == item; };
    items.erase(std::next(std::find_if(items.rbegin(), items.rend(), isItem)).base());
}

const UString& TextOf(const UString* word) {
    return word != nullptr ? *word : UString::kEmptyString;
}

} // namespace

ItemReader::Words::Words(const AttributeList& attributes) {
    for (const auto& [attribute, text] : attributes) {
        if (attribute == kItemNameAttributeUString)
            name = &text;
        else if (attribute == kValueAttributeUString)
            value = &text;
        else if (attribute == kSizeAttributeUString)
            size = &text;
        else if (attribute == kLanguageAttributeUString)
            language = UStringToOSType(text);
        else if (attribute == kPlatformAttributeUString)
            isForThisPlatform = UStringToOSType(text) == kThisPlatform;
    }
}

ItemReader::ItemReader(Parser& parser, unsigned int language)
    : fParser(parser)
    , fLanguage(language) {}

void ItemReader::Read(ContainerItem& container) {
    ReadChildren(container);
    container.MakeIndex();
    container.SetChanged(false);
}

void ItemReader::ReadChildren(ContainerItem& container) {
    const Item* previous = nullptr;
    while (fParser.DownToChild()) {
        ReadElement(container, previous);
        fParser.UpToParent();
    }
}

void ItemReader::ReadElement(ContainerItem& container, const Item*& previous) {
    const UString type(fParser.CurrentElement().Local(), UString::kASCII);
    fParser.ReadAllAttributes(fAttributes);
    const Words words(fAttributes);
    if (!words.isForThisPlatform)
        return;
    // What is needed of the list is taken now: those of the children take its place.
    PackedAttributes attributes;
    boost::shared_ptr<Item> item;
    if (words.name != nullptr) {
        attributes = PackedAttributes(fAttributes, *words.name);
        item = MakeItem(UStringToOSType(type), words);
    }
    // What is left unread beneath a wrapper, an unknown element or a leaf belongs here as well, in
    // front of the leaf.
    ReadChildren(container);
    if (item == nullptr)
        return;
    item->fAttributes = std::move(attributes);
    Place(container, std::move(item), words.language, previous);
}

/// Null for one of an unknown type.
boost::shared_ptr<Item> ItemReader::MakeItem(Item::ItemType type, const Words& words) {
    const UString& name = *words.name;
    const UString& value = TextOf(words.value);
    switch (type) {
    case Item::kUString:
        return CreateUString(name, words.value != nullptr ? value : fParser.ReadText());
    case Item::kRawData:
        return MakeRawData(name, TextOf(words.size));
    case Item::kDouble:
        return boost::make_shared<DoubleItem>(name, UStringToDouble(value));
    case Item::kOSType:
        return boost::make_shared<OSTypeItem>(name, UStringToOSType(value));
    case Item::kSInt32:
        return boost::make_shared<SInt32Item>(
            name, static_cast<int>(UStringToNum(value, kDecimalFormat)));
    case Item::kContainer:
        return MakeContainer(name);
    default:
        std::fputs("ParseSerialXML: unknown type!", stdout);
        return {};
    }
}

boost::shared_ptr<Item> ItemReader::MakeRawData(UString name, const UString& size) {
    auto buffer = boost::make_shared<RawDataBuffer>();
    buffer->size = static_cast<std::uint32_t>(UStringToNum(size, kDecimalFormat));
    const UString text = fParser.ReadText();
    // Every byte takes two digits.
    const std::size_t excess =
        buffer->size - std::min<std::size_t>(buffer->size, text.length() / 2);
    if (excess > fSlack)
        FailString("XMLSerializable", "Source/XML/XMLSerializable", kRawDataTooLargeLine);
    fSlack -= excess;
    buffer->data = std::make_unique<unsigned char[]>(buffer->size);
    UStringToRawData(text, buffer->data.get(), buffer->size);
    return CreateRawData(std::move(name), std::move(buffer));
}

boost::shared_ptr<Item> ItemReader::MakeContainer(UString name) {
    auto container = CreateContainer(std::move(name));
    Read(*container);
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
