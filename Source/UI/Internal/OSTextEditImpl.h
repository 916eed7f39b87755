#pragma once

#include "UI/OSTextEdit.h"

#include "Platform/UI/NativeTextField.h"

#include <memory>

namespace Kestrin {

/// The text edit over the platform's text field.
class OSTextEditImpl final : public OSTextEdit {
public:
    OSTextEditImpl(OSTextEditViewClient* client, bool handlesEditCommands);
    ~OSTextEditImpl() override;

    // View

    using View::SetDimensions;
    void SetRect(const Rect& rect) override;
    void SetDimensions(float width, float height) override;
    bool SupportsFeature(ViewFeature feature) override;
    void DoDraw(DrawingContext& context) override;
    bool DoTextInput(const UString&, unsigned int, unsigned char) override {
        return NotProvided("DoTextInput") != 0;
    }
    void DoClick(const Point&, unsigned int, bool) override { NotProvided("DoClick"); }
    void DoTrack(const Point&, unsigned int) override { NotProvided("DoTrack"); }
    void DoKeyFocusStateChanged(bool) override { NotProvided("DoKeyFocusStateChanged"); }

    // RequestHandler

    bool CanHandle(const CommandSpecifier& command) override;
    bool HandleCommand(const CommandSpecifier& command) override;

    // OSTextEdit

    void SetText(const UString& text) override;
    UString GetText() override;
    void InsertText(const UString&) override { NotProvided("InsertText"); }
    void Activate() override { NotProvided("Activate"); }
    void Deactivate() override { NotProvided("Deactivate"); }
    void Cut() override { NotProvided("Cut"); }
    void Copy() override { NotProvided("Copy"); }
    void Paste() override { NotProvided("Paste"); }
    void Delete() override { NotProvided("Delete"); }
    void SetAlignment(TextAlignment alignment) override;
    void SetFont(FontID font, unsigned int size) override;
    void SetBackgroundColor(const RGBAColor& color) override { fBackgroundColor = color; }
    void SetDefaultForegroundColor(const RGBAColor& color) override;
    bool HasSelection() override { return NotProvided("HasSelection") != 0; }
    void SelectAll() override { NotProvided("SelectAll"); }
    void SetSelection(unsigned int, unsigned int) override { NotProvided("SetSelection"); }
    void GetSelection(unsigned int&, unsigned int&) override { NotProvided("GetSelection"); }
    float Width() override { return NotProvided("Width"); }
    float Height() override { return NotProvided("Height"); }
    float LineHeight() override { return NotProvided("LineHeight"); }

private:
    class TextField;

    NativeTextField& Field();
    /// Says so, and answers 0.
    static short NotProvided(const char* operation);

    std::unique_ptr<TextField> fTextField;
    RGBAColor fBackgroundColor = {1, 1, 1, 1};
};

} // namespace Kestrin
