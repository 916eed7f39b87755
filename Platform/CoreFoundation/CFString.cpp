#include "Platform/CoreFoundation/CFObject.h"
#include "Platform/CoreFoundation/CFStringBytes.h"

#include <CoreFoundation/CFString.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <mutex>
#include <string>

using namespace KestrinMIDI;

namespace {

struct StringObject final : CFObject {
    explicit StringObject(CFStringUnits units)
        : fUnits(std::move(units)) {}

    const CFStringUnits& Units() const { return fUnits; }

    bool Equals(const CFObject& other) const override {
        const auto* string = dynamic_cast<const StringObject*>(&other);
        return string && string->fUnits == fUnits;
    }

private:
    CFStringUnits fUnits;
};

CFStringRef MakeString(CFStringUnits units) {
    return ReferenceTo<CFStringRef>(new StringObject(std::move(units)));
}

const CFStringUnits& UnitsOf(CFStringRef string) {
    return ObjectOf<StringObject>(string).Units();
}

} // namespace

CFStringRef CFStringCreateWithCharacters(CFAllocatorRef, const UniChar* units, CFIndex count) {
    return OrNothing(
        [=] { return count < 0 ? nullptr : MakeString(CFStringUnits(units, units + count)); });
}

CFStringRef CFStringCreateWithBytes(CFAllocatorRef, const UInt8* bytes, CFIndex count,
                                    CFStringEncoding encoding, Boolean isExternalRepresentation) {
    if (count < 0)
        return nullptr;
    return OrNothing([=]() -> CFStringRef {
        std::optional<CFStringUnits> units =
            UnitsOfBytes({bytes, static_cast<std::size_t>(count)}, encoding);
        if (!units)
            return nullptr;
        constexpr UniChar kByteOrderMark = 0xFEFF;
        if (isExternalRepresentation && !units->empty() && units->front() == kByteOrderMark)
            units->erase(units->begin());
        return MakeString(std::move(*units));
    });
}

CFStringRef CFStringCreateWithCString(CFAllocatorRef allocator, const char* text,
                                      CFStringEncoding encoding) {
    return CFStringCreateWithBytes(allocator, reinterpret_cast<const UInt8*>(text),
                                   static_cast<CFIndex>(std::strlen(text)), encoding, false);
}

CFIndex CFStringGetLength(CFStringRef string) {
    return static_cast<CFIndex>(UnitsOf(string).size());
}

void CFStringGetCharacters(CFStringRef string, CFRange range, UniChar* buffer) {
    std::copy_n(UnitsOf(string).begin() + range.location, range.length, buffer);
}

CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding,
                         UInt8 lossByte, Boolean, UInt8* buffer, CFIndex capacity,
                         CFIndex* usedBytes) {
    ByteSink sink(buffer, static_cast<std::size_t>(std::max<CFIndex>(capacity, 0)));
    const std::span units(UnitsOf(string).data() + range.location,
                          static_cast<std::size_t>(range.length));
    const std::size_t converted = WriteUnitsAsBytes(units, encoding, lossByte, sink);
    if (usedBytes)
        *usedBytes = static_cast<CFIndex>(sink.Used());
    return static_cast<CFIndex>(converted);
}

Boolean CFStringGetCString(CFStringRef string, char* buffer, CFIndex capacity,
                           CFStringEncoding encoding) {
    if (capacity <= 0)
        return false;
    const CFIndex length = CFStringGetLength(string);
    CFIndex used = 0;
    const CFIndex converted =
        CFStringGetBytes(string, CFRangeMake(0, length), encoding, 0, false,
                         reinterpret_cast<UInt8*>(buffer), capacity - 1, &used);
    buffer[used] = 0;
    return converted == length;
}

CFStringEncoding CFStringGetSystemEncoding() {
    return kCFStringEncodingUTF8;
}

namespace {

/// The place of `wanted` among the units, or a null pointer.
const UniChar* FindUnits(std::span<const UniChar> units, std::span<const UniChar> wanted,
                         CFStringCompareFlags options) {
    const bool backwards = options & kCFCompareBackwards;
    if (wanted.empty() || wanted.size() > units.size())
        return nullptr;
    if (options & kCFCompareAnchored)
        units = backwards ? units.last(wanted.size()) : units.first(wanted.size());
    const auto place = backwards
                           ? std::find_end(units.begin(), units.end(), wanted.begin(), wanted.end())
                           : std::search(units.begin(), units.end(), wanted.begin(), wanted.end());
    return place == units.end() ? nullptr : &*place;
}

} // namespace

Boolean CFStringFindWithOptions(CFStringRef string, CFStringRef wanted, CFRange range,
                                CFStringCompareFlags options, CFRange* result) {
    const UniChar* const units = UnitsOf(string).data();
    const UniChar* const found = FindUnits(
        {units + range.location, static_cast<std::size_t>(range.length)}, UnitsOf(wanted), options);
    if (found && result)
        *result = {found - units, CFStringGetLength(wanted)};
    return found != nullptr;
}

CFStringRef CFStringMakeConstantString(const char* text) {
    return OrNothing([text] {
        static std::mutex mutex;
        // Never destroyed: constants are used until the process is gone.
        static auto& constants = *new std::map<std::string, CFStringRef, std::less<>>;
        const std::lock_guard lock(mutex);
        CFStringRef& constant = constants[text];
        if (constant == nullptr)
            constant = CFStringCreateWithCString(kCFAllocatorDefault, text, kCFStringEncodingUTF8);
        return constant;
    });
}
