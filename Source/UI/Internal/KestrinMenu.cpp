#include "UI/Internal/KestrinMenu.h"

#include "Commands/ChainOfCommand.h"

namespace Kestrin {

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
