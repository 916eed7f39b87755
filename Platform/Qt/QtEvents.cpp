#include "Platform/Qt/QtEvents.h"

#include "Platform/Qt/QtText.h"

#include <QKeyEvent>
#include <algorithm>
#include <iterator>

namespace Kestrin {

namespace {

struct FunctionKey {
    int key;
    char16_t character;
};

constexpr FunctionKey kFunctionKeys[] = {
    {Qt::Key_Up, kNativeUpArrow},
    {Qt::Key_Down, kNativeDownArrow},
    {Qt::Key_Left, kNativeLeftArrow},
    {Qt::Key_Right, kNativeRightArrow},
    {Qt::Key_Delete, kNativeForwardDelete},
    {Qt::Key_Home, kNativeHome},
    {Qt::Key_End, kNativeEnd},
    {Qt::Key_PageUp, kNativePageUp},
    {Qt::Key_PageDown, kNativePageDown},
    {Qt::Key_Insert, kNativeInsert},
    {Qt::Key_Enter, kNativeEnter},
    {Qt::Key_Return, kNativeReturn},
    {Qt::Key_Tab, kNativeTab},
    {Qt::Key_Backtab, kNativeBackTab},
    {Qt::Key_Escape, kNativeEscape},
    {Qt::Key_Backspace, kNativeBackspace},
};

/// Zero for a key that has a character of its own.
char16_t FunctionCharacter(int key) {
    if (key >= Qt::Key_F1 && key <= Qt::Key_F35)
        return static_cast<char16_t>(kNativeFirstFunctionKey + (key - Qt::Key_F1));
    const auto found = std::find_if(std::begin(kFunctionKeys), std::end(kFunctionKeys),
                                    [key](const FunctionKey& entry) { return entry.key == key; });
    return found == std::end(kFunctionKeys) ? u'\0' : found->character;
}

bool IsPrintable(const QString& text) {
    return !text.isEmpty() && std::none_of(text.begin(), text.end(), [](QChar unit) {
        return unit.unicode() < 0x20 || unit.unicode() == 0x7F;
    });
}

bool IsShortcut(const QKeyEvent& event) {
    return event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
}

std::string TypedText(const QKeyEvent& event) {
    if (FunctionCharacter(event.key()) || IsShortcut(event) || !IsPrintable(event.text()))
        return {};
    return ToUtf8(event.text());
}

/// The letter on the key, where a shortcut's modifiers turned its text into something else.
std::u16string LetterOfKey(const QKeyEvent& event) {
    if (event.key() < 0x20 || event.key() >= 0x10000)
        return {};
    const auto letter = static_cast<char16_t>(event.key());
    const bool shifted = event.modifiers() & Qt::ShiftModifier;
    return {shifted ? letter : QChar(letter).toLower().unicode()};
}

std::u16string CharactersIgnoringModifiers(const QKeyEvent& event) {
    if (const char16_t character = FunctionCharacter(event.key()))
        return {character};
    if (!IsShortcut(event) && IsPrintable(event.text()))
        return ToUtf16(event.text());
    return LetterOfKey(event);
}

unsigned KeyCodeOf(const QKeyEvent& event) {
    if (event.key() == Qt::Key_Escape)
        return kNativeEscapeKeyCode;
    if (event.key() == Qt::Key_Backspace)
        return kNativeBackspaceKeyCode;
    return event.nativeScanCode();
}

} // namespace

unsigned NativeModifiersOf(Qt::KeyboardModifiers modifiers) {
    unsigned flags = 0;
    if (modifiers & Qt::ShiftModifier)
        flags |= kNativeShift;
    if (modifiers & Qt::ControlModifier)
        flags |= kNativeControl;
    if (modifiers & Qt::AltModifier)
        flags |= kNativeOption;
    if (modifiers & Qt::MetaModifier)
        flags |= kNativeCommand;
    return flags;
}

bool IsModifierKey(const QKeyEvent& event) {
    const int key = event.key();
    return (key >= Qt::Key_Shift && key <= Qt::Key_ScrollLock) || key == Qt::Key_AltGr ||
           (key >= Qt::Key_Super_L && key <= Qt::Key_Hyper_R && key != Qt::Key_Menu) ||
           (key >= Qt::Key_Dead_Grave && key <= Qt::Key_Dead_Longsolidusoverlay);
}

NativeKeyEvent NativeKeyEventOf(const QKeyEvent& event) {
    NativeKeyEvent key;
    key.characters = TypedText(event);
    key.charactersIgnoringModifiers = CharactersIgnoringModifiers(event);
    key.keyCode = KeyCodeOf(event);
    key.modifierFlags = NativeModifiersOf(event.modifiers());
    return key;
}

} // namespace Kestrin
