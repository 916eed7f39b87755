#pragma once

#include "XML/XMLName.h"

#include <string>
#include <vector>

struct _xmlTextWriter;

namespace Kestrin {

/// Writes XML through a libxml2 text writer, in the framework's layout: each element begins a line,
/// indented by one tab a level, and an element with text only ends on the line it begins on.
///
/// Elements within elements end where reading does: a 257th start tag is a failure.
///
/// Every operation that libxml2 fails is reported ("FailString Kestrin …") and throws -50; what was
/// written before stays in the text writer.
class Writer {
public:
    /// `output` is borrowed and must outlive the writer. Begins at depth 0, not inline.
    explicit Writer(_xmlTextWriter* output);
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    // Elements. Only the local part of a name is written.

    void StartElement(const Name& name);

    /// Closes the innermost open element, whatever `name` says.
    void EndElement(const Name& name);

    /// Belongs to the element just started, before any content.
    void Attribute(const Name& name, const UString& value);

    // Content. A text that ends early in UTF-8 (UString::utf8_str), or holds a 0 unit, is written
    // up to there.

    /// Whether every text has been written to its end.
    bool HasWrittenAll() const { return fHasWrittenAll; }

    /// Writes escaped text. A single blank, which readers would drop, is written as a word for it.
    void Write(const UString& text);

    /// `text` must not hold two hyphens in a row; one at its end gets a blank behind it.
    void Comment(const UString& text);

    /// Breaks the line and indents to the current depth.
    void NewLine();

    /// False when `text` holds a character that XML forbids: it is written all the same, but no XML
    /// reader takes it back.
    static bool IsValidString(const UString& text);

    /// While it lives, start and end tags add no line breaks or tabs and leave the depth as it is.
    class InlineMode {
    public:
        explicit InlineMode(Writer& writer);
        ~InlineMode();
        InlineMode(const InlineMode&) = delete;
        InlineMode& operator=(const InlineMode&) = delete;

    private:
        Writer& fWriter;
    };

private:
    bool IsInline() const { return fInlineModes.back() != 0; }
    const unsigned char* ToUTF8(const UString& text);

    _xmlTextWriter* fOutput;
    std::vector<unsigned char> fInlineModes{0};
    int fDepth = 0;
    int fOpenElements = 0;
    bool fLineEnded = false;
    bool fHasWrittenAll = true;
    std::string fUTF8;
};

} // namespace Kestrin
