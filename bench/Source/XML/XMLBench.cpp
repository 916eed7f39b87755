#include "XML/XMLSerializable.h"

#include <benchmark/benchmark.h>
#include <libxml/xmlreader.h>
#include <libxml/xmlwriter.h>
#include <malloc.h>

#include <cstring>
#include <istream>
#include <random>
#include <streambuf>

// Reading a resource file of 10 MiB into a tree and writing it out again. The bare reader, which
// fetches each element's name and attributes and builds nothing, is the limit for everything that
// stands on libxml2's reader.

namespace {

constexpr std::size_t kFileSize = 10 * 1024 * 1024;

/// How string items are written: with a value or a text, in tables of a thousand or in one.
enum Form { kValues, kTexts, kOneTable };

constexpr const char* kFormNames[] = {"Values", "Texts", "OneTable"};

/// Words as many and as different as those of a language.
const std::vector<std::string>& Words() {
    static const std::vector<std::string> words = [] {
        static const char* syllables[] = {"ka",  "lo",      "mi",  "ter", "sun", "ra",
                                          "vel", "dor",     "in",  "pos", "gro", "up",
                                          "val", "u\u00e9", "num", "ber"};
        std::mt19937 random(2);
        std::vector<std::string> made(2000);
        for (std::string& word : made) {
            for (auto count = 1 + random() % 4; count > 0; --count)
                word += syllables[random() % std::size(syllables)];
        }
        return made;
    }();
    return words;
}

/// A text of a few words.
std::string Sentence(std::mt19937& random) {
    std::string text;
    for (auto count = 3 + random() % 5; count > 0; --count)
        text += std::string(text.empty() ? "" : " ") + Words()[random() % Words().size()];
    return text;
}

std::string Entry(Form form, std::mt19937& random) {
    const std::string start = "\t\t<TEXT name=\"" + Sentence(random) + "\"";
    return form == kTexts ? start + ">" + Sentence(random) + "</TEXT>\n"
                          : start + " value=\"" + Sentence(random) + "\"/>\n";
}

std::string MakeFile(Form form) {
    std::mt19937 random(1);
    const unsigned int perTable = form == kOneTable ? ~0U : 1000;
    std::string file = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<resource_list>\n"
                       "\t<XSET name=\"all\">\n\t<XSET name=\"0\">\n";
    for (unsigned int number = 1; file.size() < kFileSize; ++number) {
        if (number % perTable == 0)
            file += "\t</XSET>\n\t<XSET name=\"" + std::to_string(number) + "\">\n";
        file += Entry(form, random);
    }
    return file + "\t</XSET>\n\t</XSET>\n</resource_list>\n";
}

const std::string& File(Form form) {
    static const std::string files[] = {MakeFile(kValues), MakeFile(kTexts), MakeFile(kOneTable)};
    return files[form];
}

// Reading

/// A file that lies ready in memory, so that no contender pays for a copy of it.
class MemoryStream : private std::streambuf, public std::istream {
public:
    explicit MemoryStream(const std::string& file)
        : std::istream(static_cast<std::streambuf*>(this)) {
        char* const start = const_cast<char*>(file.data());
        setg(start, start, start + file.size());
    }
};

struct Ours {
    static auto Read(const std::string& file) {
        MemoryStream stream(file);
        return Kestrin::ReadContainerFromFile(&stream, Kestrin::kDefaultLanguage);
    }
};

int ReadStream(void* context, char* buffer, int length) {
    auto& stream = *static_cast<MemoryStream*>(context);
    stream.read(buffer, length);
    return static_cast<int>(stream.gcount());
}

std::size_t FetchAttributes(xmlTextReader* reader) {
    std::size_t length = 0;
    for (int i = 0, count = xmlTextReaderAttributeCount(reader); i < count; ++i) {
        xmlTextReaderMoveToAttributeNo(reader, i);
        length += std::strlen(reinterpret_cast<const char*>(xmlTextReaderConstName(reader)));
        length += std::strlen(reinterpret_cast<const char*>(xmlTextReaderConstValue(reader)));
    }
    xmlTextReaderMoveToElement(reader);
    return length;
}

struct BareReader {
    static std::size_t Read(const std::string& file) {
        MemoryStream stream(file);
        xmlTextReader* reader =
            xmlReaderForIO(ReadStream, nullptr, &stream, nullptr, nullptr, XML_PARSE_NOENT);
        std::size_t length = 0;
        while (xmlTextReaderRead(reader) == 1) {
            const int type = xmlTextReaderNodeType(reader);
            if (type == XML_READER_TYPE_ELEMENT)
                length += xmlTextReaderConstLocalName(reader)[0] + FetchAttributes(reader);
            else if (type == XML_READER_TYPE_TEXT)
                length += xmlTextReaderConstValue(reader)[0];
        }
        xmlFreeTextReader(reader);
        return length;
    }
};

struct Dom {
    struct Free {
        void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
    };
    static std::unique_ptr<xmlDoc, Free> Read(const std::string& file) {
        return std::unique_ptr<xmlDoc, Free>(xmlReadMemory(
            file.data(), static_cast<int>(file.size()), nullptr, nullptr, XML_PARSE_NOENT));
    }
};

/// Times the reading, each time on a heap like that of a program that just started: what was freed
/// before belongs to the system again. What is read is freed aside.
template <typename Contender>
void Read(benchmark::State& state, Form form) {
    const std::string& file = File(form);
    malloc_trim(0);
    for (auto _ : state) {
        auto result = Contender::Read(file);
        benchmark::DoNotOptimize(result);
        state.PauseTiming();
        result = {};
        malloc_trim(0);
        state.ResumeTiming();
    }
}

// Writing

struct OurWriter {
    boost::shared_ptr<Kestrin::ContainerItem> tree;
    explicit OurWriter(Form form)
        : tree(Ours::Read(File(form))) {}
    std::size_t Write() const { return Kestrin::WriteSerializedString(*tree).size(); }
};

/// The same elements, attributes and layout from texts that lie ready as UTF-8.
struct BareWriter {
    struct Line {
        std::string name;
        std::string value;
    };
    std::vector<Line> lines;

