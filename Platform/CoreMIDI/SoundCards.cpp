#include "Platform/CoreMIDI/SoundCards.h"

#include <alsa/asoundlib.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <system_error>

namespace {

using std::filesystem::path;

/// One line of sysfs without its end; empty where there is no such file.
std::string ReadAttribute(const path& folder, const char* name) {
    std::ifstream file(folder / name, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    if (!text.empty() && text.back() == '\n')
        text.pop_back();
    return text;
}

bool HasAttribute(const path& folder, const char* name) {
    std::error_code none;
    return std::filesystem::exists(folder / name, none);
}

path Canonical(const path& link) {
    std::error_code gone;
    return std::filesystem::canonical(link, gone);
}

/// The controller of a USB device: the folder above its root hub ("usb1").
std::string ControllerOf(path folder) {
    while (folder.has_relative_path()) {
        const std::string name = folder.filename().string();
        folder = folder.parent_path();
        if (name.starts_with("usb") && name.find_first_not_of("0123456789", 3) == std::string::npos)
            return folder.filename().string();
    }
    return {};
}

std::string ShortNameOf(int card) {
    char* name = nullptr;
    if (snd_card_get_name(card, &name) < 0)
        return {};
    const std::string copy = name;
    std::free(name);
    return copy;
}

} // namespace

std::optional<UsbUnit> UsbUnitAbove(const path& folder) {
    path device = folder;
    while (device.has_relative_path() && !HasAttribute(device, "idVendor"))
        device = device.parent_path();
    if (!HasAttribute(device, "idVendor"))
        return std::nullopt;
    return UsbUnit{ReadAttribute(device, "idVendor"),
                   ReadAttribute(device, "idProduct"),
                   ReadAttribute(device, "manufacturer"),
                   ReadAttribute(device, "product"),
                   ReadAttribute(device, "serial"),
                   ControllerOf(device) + "-" + ReadAttribute(device, "devpath")};
}

SoundCard ReadSoundCard(int number) {
    const path device = Canonical("/sys/class/sound/card" + std::to_string(number) + "/device");
    SoundCard card;
    card.number = number;
    card.name = ShortNameOf(number);
    card.driver = Canonical(device / "driver").filename().string();
    card.path = device.filename().string();
    card.usb = UsbUnitAbove(device);
    return card;
}
