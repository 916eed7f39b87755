#include "app/CnslView.h"

#include "app/CBasicApp.h"
#include "app/SurfaceGroups.h"
#include "tests/support/TestStudio.h"

#include <gtest/gtest.h>

#include <optional>

namespace {

/// A studio of three surfaces, the last of them new, with the program running on it.
class CnslViewTest : public testing::Test {
protected:
    CnslViewTest() {
        const MIDIDeviceRef interface = studio.AddInterface("Rack", 3);
        surfaces = {studio.AddExternal("Left", "Mackie", "Mackie Control"),
                    studio.AddExternal("Right", "Mackie", "Mackie Control Exp"),
                    studio.AddExternal("New", "Radikal Technologies", "SAC-2K")};
        for (int port = 1; port <= 3; ++port)
            TestStudio::Cable(interface, port, surfaces[static_cast<std::size_t>(port) - 1]);
        Store(0, 1, 3);
        Store(1, 1, 3);
        app.emplace(Kestrin::Application::PlatformParameters());
        console.emplace(&*app, &parent);
        console->Init();
    }

    void Store(std::size_t surface, SInt32 group, SInt32 position) {
        TestStudio::SetNumber(surfaces[surface], kGroupIDKey, group);
        TestStudio::SetNumber(surfaces[surface], kGroupPositionKey, position);
    }

    void ExpectStored(std::size_t surface, SInt32 group, SInt32 position) {
        EXPECT_EQ(TestStudio::Number(surfaces[surface], kGroupIDKey), group) << surface;
        EXPECT_EQ(TestStudio::Number(surfaces[surface], kGroupPositionKey), position) << surface;
    }

    TestStudio studio;
    std::vector<MIDIDeviceRef> surfaces;
    std::optional<CBasicApp> app;
    Kestrin::View parent;
    std::optional<CnslView> console;
};

TEST_F(CnslViewTest, ScansNewSurfacesInAndOkStoresAllApartAndQuits) {
    ExpectStored(0, 1, 3);
    ExpectStored(2, 0, TestStudio::ID(surfaces[2]));
    console->SetCurrentSurfaceIndex(3); // is not there
    console->Handle(0x4E4F4E45);        // nor is this command known
    console->Handle(kCommandOk);
    ExpectStored(0, 1, 4);
    ExpectStored(1, 1, 3);
    ExpectStored(2, 0, 127);
    app->Run(); // returns, since the program has been asked to quit
}

TEST_F(CnslViewTest, ChoosingASurfaceKeepsTheBoxesOfTheOneBeforeCrosswise) {
    Store(2, 9, 64);
    console->Init();
    console->SetCurrentSurfaceIndex(2);
    console->Handle(kCommandMenu); // the current surface, chosen once more
    console->Handle(kCommandOk);
    ExpectStored(2, 64, 9);
}

} // namespace
