#include "Strings/TextConversions.h"
#include "XML/ItemNames.h"
#include "XML/XMLSerializable.h"
#include "XML/XMLWriter.h"

#include <algorithm>
#include <boost/smart_ptr/make_shared.hpp>
#include <string_view>

namespace Kestrin {

namespace {

constexpr std::size_t kBytesPerLine = 16;

void WriteValue(Writer& writer, const UString& value) {
    static const Name name(kValueAttributeUString, UString());
    writer.Attribute(name, value);
}

/// Hyphens in a row would end the comment: each run is written as one.
UString WithoutHyphenRuns(UString comment) {
    static const UString twoHyphens = "--"_u;
    for (std::size_t at = 0; (at = comment.find(twoHyphens, at)) != std::string::npos;)
        comment.erase(at, 1);
    return comment;
}

bool HasOwnAttribute(const UString& name) {
    return name == kItemNameAttributeUString || name == kValueAttributeUString ||
           name == kSizeAttributeUString;
}

std::string HexLine(const unsigned char* bytes, std::size_t count) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string line;
    for (std::size_t i = 0; i < count; ++i) {
        line += digits[bytes[i] >> 4];
        line += digits[bytes[i] & 0xF];
    }
    return line;
}

void WriteHexLines(Writer& writer, const RawDataBuffer& buffer) {
    for (std::size_t at = 0; at < buffer.size; at += kBytesPerLine) {
        const std::size_t count = std::min(kBytesPerLine, buffer.size - at);
        const std::string line = HexLine(buffer.data.get() + at, count);
        writer.NewLine();
        writer.Write(UString(line, UString::kASCII));
    }
}

} // namespace

Item::Item(ItemType type, UString name)
    : fType(type)
    , fNameHash(HashOf(name))
    , fName(std::move(name)) {}

std::uint32_t Item::HashOf(const UString& name) {
    const std::string_view bytes(reinterpret_cast<const char*>(name.data()),
                                 name.length() * sizeof(unsigned short));
    return static_cast<std::uint32_t>(std::hash<std::string_view>()(bytes));
}

bool Item::HasChanged() const {
    return fChanged;
}

void Item::SetComment(const UString& comment) {
    fComment = comment.empty() ? nullptr : std::make_unique<UString>(comment);
    fChanged = true;
}

void Item::SetAttributes(const AttributeList& attributes) {
    fAttributes = PackedAttributes(attributes, fName);
    fChanged = true;
}

void Item::Write(Writer& writer) {
    static const Name nameAttribute(kItemNameAttributeUString, UString());
    if (fComment != nullptr) {
        writer.NewLine();
        writer.Comment(WithoutHyphenRuns(*fComment));
    }
    const Name element(OSTypeToUString(fType), UString());
    writer.StartElement(element);
    writer.Attribute(nameAttribute, fName);
    for (const AttributePair& pair : GetAttributes()) {
        if (!HasOwnAttribute(pair.name))
            writer.Attribute(Name(pair.name, UString()), pair.value);
    }
    DoItemWrite(writer);
    fChanged = false;
    writer.EndElement(element);
}

template <>
void SInt32Item::DoItemWrite(Writer& writer) const {
    WriteValue(writer, NumToUString(GetValue(), kDecimalFormat));
}

template <>
void DoubleItem::DoItemWrite(Writer& writer) const {
    WriteValue(writer, DoubleToUStringPrecise(GetValue()));
}

template <>
void OSTypeItem::DoItemWrite(Writer& writer) const {
    WriteValue(writer, OSTypeToUString(GetValue()));
}

template <>
void UStringItem::DoItemWrite(Writer& writer) const {
    writer.Write(GetValue());
}

template <>
void RawDataItem::DoItemWrite(Writer& writer) const {
    static const Name sizeAttribute(kSizeAttributeUString, UString());
    const boost::shared_ptr<RawDataBuffer>& buffer = GetValue();
    if (buffer == nullptr || buffer->data == nullptr)
        return;
    writer.Attribute(sizeAttribute, NumToUString(buffer->size, kDecimalFormat));
    WriteHexLines(writer, *buffer);
}

void ContainerItem::DoItemWrite(Writer& writer) const {
    for (const boost::shared_ptr<Item>& child : fItems)
        boost::shared_ptr<Item>(child)->Write(writer);
}

boost::shared_ptr<UStringItem> CreateUString(UString name, UString value) {
    return boost::make_shared<UStringItem>(std::move(name), std::move(value));
}

boost::shared_ptr<RawDataItem> CreateRawData(UString name, boost::shared_ptr<RawDataBuffer> data) {
    return boost::make_shared<RawDataItem>(std::move(name), std::move(data));
}

} // namespace Kestrin
