#include "Platform/CoreFoundation/CFObject.h"

#include <CoreFoundation/CFData.h>

#include <vector>

using namespace KestrinMIDI;

struct CFData final : CFObject {
    CFData(const UInt8* bytes, CFIndex count)
        : fBytes(bytes, bytes + count) {}

    const std::vector<UInt8>& Bytes() const { return fBytes; }

    bool Equals(const CFObject& other) const override {
        const auto* data = dynamic_cast<const CFData*>(&other);
        return data && data->fBytes == fBytes;
    }

private:
    std::vector<UInt8> fBytes;
};

CFDataRef CFDataCreate(CFAllocatorRef, const UInt8* bytes, CFIndex count) {
    return count < 0 ? nullptr : new CFData(bytes, count);
}

CFIndex CFDataGetLength(CFDataRef data) {
    return static_cast<CFIndex>(data->Bytes().size());
}

const UInt8* CFDataGetBytePtr(CFDataRef data) {
    return data->Bytes().data();
}