    explicit BareWriter(Form form) {
        const auto tree = Ours::Read(File(form));
        for (const auto& table : tree->GetItems()) {
            lines.push_back({table->GetName().utf8_str(), ""});
            for (const auto& item : static_cast<Kestrin::ContainerItem&>(*table).GetItems())
                lines.push_back({item->GetName().utf8_str(),
                                 static_cast<Kestrin::UStringItem&>(*item).GetValue().utf8_str()});
        }
    }

    static const xmlChar* Bytes(const std::string& text) {
        return reinterpret_cast<const xmlChar*>(text.c_str());
    }

    std::size_t Write() const {
        xmlBuffer* buffer = xmlBufferCreate();
        xmlTextWriter* writer = xmlNewTextWriterMemory(buffer, 0);
        xmlTextWriterStartElement(writer, BAD_CAST "resource_list");
        for (const Line& line : lines) {
            xmlTextWriterWriteRawLen(writer, BAD_CAST "\n\t\t", 3);
            xmlTextWriterStartElement(writer, BAD_CAST "TEXT");
            xmlTextWriterWriteAttribute(writer, BAD_CAST "name", Bytes(line.name));
            xmlTextWriterWriteString(writer, Bytes(line.value));
            xmlTextWriterEndElement(writer);
        }
        xmlTextWriterEndElement(writer);
        xmlTextWriterFlush(writer);
        const auto size = static_cast<std::size_t>(xmlBufferLength(buffer));
        xmlFreeTextWriter(writer);
        xmlBufferFree(buffer);
        return size;
    }
};

template <typename Contender>
void Write(benchmark::State& state) {
    const Contender contender(kTexts);
    for (auto _ : state)
        benchmark::DoNotOptimize(contender.Write());
}

template <typename Contender>
void RegisterRead(const char* contender) {
    for (Form form : {kValues, kTexts, kOneTable})
        benchmark::RegisterBenchmark(
            (std::string("Read10MiB/") + kFormNames[form] + "/" + contender).c_str(),
            [form](benchmark::State& state) { Read<Contender>(state, form); })
            ->Unit(benchmark::kMillisecond);
}

const bool kRegistered = [] {
    RegisterRead<Ours>("ours");
    RegisterRead<BareReader>("bare-reader");
    RegisterRead<Dom>("libxml2-dom");
    benchmark::RegisterBenchmark("Write10MiB/ours", Write<OurWriter>)
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("Write10MiB/bare-writer", Write<BareWriter>)
        ->Unit(benchmark::kMillisecond);
    return true;
}();

} // namespace
