#include "Diagnostics/Failure.h"
#include "Resources/FileSpecification.h"
#include "XML/SafeFile.h"
#include "XML/XMLSerializable.h"
#include "XML/XMLWriter.h"

#include <libxml/xmlwriter.h>

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

} // namespace

std::string WriteSerializedString(Item& item) {
    const Name root("resource_list");
    MemoryOutput output;
    Writer writer(output.TextWriter());
    writer.StartElement(root);
    item.Write(writer);
    writer.EndElement(root);
    return kDeclaration + output.Text() + "\n";
}

std::error_code WriteSerializedFile(Item& item, const FileSpecification& file) {
    const std::string path = file.GetPOSIXPath();
    if (path.empty())
        return std::make_error_code(std::errc::no_such_file_or_directory);
    return ReplaceFile(path, WriteSerializedString(item));
}

} // namespace Kestrin
