#pragma once

#include "XML/XMLParser.h"
#include "XML/XMLSerializable.h"

namespace Kestrin {

/// Builds items from the elements beneath a parser's cursor.
class ItemReader {
public:
    /// `language` is preferred over the default language; see ReadContainerFromFile.
    ItemReader(Parser& parser, unsigned int language);

    /// Reads the children of the parser's current element into `container`, which has none yet and
    /// then counts as not changed.
    void Read(ContainerItem& container);

private:
    /// What the attributes of an element say to the reader; texts are the list's, null without one.
    struct Words {
        explicit Words(const AttributeList& attributes);

        const UString* name = nullptr;
        const UString* value = nullptr;
        const UString* size = nullptr;
        /// Entries that name none are in the default one.
        unsigned int language = kDefaultLanguage;
        bool isForThisPlatform = true;
    };

    void ReadChildren(ContainerItem& container);
    void ReadElement(ContainerItem& container, const Item*& previous);
    boost::shared_ptr<Item> MakeItem(Item::ItemType type, const Words& words);
    boost::shared_ptr<Item> MakeRawData(UString name, const UString& size);
    boost::shared_ptr<Item> MakeContainer(UString name);
    void Place(ContainerItem& container, boost::shared_ptr<Item> item, unsigned int language,
               const Item*& previous) const;

    Parser& fParser;
    unsigned int fLanguage;
    /// Those of the element that is being read.
    AttributeList fAttributes;
    /// Room that the document's raw data may still claim beyond what its text fills.
    std::size_t fSlack = std::size_t{1} << 20;
};

} // namespace Kestrin
