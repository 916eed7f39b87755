#pragma once

#include "Strings/TextConversions.h"

/// Takes the commands of the program's own controls: four-character codes, written 'OKOK'. Whoever
/// hands itself to a control as its handler outlives that control.
class Handler {
public:
    virtual void Handle(unsigned int command) = 0;

protected:
    ~Handler() = default;
};

/// The commands between the controls and the console.
enum ConsoleCommand : unsigned int {
    kCommandHelp = FourCharCode("HELP"),
    kCommandCancel = FourCharCode("CNCL"),
    kCommandOk = FourCharCode("OKOK"),
    kCommandMenu = FourCharCode("MENU"), ///< an item of the surface pop-up was chosen
};
