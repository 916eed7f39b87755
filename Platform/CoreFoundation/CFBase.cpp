#include "Platform/CoreFoundation/CFObject.h"

#include <CoreFoundation/CFBase.h>

using namespace KestrinMIDI;

const CFAllocatorRef kCFAllocatorDefault = nullptr;

void CFObject::Release() const {
    if (fReferences.fetch_sub(1, std::memory_order_acq_rel) == 1)
        delete this;
}

CFTypeRef CFRetain(CFTypeRef object) {
    static_cast<const CFObject*>(object)->Retain();
    return object;
}

void CFRelease(CFTypeRef object) {
    static_cast<const CFObject*>(object)->Release();
}

Boolean CFEqual(CFTypeRef first, CFTypeRef second) {
    return static_cast<const CFObject*>(first)->Equals(*static_cast<const CFObject*>(second));
}
