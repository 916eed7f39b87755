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
    bool DoTextInput(const UString& text, unsigned int modifiers, unsigned char keyCode) override;
    void DoClick(const Point& where, unsigned int modifiers, bool doubleClick) override;
    void DoTrack(const Point& where, unsigned int modifiers) override;
    void DoKeyFocusStateChanged(bool hasFocus) override;

    // RequestHandler

    bool CanHandle(const CommandSpecifier& command) override;
    bool HandleCommand(const CommandSpecifier& command) override;

    // OSTextEdit

    void SetText(const UString& text) override;
    UString GetText() override;
    void InsertText(const UString& text) override;
    void Activate() override;
    void Deactivate() override;
    void Cut() override;
    void Copy() override;
    void Paste() override;
    void Delete() override;
    void SetAlignment(TextAlignment alignment) override;
    void SetFont(FontID font, unsigned int size) override;
    void SetBackgroundColor(const RGBAColor& color) override { fBackgroundColor = color; }
    void SetDefaultForegroundColor(const RGBAColor& color) override;
    bool HasSelection() override;
    void SelectAll() override;
    void SetSelection(unsigned int start, unsigned int end) override;
    void GetSelection(unsigned int& start, unsigned int& end) override;
    float Width() override;
    float Height() override;
    float LineHeight() override;

private:
    class TextField;

    NativeTextField& Field();

    std::unique_ptr<TextField> fTextField;
    RGBAColor fBackgroundColor = {1, 1, 1, 1};
};

} // namespace Kestrin
