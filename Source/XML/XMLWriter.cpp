#include "XML/XMLWriter.h"

#include "Diagnostics/Failure.h"
#include "Strings/Transcoders.h"
#include "XML/ItemNames.h"

#include <libxml/xmlwriter.h>

#include <algorithm>

namespace Kestrin {

namespace {

const xmlChar* Bytes(const char* text) {
    return reinterpret_cast<const xmlChar*>(text);
}

// As many as libxml2 reads.
constexpr int kMostOpenElements = 256;

// The places that the failures of the operations are known by.
enum FailureLine {
    kStartTagLine = 125,
    kEndTagLine = 143,
    kAttributeLine = 178,
    kTextLine = 196,
    kCommentLine = 204,
    kLineBreakLine = 260,
    kIndentationLine = 262
};

void Check(int result, FailureLine line) {
    if (result == -1)
        FailString(ErrType(), "Source/XML/XMLWriter", line);
}

bool IsOneBlank(const UString& text) {
    return text.length() == 1 && text[0] == ' ';
}

bool IsXMLCharacter(unsigned int c) {
    if (c < 0x20)
        return c == '\t' || c == '\n' || c == '\r';
    const bool surrogate = c >= 0xD800 && c <= 0xDFFF;
    return !surrogate && c != 0xFFFE && c != 0xFFFF && c <= 0x10FFFF;
}

} // namespace

Writer::Writer(_xmlTextWriter* output)
    : fOutput(output) {}

void Writer::StartElement(const Name& name) {
    if (!IsInline())
        NewLine();
    Check(fOpenElements < kMostOpenElements
              ? xmlTextWriterStartElement(fOutput, Bytes(name.Local().c_str()))
              : -1,
          kStartTagLine);
    ++fOpenElements;
    fLineEnded = false;
    if (!IsInline())
        ++fDepth;
}

void Writer::EndElement(const Name&) {
    if (!IsInline()) {
        --fDepth;
        if (fLineEnded)
            NewLine();
    }
    Check(xmlTextWriterEndElement(fOutput), kEndTagLine);
    --fOpenElements;
    if (!IsInline())
        fLineEnded = true;
}

void Writer::Attribute(const Name& name, const UString& value) {
    const char* const name8 = name.Local().c_str();
    Check(xmlTextWriterWriteAttribute(fOutput, Bytes(name8), ToUTF8(value)), kAttributeLine);
}

void Writer::Write(const UString& text) {
    const UString& written = IsOneBlank(text) ? kEncodedBlankUString : text;
    Check(xmlTextWriterWriteString(fOutput, ToUTF8(written)), kTextLine);
}

void Writer::Comment(const UString& text) {
    ToUTF8(text);
    if (fUTF8.ends_with('-'))
        fUTF8 += ' ';
    Check(xmlTextWriterWriteComment(fOutput, Bytes(fUTF8.c_str())), kCommentLine);
}

void Writer::NewLine() {
    fLineEnded = true;
    Check(xmlTextWriterWriteRawLen(fOutput, Bytes("\n"), 1), kLineBreakLine);
    const std::string tabs(static_cast<std::size_t>(std::max(fDepth, 0)), '\t');
    Check(xmlTextWriterWriteRaw(fOutput, Bytes(tabs.c_str())), kIndentationLine);
}

bool Writer::IsValidString(const UString& text) {
    const auto codePoints = text.utf32_str();
    return std::all_of(codePoints.begin(), codePoints.end(), IsXMLCharacter);
}

const unsigned char* Writer::ToUTF8(const UString& text) {
    const std::size_t units = utf16_to_utf8(text.data(), text.length(), fUTF8);
    if (units < text.length() || fUTF8.find('\0') != std::string::npos)
        fHasWrittenAll = false;
    return Bytes(fUTF8.c_str());
}

Writer::InlineMode::InlineMode(Writer& writer)
    : fWriter(writer) {
    fWriter.fInlineModes.push_back(1);
}

Writer::InlineMode::~InlineMode() {
    fWriter.fInlineModes.pop_back();
}

} // namespace Kestrin
