#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <string_view>

/// The codes of MidiDevice::surfaceType.
inline constexpr SInt32 kSurfaceTypeOther = 16;
inline constexpr SInt32 kSurfaceTypeMackieControl = 20;
inline constexpr SInt32 kSurfaceTypeMackieControlExtender = 21;
inline constexpr SInt32 kSurfaceTypeSAC2K = 32;

/// One kind of surface. Texts are compared by their beginning, with case.
struct SurfaceModel {
    std::string_view manufacturer;
    std::string_view model;
    SInt32 type;

    /// Whether the unit's own first port is the surface; else it is an external device, cabled to a
    /// port of an interface.
    bool isOwnPort;
};

/// All kinds of surfaces; of two models that fit, the first is meant. An AlphaTrack is deliberately
/// not among them, although it is a port of its own, too.
inline constexpr SurfaceModel kSurfaceModels[] = {
    {"Mackie", "HUI", kSurfaceTypeOther, false},
    {"Mackie", "Mackie Control Exp", kSurfaceTypeMackieControlExtender, false},
    {"Mackie", "Mackie Control", kSurfaceTypeMackieControl, false},
    {"Radikal Technologies", "SAC-2K", kSurfaceTypeSAC2K, false},
    {"LOUD Technologies, Inc.", "MCU Pro USB", kSurfaceTypeMackieControl, true},
};

/// What the name of the port begins with that is the surface of a unit with ports of its own.
inline constexpr std::string_view kSurfacePort = "Port 1";

/// Null where these texts are of no surface.
constexpr const SurfaceModel* FindSurfaceModel(std::string_view manufacturer,
                                               std::string_view model) {
    for (const SurfaceModel& known : kSurfaceModels) {
        if (manufacturer.starts_with(known.manufacturer) && model.starts_with(known.model))
            return &known;
    }
    return nullptr;
}

/// The type of a surface, by its model alone.
constexpr SInt32 SurfaceTypeOf(std::string_view model) {
    for (const SurfaceModel& known : kSurfaceModels) {
        if (model.starts_with(known.model))
            return known.type;
    }
    return kSurfaceTypeOther;
}
