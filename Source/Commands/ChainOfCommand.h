#pragma once

#include "Commands/RequestHandler.h"

namespace Kestrin {

/// The active chain of request handlers, of which there is one in a process. Its head is the
/// gopher, which is asked first and is not owned. Main thread only, save for the first Instance().
class ChainOfCommand {
public:
    static ChainOfCommand* Instance();
    ChainOfCommand(const ChainOfCommand&) = delete;
    ChainOfCommand& operator=(const ChainOfCommand&) = delete;
    virtual ~ChainOfCommand() = default;

    /// Null when nothing is routed.
    RequestHandler* GetGopher() const { return fGopher; }
    /// Makes `handler`, or nobody, the gopher, unless the present one refuses. Answers whether it
    /// is.
    bool SetGopher(RequestHandler* handler);

    bool IsInChain(RequestHandler* handler) const;
    bool CanHandle(const CommandSpecifier& command);
    /// Whether the command was handled.
    bool DispatchCommand(const CommandSpecifier& command);

private:
    ChainOfCommand() = default;

    RequestHandler* fGopher = nullptr;
};

} // namespace Kestrin
