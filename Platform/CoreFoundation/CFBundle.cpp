#include "Platform/CoreFoundation/CFURLObject.h"
#include "Platform/CoreFoundation/FileNames.h"
#include "Platform/CoreFoundation/UserLanguages.h"

#include <CoreFoundation/CFBundle.h>

#include <filesystem>

using namespace KestrinMIDI;

namespace {

namespace fs = std::filesystem;

/// The places of a program's resources, seen from its folder.
constexpr const char* kResourceFolders[] = {"Resources", "../share/sorvex-mackie-setup"};

bool IsFile(const fs::path& path) {
    std::error_code error;
    return fs::exists(path, error) && !fs::is_directory(path, error);
}

fs::path ProgramFolder() {
    std::error_code error;
    return fs::read_symlink("/proc/self/exe", error).parent_path();
}

std::string TextOf(CFStringRef string) {
    return string ? FileNameOf(string) : std::string();
}

std::string FileNameOf(CFStringRef name, CFStringRef type) {
    const std::string extension = TextOf(type);
    return extension.empty() ? TextOf(name) : TextOf(name) + "." + extension;
}

CFURLRef URLOf(const fs::path& path) {
    return MakeURL(path.lexically_normal().string());
}

struct BundleObject final : CFObject {
    explicit BundleObject(fs::path folder)
        : fFolder(std::move(folder)) {}

    /// The file at that place among the resources, or an empty path.
    fs::path Find(const fs::path& place) const {
        for (const char* folder : kResourceFolders) {
            if (fs::path path = fFolder / folder / place; IsFile(path))
                return path;
        }
        return {};
    }

    fs::path FindLocalized(const fs::path& subFolder, const std::string& fileName) const {
        for (const std::string& language : UserLanguages()) {
            if (fs::path path = Find(subFolder / (language + ".lproj") / fileName); !path.empty())
                return path;
        }
        return Find(subFolder / fileName);
    }

private:
    fs::path fFolder;
};

} // namespace

CFBundleRef CFBundleGetMainBundle() {
    return OrNothing([] {
        static const CFHolder bundle(ReferenceTo<CFBundleRef>(new BundleObject(ProgramFolder())));
        return bundle.Get();
    });
}

CFURLRef CFBundleCopyResourceURL(CFBundleRef bundle, CFStringRef name, CFStringRef type,
                                 CFStringRef subFolder) {
    return OrNothing([=] {
        const fs::path found =
            ObjectOf<BundleObject>(bundle).FindLocalized(TextOf(subFolder), FileNameOf(name, type));
        return found.empty() ? nullptr : URLOf(found);
    });
}
