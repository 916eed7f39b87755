#pragma once

#include "Strings/TextConversions.h"
#include "XML/PackedAttributes.h"

#include <boost/smart_ptr/shared_ptr.hpp>
#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace Kestrin {

class FileSpecification;
class ItemReader;
class Writer;

/// The language of entries that name none, and the one that the file readers ask for.
constexpr unsigned int kDefaultLanguage = FourCharCode("enus");

/// A named value in a tree of settings or resources, which has an XML form: one element, named by
/// the type, with the name as its attribute "name".
///
///     <XSET name="window">
///         <SINT name="width" value="640"/>
///         <TEXT name="title">Main</TEXT>
///     </XSET>
///
/// Items are shared and live as long as the last container or caller that holds them.
class Item {
public:
    /// A four-character code.
    using ItemType = unsigned int;

    static constexpr ItemType kContainer = FourCharCode("XSET");
    static constexpr ItemType kSInt32 = FourCharCode("SINT");
    static constexpr ItemType kDouble = FourCharCode("DBLE");
    static constexpr ItemType kOSType = FourCharCode("OSTY");
    static constexpr ItemType kUString = FourCharCode("TEXT");
    static constexpr ItemType kRawData = FourCharCode("DATA");

    Item(const Item&) = delete;
    Item& operator=(const Item&) = delete;

    /// Whether this item or one beneath it was changed since it was made, read or written.
    virtual bool HasChanged() const;

    virtual ~Item() = default;

    /// Writes the value: attributes first, then content, into the element that is open.
    virtual void DoItemWrite(Writer& writer) const = 0;

    /// Writes the item, and what is beneath it, as one element with its comment in front. It then
    /// counts as not changed.
    void Write(Writer& writer);

    ItemType GetType() const { return fType; }
    const UString& GetName() const { return fName; }

    /// Stands in front of the element. It is not read back.
    const UString& GetComment() const { return fComment ? *fComment : UString::kEmptyString; }
    void SetComment(const UString& comment);

    /// All attributes of the element that the item was read from. They are written back unchanged,
    /// save "name", "value" and "size", for which the item writes its own.
    AttributeList GetAttributes() const { return fAttributes.Unpacked(fName); }
    void SetAttributes(const AttributeList& attributes);

protected:
    Item(ItemType type, UString name);

    void SetChanged(bool changed) { fChanged = changed; }

private:
    friend class ContainerItem;
    friend class ItemReader;
    friend std::error_code WriteSerializedFile(Item& item, const FileSpecification& file);

    static std::uint32_t HashOf(const UString& name);

    ItemType fType;
    std::uint32_t fNameHash; ///< so that an index of thousands is made without a look at each name
    UString fName;
    bool fChanged = false;
    std::unique_ptr<UString> fComment; ///< null when empty, as nearly all are
    PackedAttributes fAttributes;
};

/// A leaf: a name and one value of a type that the code `kType` stands for.
template <Item::ItemType kType, typename Value>
class ValueItem : public Item {
public:
    ValueItem(UString name, Value value)
        : Item(kType, std::move(name))
        , fValue(std::move(value)) {}

    const Value& GetValue() const { return fValue; }

    void SetValue(Value value) {
        fValue = std::move(value);
        SetChanged(true);
    }

    void DoItemWrite(Writer& writer) const override;

private:
    Value fValue;
};

/// A block of bytes. Null `data` means no data at all, whatever `size` says.
struct RawDataBuffer {
    std::uint32_t size = 0;
    std::unique_ptr<unsigned char[]> data;
};

using SInt32Item = ValueItem<Item::kSInt32, int>;
using DoubleItem = ValueItem<Item::kDouble, double>;
using OSTypeItem = ValueItem<Item::kOSType, unsigned int>;
using UStringItem = ValueItem<Item::kUString, UString>;

/// Its buffer may be null and may be shared with others.
using RawDataItem = ValueItem<Item::kRawData, boost::shared_ptr<RawDataBuffer>>;

/// An inner node: children in the order in which they were added, found by name. Several threads
/// may look into a container at once while none changes it.
class ContainerItem : public Item {
public:
    explicit ContainerItem(UString name);

    /// Releases the children, the last first. Trees of any depth are destroyed without recursion.
    ~ContainerItem() override;

    // Children. Several may share a name; the name then finds the one that was added last.

    /// Null does nothing. Adding the container to itself is a fault.
    void AddItem(const boost::shared_ptr<Item>& item);

    /// Removes that very object; of namesakes that remain, the last is found from then on. Null and
    /// what is no child change nothing. Removing does not count as a change.
    void RemoveItem(boost::shared_ptr<Item> item);

    /// The child that the name finds, or null when there is none or it is of another type.
    boost::shared_ptr<Item> GetItem(ItemType type, const UString& name) const;
    boost::shared_ptr<UStringItem> GetUStringItem(const UString& name) const;

    const std::vector<boost::shared_ptr<Item>>& GetItems() const { return fItems; }

    bool HasChanged() const override;
    void DoItemWrite(Writer& writer) const override;

private:
    friend class ItemReader;

    using Items = std::vector<boost::shared_ptr<Item>>;

    void ReleaseItems();

    void MakeIndex();
    void AddToIndex(std::size_t place);
    std::size_t EntryOf(const UString& name, std::uint32_t nameHash) const;
    const boost::shared_ptr<Item>& ItemOf(std::uint64_t entry) const;

    Items fItems;
    /// A table of a power of two entries, of which at least half are free, that is 0; the others
    /// have the hash of a name above the place of its last item, counted from 1. A name stands at
    /// its hash or behind, with no free entry in between.
    std::vector<std::uint64_t> fIndex;
};

boost::shared_ptr<UStringItem> CreateUString(UString name, UString value);

/// The item shares `data`, which may be null.
boost::shared_ptr<RawDataItem> CreateRawData(UString name, boost::shared_ptr<RawDataBuffer> data);

boost::shared_ptr<ContainerItem> CreateContainer(UString name);

// Reading. The result is the document's first item, or null when that is no container. Elements
// without a name are looked through, so the customary root "resource_list" around it does not
// count. A document that cannot be read is a failure: it is reported and -50 is thrown.

/// Entries of `language` replace those of the default language right before them; entries of other
/// languages, and those for another platform, are left out. A null stream gives null.
boost::shared_ptr<ContainerItem> ReadContainerFromFile(std::istream* stream, unsigned int language);

/// In the default language. A file that does not exist gives null.
boost::shared_ptr<ContainerItem> ReadSerializedFile(const FileSpecification& file);

/// The file of that name and type (its extension) among the application's resources.
boost::shared_ptr<ContainerItem> ReadSerializedResourceFile(const UString& name,
                                                            const UString& type);

// Writing a whole document: the XML declaration, a root "resource_list" and in it the item, with a
// line break at the end.

/// The document as UTF-8.
std::string WriteSerializedString(Item& item);

/// Writes beside the file and puts the new one in its place when it is safely stored, so that the
/// old one is whole until then and stays after an error. An error leaves nothing else behind, and
/// the item counts as changed. What could not be read back as it is written is an error, too
/// (std::errc::illegal_byte_sequence): characters that XML has not, texts past its length, trees
/// past its depth.
std::error_code WriteSerializedFile(Item& item, const FileSpecification& file);

} // namespace Kestrin
