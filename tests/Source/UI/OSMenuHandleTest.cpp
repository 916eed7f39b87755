#include "UI/OSMenuHandle.h"

#include <gtest/gtest.h>

using namespace Kestrin;

namespace {

TEST(OSMenuHandle, NewMenusAvoidThePrototypesAndReportWhenNoIDIsLeft) {
    const auto newID = [] { return OSMenuHandle::CreateNewHierarchicalMenu().GetMenuID(); };
    const short next = static_cast<short>(newID() + 1);
    OSMenuHandle::CreateNewStandaloneMenu(next).MakePrototypeMenu();
    EXPECT_EQ(newID(), next + 1);

    OSMenuHandle found;
    EXPECT_TRUE(OSMenuHandle::GetPrototypeMenu(next, found));
    EXPECT_EQ(found.GetMenuID(), next);

    for (short id = 2; id <= 32766; ++id)
        OSMenuHandle::CreateNewStandaloneMenu(id).MakePrototypeMenu();
    EXPECT_EQ(newID(), 1);
    OSMenuHandle::CreateNewStandaloneMenu(1).MakePrototypeMenu();
    EXPECT_THROW(newID(), int);
}

} // namespace
