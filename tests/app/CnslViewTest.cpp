#include "app/CnslView.h"

#include "Surfaces/SurfaceGroups.h"

#include "app/CBasicApp.h"
#include "tests/support/TestStudio.h"

#include <gtest/gtest.h>

namespace {

TEST(CnslView, ScansNewSurfacesInAndOkStoresAllApartAndQuits) {
    TestStudio studio;
    const MIDIDeviceRef interface = studio.AddInterface("Rack", 3);
    const MIDIDeviceRef surfaces[] = {studio.AddExternal("Left", "Mackie", "Mackie Control"),
                                      studio.AddExternal("Right", "Mackie", "Mackie Control Exp"),
                                      studio.AddExternal("New", "Radikal Technologies", "SAC-2K")};
    for (int port = 1; port <= 3; ++port)
        TestStudio::Cable(interface, port, surfaces[port - 1]);
    for (const MIDIDeviceRef surface : {surfaces[0], surfaces[1]}) {
        TestStudio::SetNumber(surface, kGroupIDKey, 1);
        TestStudio::SetNumber(surface, kGroupPositionKey, 3);
    }
    const auto expectStored = [](MIDIDeviceRef surface, SInt32 group, SInt32 position) {
        EXPECT_EQ(TestStudio::Number(surface, kGroupIDKey), group);
        EXPECT_EQ(TestStudio::Number(surface, kGroupPositionKey), position);
    };

    CBasicApp app(Kestrin::Application::PlatformParameters{});
    Kestrin::View parent;
    CnslView console(&app, &parent);
    console.Init();
    expectStored(surfaces[0], 1, 3);
    expectStored(surfaces[2], 0, TestStudio::ID(surfaces[2]));
    console.SetCurrentSurfaceIndex(3);    // is not there
    console.Handle(FourCharCode("NONE")); // nor is this command known
    console.Handle(kCommandOk);
    expectStored(surfaces[0], 1, 4);
    expectStored(surfaces[1], 1, 3);
    expectStored(surfaces[2], 0, 127);
    app.Run(); // returns, since the program has been asked to quit
}

} // namespace
