#include "Strings/PlatformStrings.h"

#include "tests/Strings/Text.h"

namespace {

TEST(PlatformStrings, CarryUnitsUnchanged) {
    const UString text = Units({'a', 0, 0xDB00, 0xDC00, 0xFFFF});
    EXPECT_EQ(CFToUString(UStringToCF(text).Get()), text);
    EXPECT_EQ(CFToUString(nullptr), UString());
    EXPECT_EQ(CFToUString(HFSToCFString({2, {'h', 'i', 'x'}}).Get()), "hi"_u);
}

} // namespace
