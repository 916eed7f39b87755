#include "tests/Source/UI/ViewTestSupport.h"
#include "tests/support/Desktop.h"

// What needs a real window system: a window manager, a pointer of its own, grabs.

namespace {

using testing::Contains;
using testing::ElementsAre;

class Display : public ShownWindow {
protected:
    bool Noted(const std::string& note) {
        return NativeInput::WaitUntil([&] { return testing::Matches(Contains(note))(notes); });
    }
    void PointAt(const View& view, const Point& where) {
        const Point at = view.ViewToScreen(where);
        Desktop::PointAt({at.x, at.y});
    }
};

TEST_F(Display, ThePointerReachesTheViewsWhereTheySayTheyStand) {
    right.tracksMouse = true;
    Place(right, {100, 0, 50, 50});
    PointAt(left, {10, 10});
    PointAt(right, {30, 40});
    EXPECT_TRUE(Noted("right inside 30,40"));
    Desktop::Input("click 5");
    EXPECT_TRUE(Noted("right wheel 30,40 by 0,-3"));
    notes.clear();
    Desktop::Input("keydown shift click 1 keyup shift");
    ASSERT_TRUE(Noted("right up"));
    EXPECT_THAT(notes, ElementsAre("right focus", "right click 30,40 mods 512", "right up"));
    Desktop::Input("click --repeat 2 1");
    EXPECT_TRUE(Noted("right double click 30,40"));
    PointAt(left, {10, 10});
    EXPECT_TRUE(NativeInput::WaitUntil([&] { return notes.back().starts_with("right exited"); }));
}

} // namespace
