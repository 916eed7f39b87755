#pragma once

#include "Commands/RequestHandler.h"
#include "UI/Color.h"
#include "UI/TextStyle.h"
#include "UI/View.h"

namespace Kestrin {

class OSTextEdit;

/// The owner of a text edit, as the edit sees it. The first two calls may destroy the edit.
class OSTextEditViewClient {
public:
    /// A key was pressed in the field, which has not seen it yet. `text` is what it would type,
    /// empty for keys that edit or navigate; `key` is the key code of View::DoTextInput. True lets
    /// the key through, false swallows it.
    virtual bool FilterTextEditDoTextInput(OSTextEdit* edit, const UString& text,
                                           unsigned int modifiers, unsigned char key) = 0;

    /// The field has gained or lost the keyboard focus. A text set during the call for the loss is
    /// what the field shows afterwards.
    virtual void ActiveStateChanged(OSTextEdit* edit, bool active) = 0;

    /// Whether the field may show `text`, which an edit of any kind, also a paste or a drop, is
    /// about to make of its text. False refuses that edit as a whole. Not for destroying the edit.
    virtual bool AcceptsText(OSTextEdit* edit, const UString& text);

protected:
    ~OSTextEditViewClient() = default;
};

/// A native single-line text field that fills a view, and the handler of the Edit menu's commands
/// while it exists. Switching windows, an alert or an open menu leave an edit going; moving the
/// focus inside the window ends it, as do Enter, Return and Escape when the client lets them
/// through.
///
/// The field's own keys cut, copy, paste, undo and select. The operations below that say so are not
/// provided: each writes "<its name> not implemented" to standard error, does nothing else and
/// answers 0 or false. A new edit is a Tab stop.
class OSTextEdit : public View, public RequestHandler {
public:
    /// `client` may be null and else outlives the edit. Without `handlesEditCommands` the edit
    /// takes no menu commands at all. The caller owns the edit and places it like any view.
    static OSTextEdit* Create(OSTextEditViewClient* client, bool handlesEditCommands);

    /// Cut, Copy, Paste and Select All of the Edit menu.
    bool CanHandle(const CommandSpecifier& command) override = 0;
    bool HandleCommand(const CommandSpecifier& command) override = 0;

    /// The text crosses to the field cut at as many UTF-8 bytes as it has 16-bit units.
    virtual void SetText(const UString& text) = 0;
    virtual UString GetText() = 0;

    // Not provided.

    virtual void InsertText(const UString& text) = 0;
    virtual void Activate() = 0;
    virtual void Deactivate() = 0;
    virtual void Cut() = 0;
    virtual void Copy() = 0;
    virtual void Paste() = 0;
    virtual void Delete() = 0;

    // Look.

    /// Centre and right are told apart; every other value is left.
    virtual void SetAlignment(TextAlignment alignment) = 0;
    virtual void SetFont(FontID font, unsigned int size) = 0;
    /// Painted behind the field at the next draw.
    virtual void SetBackgroundColor(const RGBAColor& color) = 0;
    /// The colour of the text and of the insertion point.
    virtual void SetDefaultForegroundColor(const RGBAColor& color) = 0;

    // Not provided.

    virtual bool HasSelection() = 0;
    virtual void SelectAll() = 0;
    virtual void SetSelection(unsigned int start, unsigned int end) = 0;
    virtual void GetSelection(unsigned int& start, unsigned int& end) = 0;
    virtual float Width() = 0;
    virtual float Height() = 0;
    virtual float LineHeight() = 0;

protected:
    OSTextEdit(OSTextEditViewClient* client, bool handlesEditCommands);

    OSTextEditViewClient* fClient;
    bool fHandlesEditCommands;
};

} // namespace Kestrin
