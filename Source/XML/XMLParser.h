#pragma once

#include "XML/StartTagGuard.h"
#include "XML/XMLName.h"

#include <cstdint>
#include <deque>
#include <iosfwd>
#include <memory>
#include <utility>
#include <vector>

struct _xmlTextReader;

namespace Kestrin {

class EntityGuard;
class Parser;

/// Chooses elements that a parser's walk leaves out, with all that is in them.
class ElementFilter {
public:
    virtual ~ElementFilter() = default;

    /// Whether to leave out the element that `parser` stands on. Only its name and its attributes
    /// may be asked for.
    virtual bool Skips(Parser& parser) = 0;
};

/// A cursor over an XML document that is read from a stream: down into the next child element, its
/// name, attributes and text, and up again past the rest of it.
///
/// The cursor begins above the root element. Each DownToChild that answers true is matched by one
/// UpToParent. Nothing but the stream is ever opened: an external entity, or an external DTD that
/// validation would need, is a failure.
///
/// Every error and every warning that libxml2 reports ends the parse: it is reported ("FailString
/// Kestrin …") and -50 is thrown. After that the parser can only be destroyed.
class Parser {
public:
    enum Validate : int { kDontValidate = 0, kValidate = 1 };

    /// A processing instruction: its target and its content.
    using Instruction = std::pair<UString, UString>;

    /// `stream` is borrowed and must outlive the parser. Its exceptions do not get out: a stream
    /// that throws has ended.
    Parser(std::istream& stream, Validate validate);

    ~Parser();
    Parser(const Parser&) = delete;
    Parser& operator=(const Parser&) = delete;

    // The walk.

    /// The step under all others: to the next node of any kind, whose libxml2 type is then in
    /// `nodeType`. Passes over processing instructions unless `stopAtInstructions`. False at the
    /// end of the document.
    bool Advance(int& nodeType, bool stopAtInstructions);

    /// DownToChild without the filter.
    bool DoDownToChild();

    /// Goes to the next child of the current element. False when there is none left, or when text
    /// stands before it: elements behind text are not visited.
    bool DownToChild();

    /// Leaves the current element and what of it is unread.
    void UpToParent();

    // The current element.

    Name CurrentElement() const;

    /// Makes `attributes` those of the element that DownToChild has just found, in order, namespace
    /// declarations included. False when it has none, or the cursor stands behind its start.
    bool ReadAllAttributes(AttributeList& attributes);

    /// The text from the cursor to the next child element, comment or end of the current element.
    UString ReadText();

    /// Copies the value of the first attribute of that name. False, and `value` as it was, when
    /// there is none.
    static bool FindAttributeInList(const AttributeList& attributes, const UString& name,
                                    UString& value);

    // What the parser takes along.

    /// Null, the default, for no filter.
    void SetElementFilter(std::unique_ptr<ElementFilter> filter);

    /// Keeps `object` until the parser is destroyed.
    void SetOwnedObject(std::shared_ptr<void> object);

    /// Whether the processing instructions that are met from now on are kept. Off at first.
    void SetCollectInstructions(bool collect);

    const std::deque<Instruction>& Instructions() const { return fInstructions; }

    /// What libxml2 reads from: up to `length` bytes from the stream of the parser that `context`
    /// is. Returns their number, 0 at the end.
    static int ReadCallback(void* context, char* buffer, int length);

    /// What libxml2 reported last. Nothing yet when the severity is -1.
    struct ErrorRecord {
        std::int64_t severityClass = -1;
        std::uint32_t line = 0;

        bool IsSet() const { return severityClass != -1; }
    };

private:
    enum State : int { kAtDocument = 0, kAtStart = 1, kAfterContent = 2, kAtEnd = 3 };

    struct ReaderDeleter {
        void operator()(_xmlTextReader* reader) const;
    };

    bool ReadNode();
    void KeepInstruction();
    bool IsEmptyElement();
    bool SkipToEnd();
    bool AppendText(int nodeType, UString& text);
    int Checked(int answer) const;

    std::shared_ptr<void> fOwnedObject;
    std::istream& fStream;
    std::unique_ptr<EntityGuard> fGuard;
    std::unique_ptr<_xmlTextReader, ReaderDeleter> fReader;
    State fState = kAtDocument;
    int fDepth = 0;
    bool fEmpty = false;
    bool fPushedBack = false;
    ErrorRecord fError;
    StartTagGuard fStartTagGuard;
    bool fCollectInstructions = false;
    std::deque<Instruction> fInstructions;
    std::unique_ptr<ElementFilter> fFilter;
};

} // namespace Kestrin
