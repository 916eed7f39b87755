#pragma once

#include <memory>
#include <string>

namespace Kestrin {

/// A modal question or message of the desktop's own look. Texts are UTF-8 and shown literally.
class NativeAlert {
public:
    NativeAlert();
    ~NativeAlert();
    NativeAlert(const NativeAlert&) = delete;
    NativeAlert& operator=(const NativeAlert&) = delete;

    /// The headline.
    void SetMessageText(const std::string& text);

    /// The explanation beneath the headline.
    void SetInformativeText(const std::string& text);

    /// Buttons stand in the order in which they are added; the first is the default one. An alert
    /// without any shows the platform's single default button.
    void AddButton(const std::string& title);

    /// A new alert is informational.
    void SetCritical();

    /// Shows the alert over the active window, if there is one, and waits for the answer: the index
    /// of the pressed button, from 0. Escape, the close button and the end of the program's loop
    /// answer for the second button where there are two, else for the first.
    int RunModal();

private:
    struct Data;
    std::unique_ptr<Data> fData;
};

} // namespace Kestrin
