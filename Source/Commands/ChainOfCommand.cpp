#include "Commands/ChainOfCommand.h"

namespace Kestrin {

ChainOfCommand* ChainOfCommand::Instance() {
    static ChainOfCommand sInstance;
    return &sInstance;
}

bool ChainOfCommand::SetGopher(RequestHandler* handler) {
    if (handler == fGopher)
        return true;
    if (fGopher && !fGopher->StopBeingGopher())
        return false;
    fGopher = handler;
    if (handler)
        handler->BecomeGopher();
    return true;
}

bool ChainOfCommand::IsInChain(RequestHandler* handler) const {
    return RequestHandler::IsInChain(fGopher, handler);
}

bool ChainOfCommand::CanHandle(const CommandSpecifier& command) {
    return RequestHandler::CanHandle(fGopher, command);
}

bool ChainOfCommand::DispatchCommand(const CommandSpecifier& command) {
    return RequestHandler::HandleCommand(fGopher, command);
}

} // namespace Kestrin
