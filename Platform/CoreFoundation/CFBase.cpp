#include "Platform/CoreFoundation/CFObject.h"

using namespace KestrinMIDI;

const CFAllocatorRef kCFAllocatorDefault = nullptr;

void CFObject::Release() const {
    if (fReferences.fetch_sub(1, std::memory_order_acq_rel) == 1)
        delete this;
}

CFTypeRef CFRetain(CFTypeRef object) {
    ObjectOf<CFObject>(object).Retain();
    return object;
}

void CFRelease(CFTypeRef object) {
    ObjectOf<CFObject>(object).Release();
}

Boolean CFEqual(CFTypeRef first, CFTypeRef second) {
    return ObjectOf<CFObject>(first).Equals(ObjectOf<CFObject>(second));
}
