#pragma once

#include "XML/XMLParser.h"
#include "XML/XMLSerializable.h"

namespace Kestrin {

/// Builds items from the elements beneath a parser's cursor.
class ItemReader {
public:
    /// `language` is preferred over the default language; see ReadContainerFromFile.
    ItemReader(Parser& parser, unsigned int language);

    /// Reads the children of the parser's current element into `container`, which then counts as
    /// not changed.
    void ReadChildren(ContainerItem& container);

private:
    struct Element;

    void ReadElement(ContainerItem& container, const Item*& previous);
    boost::shared_ptr<Item> MakeItem(Element& element);
    boost::shared_ptr<Item> MakeRawData(UString name, const UString& size);
    boost::shared_ptr<Item> MakeContainer(UString name);
    void Place(ContainerItem& container, boost::shared_ptr<Item> item, unsigned int language,
               const Item*& previous) const;

    Parser& fParser;
    unsigned int fLanguage;
};

} // namespace Kestrin
