#pragma once

#include "Commands/CommandSpecifier.h"

namespace Kestrin {

/// What takes commands: a link of a chain in which each handler that does not want a command leaves
/// it to its successor. Links are never owning, and a handler that goes does not know whose
/// successor it was: they are given another one, or null, before they are asked again. Main thread
/// only.
class RequestHandler {
public:
    /// The successor may be null; a handler cannot be its own and then has none.
    explicit RequestHandler(RequestHandler* successor);
    RequestHandler(const RequestHandler&) = delete;
    RequestHandler& operator=(const RequestHandler&) = delete;

    /// A handler in the active chain makes its successor the gopher; those in front of it drop out.
    virtual ~RequestHandler();

    // What a handler does

    /// This handler has just become the gopher.
    virtual void BecomeGopher();
    /// Another one is about to become the gopher; false refuses that.
    virtual bool StopBeingGopher();
    /// Whether this handler wants the command now.
    virtual bool CanHandle(const CommandSpecifier& command);
    /// Performs the command. False passes it on to the successor.
    virtual bool HandleCommand(const CommandSpecifier& command);

    // The chain. A null `start` is an empty chain.

    RequestHandler* GetSuccessor() const { return fSuccessor; }
    void SetSuccessor(RequestHandler* successor);

    /// Whether any handler from `start` on wants the command. One that throws is passed over.
    static bool CanHandle(RequestHandler* start, const CommandSpecifier& command);
    /// Offers the command along the chain; true when one handled it. An exception ends the walk and
    /// counts as handled.
    static bool HandleCommand(RequestHandler* start, const CommandSpecifier& command);
    static bool IsInChain(RequestHandler* start, RequestHandler* handler);

private:
    RequestHandler* fSuccessor = nullptr;
};

} // namespace Kestrin
