#include "tests/support/TemporaryFolder.h"

#include <stdlib.h>

#include <stdexcept>
#include <string>

TemporaryFolder::TemporaryFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "kestrin-test-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr)
        throw std::runtime_error("cannot make a temporary folder like " + pattern);
    fPath = pattern;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::permissions(fPath, std::filesystem::perms::owner_all, ignored);
    std::filesystem::remove_all(fPath, ignored);
}
