#include "XML/SafeFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <utility>

namespace Kestrin {

namespace {

namespace fs = std::filesystem;

std::error_code LastError() {
    return {errno, std::generic_category()};
}

/// A file beside another that disappears again unless it took the other's place.
class FileBeside {
public:
    explicit FileBeside(const fs::path& target)
        : fTarget(target) {
        // The process's number keeps two programs apart, the count two calls of this one.
        for (int count = 0; fDescriptor < 0 && (count == 0 || errno == EEXIST); ++count) {
            fPath = target.parent_path() / ("." + target.filename().string() + "." +
                                            std::to_string(getpid()) + "." + std::to_string(count));
            fDescriptor = open(fPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        }
        fPresent = fDescriptor >= 0;
    }
    ~FileBeside() {
        if (fDescriptor >= 0)
            close(fDescriptor);
        if (fPresent)
            unlink(fPath.c_str());
    }
    FileBeside(const FileBeside&) = delete;
    FileBeside& operator=(const FileBeside&) = delete;

    bool IsOpen() const { return fDescriptor >= 0; }

    bool TakePermissions() {
        struct stat status {};
        return stat(fTarget.c_str(), &status) != 0 ||
               fchmod(fDescriptor, status.st_mode & 07777) == 0;
    }

    bool Write(std::string_view content) {
        while (!content.empty()) {
            const ssize_t written = write(fDescriptor, content.data(), content.size());
            if (written < 0 && errno != EINTR)
                return false;
            content.remove_prefix(written > 0 ? static_cast<std::size_t>(written) : 0);
        }
        return true;
    }

    bool Store() {
        const bool stored = fsync(fDescriptor) == 0;
        return (close(std::exchange(fDescriptor, -1)) == 0) && stored;
    }

    bool TakePlace() {
        fPresent = rename(fPath.c_str(), fTarget.c_str()) != 0;
        return !fPresent;
    }

private:
    fs::path fTarget;
    fs::path fPath;
    int fDescriptor = -1;
    bool fPresent = false;
};

/// Makes the new name outlive a power cut. Some file systems cannot, which is no error.
void StoreFolder(const fs::path& folder) {
    const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    fsync(descriptor);
    close(descriptor);
}

fs::path WithoutLinks(const fs::path& path) {
    std::error_code error;
    const fs::path target = fs::weakly_canonical(path, error);
    return error ? path : target;
}

} // namespace

std::error_code ReplaceFile(const std::string& path, std::string_view content) {
    const fs::path target = WithoutLinks(path);
    FileBeside file(target);
    if (!file.IsOpen() || !file.TakePermissions() || !file.Write(content) || !file.Store() ||
        !file.TakePlace())
        return LastError();
    StoreFolder(target.parent_path());
    return {};
}

} // namespace Kestrin
