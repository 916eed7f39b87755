#include "XML/XMLParser.h"

#include "Diagnostics/Failure.h"
#include "XML/ItemNames.h"
#include "XML/XMLEntityGuard.h"

#include <libxml/hash.h>
#include <libxml/xmlreader.h>

#include <algorithm>
#include <cstring>
#include <istream>

namespace Kestrin {

namespace {

// The places that failures are known by.
constexpr int kNoReaderLine = 93;
constexpr int kReportedErrorLine = 416;
constexpr int kReaderFailedLine = 419;

constexpr int kErrorClass = 2;

const char* Chars(const xmlChar* text) {
    return reinterpret_cast<const char*>(text);
}

std::size_t Length(const xmlChar* text) {
    return std::strlen(Chars(text));
}

void Assign(UString& target, const xmlChar* text) {
    target.assign(text, Length(text), UString::kUTF8);
}

/// Whether it is the text already, of one-byte characters: cheaper than to read it once more.
bool IsAlready(const UString& target, const xmlChar* text) {
    return std::equal(
        target.data(), target.data() + target.length(), text, text + Length(text),
        [](unsigned short unit, xmlChar byte) { return unit == byte && byte < 0x80; });
}

UString ToUString(const xmlChar* text) {
    return text != nullptr ? UString(text, Length(text), UString::kUTF8) : UString();
}

[[noreturn]] void Fail(int line) {
    FailString(ErrType(), "Source/XML/XMLParser", line);
}

std::int64_t SeverityClass(xmlParserSeverities severity, std::int64_t otherwise) {
    switch (severity) {
    case XML_PARSER_SEVERITY_VALIDITY_WARNING:
        return 4;
    case XML_PARSER_SEVERITY_VALIDITY_ERROR:
        return 5;
    case XML_PARSER_SEVERITY_WARNING:
        return 3;
    case XML_PARSER_SEVERITY_ERROR:
        return kErrorClass;
    }
    return otherwise;
}

// Called by libxml2: nothing may be thrown from here.
void ErrorHandler(void* context, const char*, xmlParserSeverities severity,
                  xmlTextReaderLocatorPtr locator) {
    auto& record = *static_cast<Parser::ErrorRecord*>(context);
    record.severityClass = SeverityClass(severity, record.severityClass);
    if (record.IsSet())
        record.line = static_cast<std::uint32_t>(xmlTextReaderLocatorLineNumber(locator));
}

/// How many attributes the document's own DTD declares.
std::size_t DeclaredAttributes(xmlTextReader* reader) {
    const xmlNode* const node = xmlTextReaderCurrentNode(reader);
    const xmlDtd* const type = node != nullptr ? node->doc->intSubset : nullptr;
    if (type == nullptr || type->attributes == nullptr)
        return 0;
    return static_cast<std::size_t>(xmlHashSize(static_cast<xmlHashTable*>(type->attributes)));
}

bool IsText(int nodeType) {
    return nodeType == XML_READER_TYPE_TEXT || nodeType == XML_READER_TYPE_CDATA;
}

} // namespace

void Parser::ReaderDeleter::operator()(_xmlTextReader* reader) const {
    xmlFreeTextReader(reader);
}

Parser::Parser(std::istream& stream, Validate validate)
    : fStream(stream)
    , fGuard(std::make_unique<EntityGuard>()) {
    const int options = XML_PARSE_NOENT | (validate != kDontValidate ? XML_PARSE_DTDVALID : 0);
    fReader.reset(xmlReaderForIO(ReadCallback, nullptr, this, nullptr, nullptr, options));
    if (fReader == nullptr)
        Fail(kNoReaderLine);
    xmlTextReaderSetErrorHandler(fReader.get(), ErrorHandler, &fError);
}

Parser::~Parser() {
    fReader.reset();
}

int Parser::ReadCallback(void* context, char* buffer, int length) {
    auto& parser = *static_cast<Parser*>(context);
    std::istream& stream = parser.fStream;
    try {
        stream.read(buffer, length);
    } catch (...) {
        // A stream asked to throw has its state set all the same; what it read so far counts.
    }
    const auto count = static_cast<std::size_t>(stream.gcount());
    if (parser.fStartTagGuard.Takes({buffer, count}))
        return static_cast<int>(count);
    parser.fError.severityClass = kErrorClass;
    return -1;
}

// The walk.

bool Parser::DownToChild() {
    bool found = DoDownToChild();
    while (found && fFilter != nullptr && fFilter->Skips(*this)) {
        UpToParent();
        found = DoDownToChild();
    }
    return found;
}

bool Parser::DoDownToChild() {
    if (fEmpty || fState == kAtEnd) {
        fState = kAtEnd;
        return false;
    }
    for (int nodeType = 0; Advance(nodeType, false);) {
        if (IsText(nodeType)) {
            fState = kAfterContent;
            fPushedBack = true;
            return false;
        }
        if (nodeType == XML_READER_TYPE_END_ELEMENT) {
            fState = kAtEnd;
            return false;
        }
        if (nodeType == XML_READER_TYPE_ELEMENT) {
            fState = kAtStart;
            fEmpty = IsEmptyElement();
            ++fDepth;
            return true;
        }
    }
    return false;
}

void Parser::UpToParent() {
    if (!fEmpty && fState != kAtEnd && !SkipToEnd())
        return;
    fEmpty = false;
    fState = fDepth < 2 ? kAtDocument : kAfterContent;
    --fDepth;
}

/// False when the document ends first.
bool Parser::SkipToEnd() {
    int nesting = 1;
    for (int nodeType = 0; nesting > 0;) {
        if (!Advance(nodeType, false))
            return false;
        if (nodeType == XML_READER_TYPE_ELEMENT && !IsEmptyElement())
            ++nesting;
        else if (nodeType == XML_READER_TYPE_END_ELEMENT)
            --nesting;
    }
    return true;
}

bool Parser::Advance(int& nodeType, bool stopAtInstructions) {
    for (;;) {
        if (!fPushedBack && !ReadNode())
            return false;
        fPushedBack = false;
        nodeType = Checked(xmlTextReaderNodeType(fReader.get()));
        if (nodeType != XML_READER_TYPE_PROCESSING_INSTRUCTION)
            return true;
        KeepInstruction();
        if (stopAtInstructions)
            return true;
    }
}

bool Parser::ReadNode() {
    const EntityGuard::Refusal refusal(fError);
    const bool isThere = Checked(xmlTextReaderRead(fReader.get())) != 0;
    if (!fStartTagGuard.TakesNode(DeclaredAttributes(fReader.get())))
        Fail(kReportedErrorLine);
    return isThere;
}

void Parser::KeepInstruction() {
    if (fCollectInstructions)
        fInstructions.emplace_back(ToUString(xmlTextReaderConstName(fReader.get())),
                                   ToUString(xmlTextReaderConstValue(fReader.get())));
}

bool Parser::IsEmptyElement() {
    return Checked(xmlTextReaderIsEmptyElement(fReader.get())) == 1;
}

int Parser::Checked(int answer) const {
    if (fError.IsSet())
        Fail(kReportedErrorLine);
    if (answer == -1)
        Fail(kReaderFailedLine);
    return answer;
}

// The current element.

Name Parser::CurrentElement() const {
    const xmlChar* local = xmlTextReaderConstLocalName(fReader.get());
    const xmlChar* nameSpace = xmlTextReaderConstNamespaceUri(fReader.get());
    return {local != nullptr ? Chars(local) : "", Chars(nameSpace)};
}

bool Parser::ReadAllAttributes(AttributeList& attributes) {
    const int count = xmlTextReaderAttributeCount(fReader.get());
    attributes.resize(static_cast<std::size_t>(std::max(count, 0)));
    // Into the texts that are there, which a caller may keep for the next element.
    std::size_t read = 0;
    while (read < attributes.size() && xmlTextReaderMoveToNextAttribute(fReader.get()) == 1) {
        const xmlChar* name = xmlTextReaderConstName(fReader.get());
        const xmlChar* value = xmlTextReaderConstValue(fReader.get());
        if (name == nullptr || value == nullptr)
            continue;
        if (!IsAlready(attributes[read].name, name))
            Assign(attributes[read].name, name);
        Assign(attributes[read].value, value);
        ++read;
    }
    attributes.resize(read);
    xmlTextReaderMoveToElement(fReader.get());
    return read > 0;
}

UString Parser::ReadText() {
    UString text;
    if (fEmpty || fState == kAtEnd) {
        fState = kAtEnd;
        return text;
    }
    for (int nodeType = 0; Advance(nodeType, true) && AppendText(nodeType, text);) {
    }
    return text;
}

/// Takes what the cursor stands on into `text`. False when the text has ended there.
bool Parser::AppendText(int nodeType, UString& text) {
    if (IsText(nodeType)) {
        fState = kAfterContent;
        UString piece = ToUString(xmlTextReaderConstValue(fReader.get()));
        if (text.empty())
            text = std::move(piece);
        else
            text.append(piece);
        return true;
    }
    if (nodeType == XML_READER_TYPE_ELEMENT) {
        fState = kAfterContent;
        fPushedBack = true;
        return false;
    }
    if (nodeType != XML_READER_TYPE_END_ELEMENT)
        return text.empty();
    fState = kAtEnd;
    if (text == kEncodedBlankUString)
        text = UString(' ');
    return false;
}

bool Parser::FindAttributeInList(const AttributeList& attributes, const UString& name,
                                 UString& value) {
    const auto found =
        std::find_if(attributes.begin(), attributes.end(),
                     [&name](const AttributePair& pair) { return pair.name == name; });
    if (found == attributes.end())
        return false;
    value = found->value;
    return true;
}

// What the parser takes along.

void Parser::SetElementFilter(std::unique_ptr<ElementFilter> filter) {
    fFilter = std::move(filter);
}

void Parser::SetOwnedObject(std::shared_ptr<void> object) {
    fOwnedObject = std::move(object);
}

void Parser::SetCollectInstructions(bool collect) {
    fCollectInstructions = collect;
}

} // namespace Kestrin
