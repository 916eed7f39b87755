#include "Resources/FileSpecification.h"

#include "Resources/ResourceAccess.h"
#include "XML/XMLSerializable.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <fstream>

namespace {

namespace fs = std::filesystem;
using namespace Kestrin;

FSRef ReferenceTo(const fs::path& path) {
    FSRef reference{};
    EXPECT_EQ(FSPathMakeRef(reinterpret_cast<const UInt8*>(path.c_str()), &reference, nullptr),
              noErr)
        << path;
    return reference;
}

UString U(const std::string& text) {
    return {text, UString::kUTF8};
}

TEST(FileSpecification, NamesAFileThroughRenamingAndReplacing) {
    const TemporaryFolder folder;
    // Names that are no text and texts beyond it keep their bytes.
    for (const char* name : {"caf\u00e9 1.txt", "\xff\xe9.txt", "smile \U0001F600"}) {
        const fs::path path = fs::canonical(folder.Path()) / name;
        std::ofstream(path) << "one";
        const FSRef reference = ReferenceTo(path);
        const FileSpecification file(reference);
        EXPECT_TRUE(file.Exists());
        EXPECT_EQ(file.GetPOSIXPath(), path.string());

        fs::rename(path, folder / "other");
        EXPECT_FALSE(file.Exists());
        EXPECT_FALSE(FileSpecification(reference).Exists());
        EXPECT_EQ(file.GetPOSIXPath(), path.string());
        std::ofstream(path) << "two";
        EXPECT_TRUE(file.Exists());
        EXPECT_TRUE(FileSpecification(reference).Exists());
    }
    EXPECT_EQ(FileSpecification(ReferenceTo("/")).GetPOSIXPath(), "/");
    EXPECT_EQ(FileSpecification(ReferenceTo("/usr")).GetFullPath(), U("/usr"));
}

TEST(FileSpecification, NamesNothingWithoutAFile) {
    for (const FileSpecification& none :
         {FileSpecification(), FileSpecification(ReferenceTo("/"), U(std::string(256, 'x')))}) {
        EXPECT_FALSE(none.Exists());
        EXPECT_TRUE(none.GetFullPath().empty());
        EXPECT_TRUE(none.GetPOSIXPath().empty());
    }
}

TEST(FileSpecification, FindsResourcesBesideTheProgram) {
    const auto table = ResourceAccess::Instance().GetFile(U("LocalizableStrings"), U("xml"));
    EXPECT_EQ(fs::path(table.GetPOSIXPath()), fs::read_symlink("/proc/self/exe").parent_path() /
                                                  "Resources/LocalizableStrings.xml");
    EXPECT_NE(ReadSerializedResourceFile(U("LocalizableStrings"), U("xml")), nullptr);
    for (const char* name : {"Missing", "", "../LocalizableStrings"})
        EXPECT_EQ(ReadSerializedResourceFile(U(name), U("xml")), nullptr) << name;
}

/// While it lives, no file can grow past a few bytes, as on a full disk.
class FullDisk {
public:
    FullDisk() {
        getrlimit(RLIMIT_FSIZE, &fBefore);
        const rlimit limit{100, fBefore.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk() {
        setrlimit(RLIMIT_FSIZE, &fBefore);
        std::signal(SIGXFSZ, fHandler);
    }

private:
    rlimit fBefore{};
    void (*fHandler)(int) = std::signal(SIGXFSZ, SIG_IGN);
};

class SavedDocument : public testing::Test {
protected:
    std::error_code Save(const std::string& text, const std::string& name = "settings.xml") const {
        const auto settings = CreateContainer(U("s"));
        settings->AddItem(CreateUString(U("a"), U(text)));
        return WriteSerializedFile(*settings, At(name));
    }
    FileSpecification At(const std::string& name) const {
        return {ReferenceTo(fFolder.Path()), U(name)};
    }
    UString Saved() const {
        return ReadSerializedFile(At("settings.xml"))->GetUStringItem(U("a"))->GetValue();
    }

    TemporaryFolder fFolder;
};

TEST_F(SavedDocument, KeepsThePlaceAndPermissionsOfTheOneItReplaces) {
    EXPECT_EQ(ReadSerializedFile(At("settings.xml")), nullptr);
    EXPECT_FALSE(Save("1"));
    EXPECT_EQ(Saved(), U("1"));

    const auto permissions = fs::perms::owner_read | fs::perms::owner_write;
    fs::permissions(fFolder / "settings.xml", permissions);
    fs::create_symlink("settings.xml", fFolder / "link.xml");
    EXPECT_FALSE(Save("2", "link.xml"));
    EXPECT_EQ(Saved(), U("2"));
    EXPECT_TRUE(fs::is_symlink(fFolder / "link.xml"));
    EXPECT_EQ(fs::status(fFolder / "settings.xml").permissions(), permissions);
}

TEST_F(SavedDocument, StaysWhenSavingFails) {
    EXPECT_EQ(WriteSerializedFile(*CreateContainer(U("s")), FileSpecification()),
              std::errc::no_such_file_or_directory);
    EXPECT_FALSE(Save("old"));
    {
        const FullDisk full;
        EXPECT_EQ(Save(std::string(1000, 'x')), std::errc::file_too_large);
    }
    EXPECT_EQ(Saved(), U("old"));
    // A folder in the file's place cannot be replaced.
    fs::create_directories(fFolder / "folder.xml/kept");
    EXPECT_TRUE(Save("new", "folder.xml"));
    EXPECT_TRUE(fs::exists(fFolder / "folder.xml/kept"));
    EXPECT_EQ(std::distance(fs::directory_iterator(fFolder.Path()), {}), 2);
}

} // namespace
