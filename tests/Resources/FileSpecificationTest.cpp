#include "Resources/FileSpecification.h"

#include "Resources/ResourceAccess.h"
#include "XML/XMLSerializable.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <filesystem>
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

class FileSpecificationTest : public testing::Test {
protected:
    TemporaryFolder fFolder;
    const fs::path fPath = fs::canonical(fFolder.Path()) / "caf\u00e9 1.txt";
};

TEST_F(FileSpecificationTest, NamesAFileThroughDeletingReplacingAndRenaming) {
    std::ofstream(fPath) << "one";
    const FSRef reference = ReferenceTo(fPath);
    const FileSpecification file(reference);
    EXPECT_TRUE(file.Exists());
    EXPECT_EQ(file.GetFullPath(), U(fPath.string()));
    EXPECT_EQ(file.GetPOSIXPath(), fPath.string());

    fs::rename(fPath, fFolder / "other");
    EXPECT_FALSE(file.Exists());
    EXPECT_EQ(file.GetPOSIXPath(), fPath.string());
    EXPECT_FALSE(FileSpecification(reference).Exists());

    std::ofstream(fPath) << "two";
    EXPECT_TRUE(file.Exists());
    EXPECT_TRUE(FileSpecification(reference).Exists());
}

TEST_F(FileSpecificationTest, NamesNothingUntilItIsGivenAFile) {
    const FileSpecification none;
    EXPECT_FALSE(none.Exists());
    EXPECT_TRUE(none.GetFullPath().empty());
    EXPECT_TRUE(none.GetPOSIXPath().empty());
    const FileSpecification tooLong(ReferenceTo("/"),
                                    UString(std::string(256, 'x'), UString::kASCII));
    EXPECT_TRUE(tooLong.GetFullPath().empty());
}

TEST_F(FileSpecificationTest, NamesTheRootOfTheFileSystem) {
    const FileSpecification root(ReferenceTo("/"));
    EXPECT_TRUE(root.Exists());
    EXPECT_EQ(root.GetPOSIXPath(), "/");
    EXPECT_EQ(FileSpecification(ReferenceTo("/usr")).GetPOSIXPath(), "/usr");
}

TEST_F(FileSpecificationTest, KeepsBytesThatAreNoText) {
    for (const char* name : {"\xff\xe9.txt", "smile \U0001F600"}) {
        const fs::path path = fs::canonical(fFolder.Path()) / name;
        std::ofstream(path) << "x";
        const FileSpecification file(ReferenceTo(path));
        EXPECT_TRUE(file.Exists()) << path;
        EXPECT_EQ(file.GetPOSIXPath(), path.string());
    }
}

TEST_F(FileSpecificationTest, FindsResourcesBesideTheProgram) {
    const FileSpecification table =
        ResourceAccess::Instance().GetFile(U("LocalizableStrings"), U("xml"));
    EXPECT_TRUE(table.Exists());
    EXPECT_EQ(fs::path(table.GetPOSIXPath()), fs::read_symlink("/proc/self/exe").parent_path() /
                                                  "Resources/LocalizableStrings.xml");
    EXPECT_NE(ReadSerializedResourceFile(U("LocalizableStrings"), U("xml")), nullptr);

    for (const char* name : {"Missing", "", "../LocalizableStrings"}) {
        EXPECT_FALSE(ResourceAccess::Instance().GetFile(U(name), U("xml")).Exists()) << name;
        EXPECT_EQ(ReadSerializedResourceFile(U(name), U("xml")), nullptr) << name;
    }
}

TEST_F(FileSpecificationTest, IsWhereADocumentIsSavedAndReadAgain) {
    const FileSpecification file(ReferenceTo(fFolder.Path()), U("settings.xml"));
    EXPECT_FALSE(file.Exists());
    EXPECT_EQ(ReadSerializedFile(file), nullptr);
    const auto settings = CreateContainer(U("s"));
    settings->AddItem(CreateUString(U("a"), U("1")));
    EXPECT_FALSE(WriteSerializedFile(*settings, file));
    EXPECT_EQ(ReadSerializedFile(file)->GetUStringItem(U("a"))->GetValue(), U("1"));

    // The new file takes the old one's place and permissions, behind a link as well.
    const fs::path path = fFolder / "settings.xml";
    fs::permissions(path, fs::perms::owner_read | fs::perms::owner_write);
    fs::create_symlink("settings.xml", fFolder / "link.xml");
    settings->AddItem(CreateUString(U("a"), U("2")));
    EXPECT_FALSE(
        WriteSerializedFile(*settings, FileSpecification(ReferenceTo(fFolder / "link.xml"))));
    EXPECT_EQ(ReadSerializedFile(file)->GetUStringItem(U("a"))->GetValue(), U("2"));
    EXPECT_TRUE(fs::is_symlink(fFolder / "link.xml"));
    EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(FileSpecificationTest, LeavesTheOldDocumentWhenSavingFails) {
    const auto settings = CreateContainer(U("s"));
    EXPECT_EQ(WriteSerializedFile(*settings, FileSpecification()),
              std::errc::no_such_file_or_directory);

    // A folder in the file's place cannot be replaced.
    fs::create_directory(fFolder / "settings.xml");
    std::ofstream(fFolder / "settings.xml/kept") << "x";
    const FileSpecification file(ReferenceTo(fFolder.Path()), U("settings.xml"));
    EXPECT_TRUE(WriteSerializedFile(*settings, file));
    EXPECT_TRUE(fs::exists(fFolder / "settings.xml/kept"));
    EXPECT_EQ(std::distance(fs::directory_iterator(fFolder.Path()), {}), 1);
}

/// While it lives, no file can grow past a few bytes, as on a full disk.
class FullDisk {
public:
    FullDisk() {
        getrlimit(RLIMIT_FSIZE, &fBefore);
        rlimit limit = fBefore;
        limit.rlim_cur = 100;
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

TEST_F(FileSpecificationTest, LeavesTheOldDocumentOnAFullDisk) {
    const FileSpecification file(ReferenceTo(fFolder.Path()), U("settings.xml"));
    const auto settings = CreateContainer(U("old"));
    ASSERT_FALSE(WriteSerializedFile(*settings, file));
    settings->AddItem(CreateUString(U("a"), U(std::string(1000, 'x'))));
    {
        const FullDisk full;
        EXPECT_EQ(WriteSerializedFile(*settings, file), std::errc::file_too_large);
    }
    EXPECT_TRUE(ReadSerializedFile(file)->GetItems().empty());
    EXPECT_EQ(std::distance(fs::directory_iterator(fFolder.Path()), {}), 1);
}

} // namespace
