#include "tools/messages/ServiceMessages.h"

#include "Surfaces/MidiObject.h"

#include "tools/messages/Messages.h"

#include <CoreMIDI/MIDIDatabase.h>

#include <filesystem>

namespace {

std::string TextOf(CFStringRef owned) {
    const MidiObject::Text text(owned);
    return text ? MidiObject::FromText(text.Get()) : "";
}

/// Puts `place` where `part` stands first, and tells whether it stands there.
bool Replace(std::string& sentence, const std::string& part, const char* place) {
    const std::size_t start = part.empty() ? std::string::npos : sentence.find(part);
    if (start != std::string::npos)
        sentence.replace(start, part.size(), place);
    return start != std::string::npos;
}

} // namespace

std::string DatabasePath() {
    return TextOf(KestrinMIDICopyDatabasePath());
}

std::string ServiceMessage(CFStringRef owned) {
    std::string sentence = TextOf(owned);
    if (sentence.empty())
        return "";
    std::string path = DatabasePath();
    if (!Replace(sentence, path, "%1")) {
        path = std::filesystem::path(path).parent_path().string();
        Replace(sentence, path, "%1");
    }
    const std::size_t start = sentence.find(" (") + 2;
    const std::size_t end = sentence.rfind(')');
    std::string cause;
    if (start > 1 && end != std::string::npos && start < end) {
        cause = sentence.substr(start, end - start);
        sentence.replace(start, end - start, "%2");
    }
    return Filled(sentence.c_str(), std::array{path, cause});
}
