#include "Resources/FileSpecification.h"
#include "Resources/ResourceAccess.h"
#include "XML/ItemReader.h"
#include "XML/XMLSerializable.h"

#include <boost/smart_ptr/shared_ptr.hpp>
#include <fstream>

namespace Kestrin {

boost::shared_ptr<ContainerItem> ReadContainerFromFile(std::istream* stream,
                                                       unsigned int language) {
    if (stream == nullptr)
        return {};
    Parser parser(*stream, Parser::kDontValidate);
    ContainerItem document((UString()));
    ItemReader(parser, language).Read(document);
    if (document.GetItems().empty())
        return {};
    return boost::dynamic_pointer_cast<ContainerItem>(document.GetItems().front());
}

boost::shared_ptr<ContainerItem> ReadSerializedFile(const FileSpecification& file) {
    if (!file.Exists())
        return {};
    std::ifstream stream(file.GetPOSIXPath(), std::ios::binary);
    return ReadContainerFromFile(&stream, kDefaultLanguage);
}

boost::shared_ptr<ContainerItem> ReadSerializedResourceFile(const UString& name,
                                                            const UString& type) {
    return ReadSerializedFile(ResourceAccess::Instance().GetFile(name, type));
}

} // namespace Kestrin
