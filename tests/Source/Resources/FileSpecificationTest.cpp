#include "Resources/FileSpecification.h"

#include "XML/XMLSerializable.h"

#include "tests/Source/Strings/Text.h"
#include "tests/support/FullDisk.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <boost/smart_ptr/make_shared.hpp>
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
    }
    EXPECT_EQ(FileSpecification(ReferenceTo("/")).GetPOSIXPath(), "/");
    EXPECT_EQ(FileSpecification(ReferenceTo("/usr")).GetFullPath(), "/usr"_u);
}

class SavedDocument : public testing::Test {
protected:
    std::error_code Save(const UString& text, const UString& name = "settings.xml"_u) const {
        const auto settings = CreateContainer("s"_u);
        settings->AddItem(CreateUString("a"_u, text));
        return WriteSerializedFile(*settings, {fPlace, name});
    }
    UString Saved() const {
        return ReadSerializedFile({fPlace, "settings.xml"_u})->GetUStringItem("a"_u)->GetValue();
    }

    TemporaryFolder fFolder;
    const FSRef fPlace = ReferenceTo(fFolder.Path());
};

TEST_F(SavedDocument, KeepsThePlaceAndPermissionsOfTheOneItReplaces) {
    EXPECT_EQ(ReadSerializedFile({fPlace, "settings.xml"_u}), nullptr);
    EXPECT_FALSE(Save("1"_u));
    EXPECT_EQ(Saved(), "1"_u);

    const auto permissions = fs::perms::owner_read | fs::perms::owner_write;
    fs::permissions(fFolder / "settings.xml", permissions);
    fs::create_symlink("settings.xml", fFolder / "link.xml");
    EXPECT_FALSE(Save("2"_u, "link.xml"_u));
    EXPECT_EQ(Saved(), "2"_u);
    EXPECT_TRUE(fs::is_symlink(fFolder / "link.xml"));
    EXPECT_EQ(fs::status(fFolder / "settings.xml").permissions(), permissions);
}

TEST_F(SavedDocument, StaysWhereTheNewOneCouldNotBeReadBack) {
    EXPECT_FALSE(Save("old"_u));
    const auto tooLong = boost::make_shared<RawDataBuffer>();
    tooLong->size = 6'000'000;
    tooLong->data = std::make_unique<unsigned char[]>(tooLong->size);
    // The units of an emoji as the platform has them and as UTF-8 is read to; a 0 unit.
    const boost::shared_ptr<Item> unreadable[] = {
        CreateUString("a"_u, Units({1})), CreateUString("a"_u, Units({0xD83D, 0xDE00})),
        CreateUString("a"_u, UString("\U0001F600", UString::kUTF8)),
        CreateUString("a"_u, Units({'b', 0, 'c'})), CreateRawData("a"_u, tooLong)};
    for (const auto& item : unreadable) {
        const auto settings = CreateContainer("s"_u);
        settings->AddItem(item);
        EXPECT_EQ(WriteSerializedFile(*settings, {fPlace, "settings.xml"_u}),
                  std::errc::illegal_byte_sequence);
        EXPECT_TRUE(settings->HasChanged());
        EXPECT_EQ(Saved(), "old"_u);
    }
}

TEST_F(SavedDocument, StaysWhenSavingFails) {
    EXPECT_EQ(WriteSerializedFile(*CreateContainer("s"_u), {}),
              std::errc::no_such_file_or_directory);
    EXPECT_FALSE(Save("old"_u));
    const UString longText(std::string(1000, 'x'), UString::kASCII);
    {
        const FullDisk disk(100);
        EXPECT_EQ(Save(longText), std::errc::file_too_large);
    }
    EXPECT_EQ(Saved(), "old"_u);
    // A folder in the file's place cannot be replaced.
    fs::create_directories(fFolder / "folder.xml/kept");
    EXPECT_TRUE(Save("new"_u, "folder.xml"_u));
    EXPECT_TRUE(fs::exists(fFolder / "folder.xml/kept"));
    EXPECT_EQ(std::distance(fs::directory_iterator(fFolder.Path()), {}), 2);
}

} // namespace
