#pragma once

#include <CoreFoundation/CFBase.h>

#include <utility>

/// Owns one reference to a CoreFoundation object, or nothing. Copies own a reference each.
template <typename Ref>
class CFHolder {
public:
    CFHolder() = default;
    /// Takes over the reference that a Create or Copy function returned; null is nothing.
    explicit CFHolder(Ref owned)
        : fObject(owned) {}
    /// Adds a reference to an object that somebody else owns; null is nothing.
    static CFHolder Sharing(Ref object) { return CFHolder(Retained(object)); }

    CFHolder(const CFHolder& other)
        : fObject(Retained(other.fObject)) {}
    CFHolder(CFHolder&& other) noexcept
        : fObject(std::exchange(other.fObject, nullptr)) {}
    CFHolder& operator=(CFHolder other) noexcept {
        std::swap(fObject, other.fObject);
        return *this;
    }
    ~CFHolder() {
        if (fObject)
            CFRelease(fObject);
    }

    Ref Get() const { return fObject; }
    explicit operator bool() const { return fObject != nullptr; }

    /// Hands the reference to the caller; the holder keeps nothing.
    Ref Detach() { return std::exchange(fObject, nullptr); }

    /// For a call that stores the reference it returns through a pointer. What was held before is
    /// given back first.
    Ref* Receive() {
        *this = CFHolder();
        return &fObject;
    }

private:
    static Ref Retained(Ref object) {
        if (object)
            CFRetain(object);
        return object;
    }

    Ref fObject = nullptr;
};
