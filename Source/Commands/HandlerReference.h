#pragma once

namespace Kestrin {

class RequestHandler;

/// A pointer to a handler that becomes null when the handler goes. References live on the stack and
/// end in the opposite order to that in which they began. Main thread only.
class HandlerReference {
public:
    /// The handler may be null.
    explicit HandlerReference(RequestHandler* handler);
    ~HandlerReference();
    HandlerReference(const HandlerReference&) = delete;
    HandlerReference& operator=(const HandlerReference&) = delete;

    RequestHandler* Get() const { return fHandler; }

    /// Called once by each handler that goes.
    static void Forget(const RequestHandler* handler);

private:
    RequestHandler* fHandler;
    HandlerReference* fOuter;

    static HandlerReference* sInnermost;
};

} // namespace Kestrin
