#include "Commands/HandlerReference.h"

namespace Kestrin {

HandlerReference* HandlerReference::sInnermost = nullptr;

HandlerReference::HandlerReference(RequestHandler* handler)
    : fHandler(handler)
    , fOuter(sInnermost) {
    sInnermost = this;
}

HandlerReference::~HandlerReference() {
    sInnermost = fOuter;
}

void HandlerReference::Forget(const RequestHandler* handler) {
    for (HandlerReference* reference = sInnermost; reference != nullptr;
         reference = reference->fOuter)
        if (reference->fHandler == handler)
            reference->fHandler = nullptr;
}

} // namespace Kestrin
