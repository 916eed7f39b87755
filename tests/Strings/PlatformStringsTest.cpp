#include "Strings/PlatformStrings.h"

#include "Strings/SortedVectorMap.h"

#include "tests/Strings/Text.h"

namespace {

TEST(PlatformStrings, CarryUnitsUnchanged) {
    const UString text = Units({'a', 0, 0xDB00, 0xDC00, 0xFFFF});
    EXPECT_EQ(CFToUString(UStringToCF(text).Get()), text);
    EXPECT_EQ(CFToUString(UStringToCF(UString()).Get()), UString());
    EXPECT_EQ(CFToUString(nullptr), UString());
    EXPECT_EQ(CFToUString(HFSToCFString({2, {'h', 'i', 'x'}}).Get()), "hi"_u);
}

TEST(SortedVectorMap, KeepsOneEntryAKeyInOrder) {
    sorted_vector_map<int, char> map;
    map[5] = 'e';
    map[1] = 'a';
    map[3] = 'c';
    EXPECT_FALSE(map.insert({3, 'x'}).second);
    EXPECT_EQ(map.find(3)->second, 'c');
    EXPECT_EQ(map.find(4), map.end());
    std::string order;
    for (const auto& [key, value] : map)
        order += value;
    EXPECT_EQ(order, "ace");
}

} // namespace
