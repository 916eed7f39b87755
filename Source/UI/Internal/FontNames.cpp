#include "UI/Internal/FontNames.h"

#include "Resources/LocalizedStrings.h"

namespace Kestrin {

const UString& FontName(FontID font) {
    switch (font) {
    case kFont1: {
        static const UString name = LookupString("Font1");
        return name;
    }
    case kFont3: {
        static const UString name = LookupString("Font3");
        return name;
    }
    case kFont4: {
        static const UString name = LookupString("Font4");
        return name;
    }
    case kFontBold: {
        static const UString name("Helvetica Neue Bold", UString::kUTF8);
        return name;
    }
    case kFontCondensedBold: {
        static const UString name("Helvetica Neue Condensed Bold", UString::kUTF8);
        return name;
    }
    case kFontBoldItalic: {
        static const UString name("Helvetica Neue Bold Italic", UString::kUTF8);
        return name;
    }
    case kFontPlain: {
        static const UString name("Helvetica Neue", UString::kUTF8);
        return name;
    }
    default: {
        static const UString name = LookupString("Font2");
        return name;
    }
    }
}

} // namespace Kestrin
