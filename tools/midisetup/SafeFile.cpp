#include "tools/midisetup/SafeFile.h"

#include "tools/messages/Messages.h"
#include "tools/midisetup/Failure.h"
#include "tools/midisetup/Output.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <system_error>

namespace MidiSetup {

namespace {

[[noreturn]] void FailToWrite(const std::string& file, int error) {
    throw Failure(
        Message("cannot write %1: %2", Printable(file), std::generic_category().message(error)));
}

/// Writes all and has it on the disk; 0, or the error's number.
int WriteTo(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = write(descriptor, text.data(), text.size());
        if (written < 0 && errno != EINTR)
            return errno;
        text.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
    }
    // A pipe has nothing to synchronise.
    return fsync(descriptor) == 0 || errno == EINVAL || errno == EROFS ? 0 : errno;
}

int WriteAndClose(int descriptor, std::string_view text) {
    if (descriptor < 0)
        return errno;
    const int error = WriteTo(descriptor, text);
    return close(descriptor) == 0 || error != 0 ? error : errno;
}

/// Has the names in a file's folder on the disk; 0, or the error's number.
int SynchroniseFolderOf(const std::filesystem::path& file) {
    const std::filesystem::path folder = file.has_parent_path() ? file.parent_path() : ".";
    return WriteAndClose(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC), {});
}

} // namespace

void WriteSafely(const std::string& file, const std::string& text) {
    std::error_code error;
    const auto status = std::filesystem::status(file, error);
    if (exists(status) && !is_regular_file(status)) {
        if (const int code = WriteAndClose(open(file.c_str(), O_WRONLY | O_CLOEXEC), text))
            FailToWrite(file, code);
        return;
    }
    // Behind a link it is the link's target that is replaced.
    const std::string target =
        exists(status) ? std::filesystem::canonical(file, error).string() : file;
    const std::string beside = target + ".new-" + std::to_string(getpid());
    const int descriptor = open(beside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    int code = WriteAndClose(descriptor, text);
    if (code == 0 && exists(status))
        std::filesystem::permissions(beside, status.permissions(), error);
    if (code == 0 && rename(beside.c_str(), target.c_str()) != 0)
        code = errno;
    if (code != 0 && descriptor >= 0)
        unlink(beside.c_str());
    if (code == 0)
        code = SynchroniseFolderOf(target);
    if (code != 0)
        FailToWrite(file, code);
}

std::string ReadAtMost(const std::string& file, std::size_t most) {
    std::ifstream opened;
    if (file != "-") {
        opened.open(file, std::ios::binary);
        if (!opened || std::filesystem::is_directory(file))
            throw Failure(Message("cannot read %1", Printable(file)));
    }
    std::istream& input = file == "-" ? std::cin : opened;
    std::string text;
    char block[1U << 16U];
    while (input.read(block, sizeof block) || input.gcount() > 0) {
        text.append(block, static_cast<std::size_t>(input.gcount()));
        if (text.size() > most)
            throw Failure(Message("%1 is larger than %2 MiB; that is no document of a studio",
                                  Printable(file), most >> 20U));
    }
    return text;
}

} // namespace MidiSetup
