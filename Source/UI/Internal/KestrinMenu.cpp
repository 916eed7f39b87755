#include "UI/Internal/KestrinMenu.h"

#include "Commands/ChainOfCommand.h"
#include "UI/Internal/TextHandOver.h"

namespace Kestrin {

std::shared_ptr<NativeMenu> KestrinMenu::Copy() const {
    return std::shared_ptr<NativeMenu>(new KestrinMenu(*this));
}

KestrinMenuItem::KestrinMenuItem(const UString& text)
    : NativeMenuItem(StandardText(text))
    , fText(text) {}

std::shared_ptr<NativeMenuItem> KestrinMenuItem::Copy() const {
    return std::shared_ptr<NativeMenuItem>(new KestrinMenuItem(*this));
}

MenuTargetSingleton& MenuTargetSingleton::Instance() {
    static MenuTargetSingleton target;
    return target;
}

void MenuTargetSingleton::DoMenu(const NativeMenuItem& sender) {
    ChainOfCommand::Instance()->DispatchCommand(CommandSpecifier::FromCode(sender.Tag()));
}

bool MenuTargetSingleton::ValidateMenuItem(const NativeMenuItem& item) {
    return ChainOfCommand::Instance()->CanHandle(CommandSpecifier::FromCode(item.Tag()));
}

} // namespace Kestrin
