#pragma once

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
    kCommandHelp = 0x48454C50,   // 'HELP'
    kCommandCancel = 0x434E434C, // 'CNCL'
    kCommandOk = 0x4F4B4F4B,     // 'OKOK'
    kCommandMenu = 0x4D454E55,   // 'MENU': an item of the surface pop-up was chosen
};
