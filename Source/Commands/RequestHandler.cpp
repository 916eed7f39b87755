#include "Commands/RequestHandler.h"

#include "Commands/ChainOfCommand.h"
#include "Commands/HandlerReference.h"

#include <cstdio>

namespace Kestrin {

namespace {

void Print(const char* message) {
    std::fputs(message, stdout);
    std::fflush(stdout);
}

/// The answer of one handler; no, when it throws.
bool Wants(RequestHandler& handler, const CommandSpecifier& command) {
    try {
        return handler.CanHandle(command);
    } catch (...) {
        Print("A RequestHandler allowed an exception to escape from CanHandle");
        return false;
    }
}

} // namespace

RequestHandler::RequestHandler(RequestHandler* successor) {
    SetSuccessor(successor);
    // Makes the chain older than any handler, so that it outlives those with static storage.
    ChainOfCommand::Instance();
}

RequestHandler::~RequestHandler() {
    HandlerReference::Forget(this);
    ChainOfCommand& chain = *ChainOfCommand::Instance();
    if (chain.IsInChain(this))
        chain.SetGopher(fSuccessor);
}

void RequestHandler::BecomeGopher() {}

bool RequestHandler::StopBeingGopher() {
    return true;
}

bool RequestHandler::CanHandle(const CommandSpecifier&) {
    return false;
}

bool RequestHandler::HandleCommand(const CommandSpecifier&) {
    return false;
}

void RequestHandler::SetSuccessor(RequestHandler* successor) {
    fSuccessor = successor == this ? nullptr : successor;
}

bool RequestHandler::CanHandle(RequestHandler* start, const CommandSpecifier& command) {
    for (RequestHandler* handler = start; handler; handler = handler->fSuccessor) {
        if (Wants(*handler, command))
            return true;
    }
    return false;
}

bool RequestHandler::HandleCommand(RequestHandler* start, const CommandSpecifier& command) {
    // Unlike a query, a command that failed half way must not be tried on anybody else.
    try {
        for (RequestHandler* handler = start; handler; handler = handler->fSuccessor) {
            if (handler->CanHandle(command) && handler->HandleCommand(command))
                return true;
        }
        return false;
    } catch (...) {
        Print("Caught exception while dispatching RequestHandler::HandleCommand ");
        return true;
    }
}

bool RequestHandler::IsInChain(RequestHandler* start, RequestHandler* handler) {
    while (start && start != handler)
        start = start->fSuccessor;
    return start != nullptr;
}

} // namespace Kestrin
