#include "Platform/CoreMIDI/Live/SoundCards.h"

#include <fcntl.h>
#include <sound/asound.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstddef>
#include <cstring>
#include <fstream>
#include <system_error>

namespace KestrinMIDI {

namespace {

using std::filesystem::path;

constexpr const char* kEntries = "/sys/class/sound";
constexpr std::size_t kMostAttributeBytes = 4096; // a page, all that sysfs has room for

/// One line of sysfs without its end; empty where there is no such file, or it goes while it is
/// read.
std::string ReadAttribute(const path& folder, const char* name) {
    std::ifstream file(folder / name, std::ios::binary);
    std::string text(kMostAttributeBytes, '\0');
    // Unlike an iterator over the file's buffer, this throws nothing when the device is gone.
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(file.gcount()));
    if (!text.empty() && text.back() == '\n')
        text.pop_back();
    return text;
}

path Canonical(const path& link) {
    std::error_code gone;
    return std::filesystem::canonical(link, gone);
}

/// Whether a folder's name is that of a USB interface: "1-1.4:1.0". The device is the folder above;
/// one goes by the name, since hubs look like devices too when the device's own files are already
/// gone.
bool IsUsbInterface(const std::string& name) {
    return name.find_first_not_of("0123456789-.:") == std::string::npos &&
           name.find('-') < name.find(':') && name.find(':') != std::string::npos;
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

/// Asked of the kernel itself, since the library tells on the standard error where the card is
/// gone.
std::string ShortNameOf(int card) {
    const path control = "/dev/snd/controlC" + std::to_string(card);
    const int descriptor = open(control.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return {};
    snd_ctl_card_info info{};
    const int result = ioctl(descriptor, SNDRV_CTL_IOCTL_CARD_INFO, &info);
    close(descriptor);
    const char* const name = reinterpret_cast<const char*>(info.name);
    return result < 0 ? std::string() : std::string(name, strnlen(name, sizeof info.name));
}

} // namespace

std::optional<UsbUnit> UsbUnitAbove(const path& folder) {
    path interface = folder;
    while (interface.has_relative_path() && !IsUsbInterface(interface.filename().string()))
        interface = interface.parent_path();
    if (!interface.has_relative_path())
        return std::nullopt;
    const path device = interface.parent_path();
    return UsbUnit{ReadAttribute(device, "idVendor"),
                   ReadAttribute(device, "idProduct"),
                   ReadAttribute(device, "manufacturer"),
                   ReadAttribute(device, "product"),
                   ReadAttribute(device, "serial"),
                   ControllerOf(device) + "-" + ReadAttribute(device, "devpath")};
}

std::string EntryName(int card) {
    return "card" + std::to_string(card);
}

CardPlaces PlacesOfCards() {
    CardPlaces places;
    std::error_code none;
    std::filesystem::directory_iterator entry(kEntries, none);
    for (const std::filesystem::directory_iterator end; !none && entry != end;
         entry.increment(none)) {
        const std::string name = entry->path().filename().string();
        if (name.starts_with("card"))
            places[name] = Canonical(entry->path());
    }
    return places;
}

std::optional<SoundCard> ReadSoundCard(int number) {
    const path entry = path(kEntries) / EntryName(number);
    const path place = Canonical(entry);
    const path device = Canonical(entry / "device");
    SoundCard card;
    card.number = number;
    card.id = ReadAttribute(place, "id");
    card.name = ShortNameOf(number);
    card.driver = Canonical(device / "driver").filename().string();
    card.path = device.filename().string();
    card.usb = UsbUnitAbove(device);
    // Of a unit that is pulled out, the link to the driver goes first, then the card's entry, and
    // the USB device's files last: while the first two are there, what was read is whole.
    const bool hasLostDriver = card.usb && card.driver.empty();
    if (place.empty() || hasLostDriver || Canonical(entry) != place)
        return std::nullopt;
    return card;
}

} // namespace KestrinMIDI
