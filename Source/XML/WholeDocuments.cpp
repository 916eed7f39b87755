#include "Diagnostics/Failure.h"
#include "Resources/FileSpecification.h"
#include "XML/ItemNames.h"
#include "XML/SafeFile.h"
#include "XML/XMLParser.h"
#include "XML/XMLSerializable.h"
#include "XML/XMLWriter.h"

#include <libxml/xmlwriter.h>

#include <sstream>

namespace Kestrin {

namespace {

constexpr char kDeclaration[] = R"(<?xml version="1.0" encoding="UTF-8"?>)";

/// A libxml2 text writer that writes into memory.
class MemoryOutput {
public:
    MemoryOutput()
        : fBuffer(xmlBufferCreate())
        , fWriter(xmlNewTextWriterMemory(fBuffer.get(), 0)) {
        if (fWriter == nullptr)
            FailNILError("Source/XML/XMLWriter", 93);
    }

    xmlTextWriter* TextWriter() const { return fWriter.get(); }

    std::string Text() {
        xmlTextWriterFlush(fWriter.get());
        return {reinterpret_cast<const char*>(xmlBufferContent(fBuffer.get())),
                static_cast<std::size_t>(xmlBufferLength(fBuffer.get()))};
    }

private:
    struct Deleter {
        void operator()(xmlBuffer* buffer) const { xmlBufferFree(buffer); }
        void operator()(xmlTextWriter* writer) const { xmlFreeTextWriter(writer); }
    };

    std::unique_ptr<xmlBuffer, Deleter> fBuffer;
    std::unique_ptr<xmlTextWriter, Deleter> fWriter;
};

std::string Written(Item& item, bool& isWhole) {
    static const Name root(kRootNameUString, UString());
    MemoryOutput output;
    Writer writer(output.TextWriter());
    writer.StartElement(root);
    item.Write(writer);
    writer.EndElement(root);
    isWhole = writer.HasWrittenAll();
    return kDeclaration + output.Text() + "\n";
}

/// Whether the document is written in full and can be read to its end.
bool Document(Item& item, std::string& document) {
    try {
        bool isWhole = false;
        document = Written(item, isWhole);
        std::istringstream stream(document);
        Parser parser(stream, Parser::kDontValidate);
        while (parser.DownToChild())
            parser.UpToParent();
        return isWhole;
    } catch (int) {
        return false;
    }
}

std::error_code Replace(const std::string& path, Item& item) {
    std::string document;
    if (path.empty())
        return std::make_error_code(std::errc::no_such_file_or_directory);
    if (!Document(item, document))
        return std::make_error_code(std::errc::illegal_byte_sequence);
    return ReplaceFile(path, document);
}

} // namespace

std::string WriteSerializedString(Item& item) {
    bool isWhole = false;
    return Written(item, isWhole);
}

std::error_code WriteSerializedFile(Item& item, const FileSpecification& file) {
    const std::error_code error = Replace(file.GetPOSIXPath(), item);
    if (error)
        item.SetChanged(true);
    return error;
}

} // namespace Kestrin
