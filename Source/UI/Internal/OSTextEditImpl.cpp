#include "UI/Internal/OSTextEditImpl.h"

#include "UI/DrawingContext.h"
#include "UI/Internal/FontNames.h"
#include "UI/Internal/KeyInput.h"
#include "UI/Internal/TextHandOver.h"
#include "UI/Internal/ViewBridge.h"

#include <cstdio>

namespace Kestrin {

namespace {

constexpr unsigned kEditMenu = 1;
constexpr int kCutItem = 3;
constexpr int kCopyItem = 4;
constexpr int kPasteItem = 5;
constexpr int kSelectAllItem = 7;

bool EndsEditing(unsigned char key) {
    return key == kKeyEnter || key == kKeyReturn || key == kKeyEscape;
}

} // namespace

/// The native field, and what sees its keys and its focus before the field makes something of them.
class OSTextEditImpl::TextField final : public NativeTextFieldClient {
public:
    TextField(NativeView& host, OSTextEdit& edit, OSTextEditViewClient* client)
        : fClient(client)
        , fTextEdit(edit)
        , fNative(host, this) {}

    NativeTextField& Native() { return fNative; }

    bool HandleFieldKeyDown(const NativeKeyEvent& event) override {
        const std::weak_ptr<void> alive = fAlive;
        const KeyInput key = TakeKeyInput(event);
        if (fClient &&
            !fClient->FilterTextEditDoTextInput(&fTextEdit, key.text, key.modifiers, key.keyCode))
            return false;
        if (alive.expired())
            return false;
        if (!EndsEditing(key.keyCode))
            return true;
        fNative.EndEditing();
        return false;
    }

    void HandleFieldEditingBegan() override {
        if (fClient)
            fClient->ActiveStateChanged(&fTextEdit, true);
    }

    /// What the client sets is what the field shows: the text is set once more when editing is
    /// over.
    void HandleFieldEditingEnded() override {
        const std::weak_ptr<void> alive = fAlive;
        if (fClient)
            fClient->ActiveStateChanged(&fTextEdit, false);
        if (!alive.expired())
            fNative.SetText(fNative.GetText());
    }

    bool HandleFieldTextWillChange(const std::string& text) override {
        return !fClient || fClient->AcceptsText(&fTextEdit, UString(text, UString::kUTF8));
    }

private:
    OSTextEditViewClient* fClient;
    OSTextEdit& fTextEdit;
    /// Tells a call whether the client destroyed the edit in it.
    std::shared_ptr<void> fAlive = std::make_shared<char>();
    NativeTextField fNative;
};

bool OSTextEditViewClient::AcceptsText(OSTextEdit*, const UString&) {
    return true;
}

OSTextEdit::OSTextEdit(OSTextEditViewClient* client, bool handlesEditCommands)
    : RequestHandler(nullptr)
    , fClient(client)
    , fHandlesEditCommands(handlesEditCommands) {}

OSTextEdit* OSTextEdit::Create(OSTextEditViewClient* client, bool handlesEditCommands) {
    return new OSTextEditImpl(client, handlesEditCommands);
}

OSTextEditImpl::OSTextEditImpl(OSTextEditViewClient* client, bool handlesEditCommands)
    : OSTextEdit(client, handlesEditCommands)
    , fTextField(std::make_unique<TextField>(BridgeOf(*this).Native(), *this, client)) {
    SetTabStop(true);
}

OSTextEditImpl::~OSTextEditImpl() = default;

NativeTextField& OSTextEditImpl::Field() {
    return fTextField->Native();
}

short OSTextEditImpl::NotProvided(const char* operation) {
    std::fprintf(stderr, "%s not implemented\n", operation);
    return 0;
}

// View

void OSTextEditImpl::SetRect(const Rect& rect) {
    OSTextEdit::SetRect(rect);
    Field().SetFrame({{0, 0}, {rect.width, rect.height}});
}

void OSTextEditImpl::SetDimensions(float width, float height) {
    OSTextEdit::SetDimensions(width, height);
    Field().SetFrame({{0, 0}, {width, height}});
}

bool OSTextEditImpl::SupportsFeature(ViewFeature feature) {
    return feature == kViewFeatureClicks || feature == kViewFeatureTextEdit ||
           feature == kViewFeatureTransparent;
}

void OSTextEditImpl::DoDraw(DrawingContext& context) {
    context.FillRect(GetLocalRect(), fBackgroundColor);
}

// Commands

bool OSTextEditImpl::CanHandle(const CommandSpecifier& command) {
    if (!fHandlesEditCommands || command.menuID != kEditMenu)
        return false;
    return command.menuItem == kCutItem || command.menuItem == kCopyItem ||
           command.menuItem == kPasteItem || command.menuItem == kSelectAllItem;
}

bool OSTextEditImpl::HandleCommand(const CommandSpecifier& command) {
    if (!CanHandle(command))
        return false;
    switch (command.menuItem) {
    case kCutItem:
        Cut();
        break;
    case kCopyItem:
        Copy();
        break;
    case kPasteItem:
        Paste();
        break;
    default:
        SelectAll();
        break;
    }
    return true;
}

// Text and look

void OSTextEditImpl::SetText(const UString& text) {
    Field().SetText(HandOver(text));
}

UString OSTextEditImpl::GetText() {
    return UString(Field().GetText(), UString::kUTF8);
}

void OSTextEditImpl::SetAlignment(TextAlignment alignment) {
    using Alignment = NativeTextField::Alignment;
    Field().SetAlignment(alignment == kTextAlignRight    ? Alignment::kRight
                         : alignment == kTextAlignCenter ? Alignment::kCenter
                                                         : Alignment::kLeft);
}

void OSTextEditImpl::SetFont(FontID font, unsigned int size) {
    Field().SetFont(HandOver(FontName(font)), size);
}

void OSTextEditImpl::SetDefaultForegroundColor(const RGBAColor& color) {
    Field().SetTextColor(color.red, color.green, color.blue, color.alpha);
}

} // namespace Kestrin
