#pragma once

#include <CoreFoundation/CFBase.h>

#include <atomic>
#include <exception>

namespace KestrinMIDI {

/// What every CoreFoundation object begins with: its reference count. The C interface hands objects
/// out as pointers to this base, so that CFRetain and CFRelease serve all of them.
class CFObject {
public:
    CFObject(const CFObject&) = delete;
    CFObject& operator=(const CFObject&) = delete;

    void Retain() const { fReferences.fetch_add(1, std::memory_order_relaxed); }
    void Release() const;

    /// Whether `other` is of this kind and of equal content. Without an override an object equals
    /// itself only.
    virtual bool Equals(const CFObject& other) const { return this == &other; }

protected:
    CFObject() = default;
    virtual ~CFObject() = default;

private:
    mutable std::atomic<int> fReferences{1};
};

/// The object behind a reference of the C interface, which is of that kind.
template <typename Object>
const Object& ObjectOf(CFTypeRef reference) {
    return static_cast<const Object&>(*static_cast<const CFObject*>(reference));
}

/// The C interface's reference to an object.
template <typename Ref>
Ref ReferenceTo(const CFObject* object) {
    return static_cast<Ref>(static_cast<CFTypeRef>(object));
}

/// What `call` answers, or null or false where it ends in an exception: none leaves a C function.
template <typename Call>
auto OrNothing(const Call& call) noexcept -> decltype(call()) {
    try {
        return call();
    } catch (const std::exception&) {
        return {};
    }
}

} // namespace KestrinMIDI
