#include "Strings/PlatformStrings.h"

#include <algorithm>
#include <iterator>

CFHolder<CFStringRef> UStringToCF(const UString& text) {
    return CFHolder(CFStringCreateWithCharacters(kCFAllocatorDefault, text.data(),
                                                 static_cast<CFIndex>(text.length())));
}

UString CFToUString(CFStringRef string) {
    UString text;
    if (!string)
        return text;
    const CFIndex length = CFStringGetLength(string);
    text.resize(static_cast<std::size_t>(length));
    if (length > 0)
        CFStringGetCharacters(string, CFRangeMake(0, length), &text[0]);
    return text;
}

CFHolder<CFStringRef> HFSToCFString(const HFSUniStr255& name) {
    const CFIndex length = std::min<CFIndex>(name.length, std::size(name.unicode));
    return CFHolder(CFStringCreateWithCharacters(kCFAllocatorDefault, name.unicode, length));
}
