#pragma once

#include "Platform/UI/CGGeometry.h"
#include "Platform/UI/NativeEvents.h"

#include <memory>
#include <string>

namespace Kestrin {

class NativeView;

/// The owner of a native text field. Each call but the last may destroy the field.
class NativeTextFieldClient {
public:
    /// A key press, a repeated one, or text that an input method types, before the field takes it.
    /// True lets the field edit with it as usual; false swallows it.
    virtual bool HandleFieldKeyDown(const NativeKeyEvent& event) = 0;
    virtual void HandleFieldEditingBegan() = 0;
    virtual void HandleFieldEditingEnded() = 0;
    /// An edit of any kind (keys, paste, drop) is about to make `text` of the field's text, UTF-8.
    /// False refuses that edit as a whole.
    virtual bool HandleFieldTextWillChange(const std::string& text) = 0;

protected:
    ~NativeTextFieldClient() = default;
};

/// The platform's single-line text field, without frame and background, inside a native view. An
/// edit begins when the field gets the keyboard focus and ends when the focus moves inside the
/// window; another window, an alert or a menu in front leaves it going. Focus, an accessible name
/// and whether it is enabled or a Tab stop go on from the host to the field. Text is UTF-8.
class NativeTextField {
public:
    enum class Alignment { kLeft, kRight, kCenter };

    /// A field with black text in `host`, which outlives it. `client` is not owned and not null.
    NativeTextField(NativeView& host, NativeTextFieldClient* client);
    ~NativeTextField();
    NativeTextField(const NativeTextField&) = delete;
    NativeTextField& operator=(const NativeTextField&) = delete;

    // Text and editing.

    /// Replaces the text and forgets what could be undone.
    void SetText(const std::string& text);
    std::string GetText() const;
    /// Takes the keyboard focus away from the field; no view has it then.
    void EndEditing();

    // Place and look.

    /// The field's place in its host, in the host's coordinates.
    void SetFrame(CGRect frame);
    void SetAlignment(Alignment alignment);
    /// The font is chosen by name and size as NativeTextSystem does.
    void SetFont(const std::string& family, double size);
    /// The colour of the text and of the insertion point; components from 0 to 1.
    void SetTextColor(double red, double green, double blue, double alpha);

private:
    struct Data;
    std::unique_ptr<Data> fData;
};

} // namespace Kestrin
