#include "tools/midisetup/SurfaceHints.h"

#include "Surfaces/SurfaceGroups.h"
#include "Surfaces/SurfaceModels.h"

#include "tools/messages/Messages.h"
#include "tools/midisetup/Output.h"

namespace MidiSetup {

namespace {

constexpr std::string_view kExtenderModel = "Mackie Control Exp";

/// The model whose beginning this is but for letter case or the manufacturer.
const SurfaceModel* NearlyFitting(const std::string& model) {
    for (const SurfaceModel& known : kSurfaceModels) {
        if (!known.isOwnPort && LowerCase(model).starts_with(LowerCase(known.model)))
            return &known;
    }
    return nullptr;
}

std::string SetCommand(const std::string& word, const char* key, std::string_view value) {
    return "midisetup set " + word + " " + key + " \"" + Printable(value) + "\"";
}

std::string SetCommands(const std::string& word, std::string_view manufacturer,
                        std::string_view model) {
    return SetCommand(word, "manufacturer", manufacturer) + " && " +
           SetCommand(word, "model", model);
}

} // namespace

std::optional<std::string> FaultInSetting(MIDIUniqueID id, const std::string& key,
                                          const PropertyValue& value) {
    const bool isPosition = key == kGroupPositionKey;
    if (!isPosition && key != kGroupIDKey)
        return std::nullopt;
    const auto* number = std::get_if<SInt32>(&value);
    const bool fits =
        number != nullptr && *number >= kFirstGroupSetting && *number <= kLastGroupSetting;
    if (fits || (isPosition && number != nullptr && *number == id))
        return std::nullopt;
    return isPosition ? Message("a surface's position is a whole number from %1 to %2",
                                kFirstGroupSetting, kLastGroupSetting)
                      : Message("a surface's group is a whole number from %1 to %2",
                                kFirstGroupSetting, kLastGroupSetting);
}

std::optional<std::string> ModelHint(const Device& device, const std::string& word) {
    const auto text = [&](CFStringRef key) {
        return MidiObject::String(device.reference, key).value_or("");
    };
    const std::string manufacturer = text(kMIDIPropertyManufacturer);
    const std::string model = text(kMIDIPropertyModel);
    if (device.kind != DeviceKind::kExternal || model.empty())
        return std::nullopt;
    const SurfaceModel* const known = FindSurfaceModel(manufacturer, model);
    if (known != nullptr && known->isOwnPort)
        return Message("%1 is found as a surface only where it is plugged in itself. If it is "
                       "cabled to a port: %2",
                       Quoted(model), SetCommands(word, "Mackie", "Mackie Control"));
    if (known != nullptr) {
        const bool seemsExtender =
            LowerCase(model.substr(known->model.size())).find("xt") != std::string::npos;
        if (known->type != kSurfaceTypeMackieControl || !seemsExtender)
            return std::nullopt;
        return Message("%1 is taken for a main unit, since it begins with %2. If it is an "
                       "extender: %3",
                       Quoted(model), Quoted(known->model),
                       SetCommand(word, "model", kExtenderModel));
    }
    const SurfaceModel* const near = NearlyFitting(model);
    if (near == nullptr)
        return std::nullopt;
    const std::string commands = SetCommands(word, near->manufacturer, near->model);
    if (manufacturer.empty())
        return Message("%1 of no manufacturer is taken for no surface. If it is one: %2",
                       Quoted(model), commands);
    return Message("%1 of %2 is taken for no surface. If it is one: %3", Quoted(model),
                   Quoted(manufacturer), commands);
}

} // namespace MidiSetup
