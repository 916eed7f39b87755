#include "tests/support/TemporaryFolder.h"

#include <CoreFoundation/CFHolder.h>
#include <CoreServices/CoreServices.h>

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <chrono>
#include <fstream>
#include <thread>

namespace {

namespace fs = std::filesystem;

/// A PATH with openers that write down what they are given, and take their time.
class LSOpenCFURLRefTest : public testing::Test {
protected:
    LSOpenCFURLRefTest() {
        std::ofstream(fDocument) << "x";
        setenv("PATH", fFolder.Path().c_str(), 1);
    }
    ~LSOpenCFURLRefTest() override { setenv("PATH", fPathBefore.c_str(), 1); }

    void AddOpener(const std::string& name) const {
        std::ofstream(fFolder / name)
            << "#!/bin/sh\ncd " << fFolder.Path() << "\nprintf '%s\\n' " << name
            << " \"$@\" >new\n/bin/mv new record\nexec /bin/sleep 3\n";
        fs::permissions(fFolder / name, fs::perms::owner_all);
    }

    OSStatus Open() const {
        const std::string& path = fDocument.native();
        const CFHolder<CFURLRef> url(CFURLCreateFromFileSystemRepresentation(
            nullptr, reinterpret_cast<const UInt8*>(path.data()), static_cast<CFIndex>(path.size()),
            false));
        return LSOpenCFURLRef(url.Get(), nullptr);
    }

    /// What the opener wrote, as soon as it did.
    std::string Record() const {
        for (int tries = 0; tries < 500 && !fs::exists(fFolder / "record"); ++tries)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        std::ifstream file(fFolder / "record");
        return {std::istreambuf_iterator<char>(file), {}};
    }

    TemporaryFolder fFolder;
    const fs::path fDocument = fFolder / "a help's \"page\" %20.htm";
    const std::string fPathBefore = std::getenv("PATH");
};

TEST_F(LSOpenCFURLRefTest, HandsTheDocumentToTheFirstOpenerThereIsAndGoesOn) {
    EXPECT_EQ(Open(), kLSApplicationNotFoundErr);
    AddOpener("gio");
    EXPECT_EQ(Open(), noErr);
    EXPECT_EQ(Record(), "gio\nopen\n" + fDocument.string() + "\n");
    fs::remove(fFolder / "record");

    AddOpener("xdg-open");
    const auto begun = std::chrono::steady_clock::now();
    EXPECT_EQ(Open(), noErr);
    EXPECT_LT(std::chrono::steady_clock::now() - begun, std::chrono::seconds(2));
    EXPECT_EQ(Record(), "xdg-open\n" + fDocument.string() + "\n");
    // Nothing is left for this process to wait for.
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);

    fs::remove(fDocument);
    EXPECT_EQ(Open(), fnfErr);
}

} // namespace
