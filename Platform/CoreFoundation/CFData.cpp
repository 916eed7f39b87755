#include "Platform/CoreFoundation/CFObject.h"

#include <CoreFoundation/CFData.h>

#include <vector>

using namespace KestrinMIDI;

namespace {

struct DataObject final : CFObject {
    DataObject(const UInt8* bytes, CFIndex count)
        : fBytes(bytes, bytes + count) {}

    const std::vector<UInt8>& Bytes() const { return fBytes; }

    bool Equals(const CFObject& other) const override {
        const auto* data = dynamic_cast<const DataObject*>(&other);
        return data && data->fBytes == fBytes;
    }

private:
    std::vector<UInt8> fBytes;
};

const std::vector<UInt8>& BytesOf(CFDataRef data) {
    return ObjectOf<DataObject>(data).Bytes();
}

} // namespace

CFDataRef CFDataCreate(CFAllocatorRef, const UInt8* bytes, CFIndex count) {
    return OrNothing(
        [=] { return count < 0 ? nullptr : ReferenceTo<CFDataRef>(new DataObject(bytes, count)); });
}

CFIndex CFDataGetLength(CFDataRef data) {
    return static_cast<CFIndex>(BytesOf(data).size());
}

const UInt8* CFDataGetBytePtr(CFDataRef data) {
    return BytesOf(data).data();
}
