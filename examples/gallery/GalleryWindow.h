#pragma once

#include "UI/OSTextEdit.h"
#include "UI/Window.h"
#include "examples/gallery/Controls.h"
#include "examples/gallery/TextSamples.h"

#include <memory>

/// The gallery's window: its client, the view that fills it, and the client of its text field.
class GalleryWindow : public Kestrin::View,
                      public Kestrin::Window::WindowEventClient,
                      public Kestrin::OSTextEditViewClient {
public:
    GalleryWindow();
    ~GalleryWindow() override;

    // View

    void DoDraw(Kestrin::DrawingContext& context) override;

    // Window: Escape and the close button end the program

    bool DoTextInput(const UString& text, unsigned int modifiers, unsigned char keyCode) override;
    void WindowClosedNotification(Kestrin::Window* window) override;
    void WindowActivationChanged(Kestrin::Window* window, bool active) override;

    // Text field: digits alone

    bool FilterTextEditDoTextInput(Kestrin::OSTextEdit* edit, const UString& text,
                                   unsigned int modifiers, unsigned char key) override;
    void ActiveStateChanged(Kestrin::OSTextEdit* edit, bool active) override;

private:
    void PlaceControls();
    void Ask();

    Kestrin::Window* fWindow;
    TextSamples fSamples;
    ChoiceBox fChoice;
    std::unique_ptr<Kestrin::OSTextEdit> fField;
    PushButton fAlert;
    PushButton fQuit;
    UString fState;
};
