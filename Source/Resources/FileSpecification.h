#pragma once

#include "Strings/UString.h"

#include <CoreFoundation/CFHolder.h>
#include <CoreServices/Files.h>

#include <string>

namespace Kestrin {

/// Names a file in the file system, whether or not it exists: a folder and a name in it. It stays
/// valid when the file is deleted, and means the new one when the file is replaced.
class FileSpecification {
public:
    /// Not valid: names nothing.
    FileSpecification();

    /// An existing item; not valid when it does not exist (any more).
    explicit FileSpecification(const FSRef& ref);

    /// The item of that name in a folder, which need not exist. An empty name means the folder
    /// itself; one of more than 255 units makes this one not valid.
    FileSpecification(const FSRef& folder, const UString& name);

    bool Exists() const;

    /// The absolute path; empty when not valid. The file need not exist.
    UString GetFullPath() const;

    /// The same path in the bytes that the file system knows it by, for opening the file.
    std::string GetPOSIXPath() const;

private:
    CFHolder<CFURLRef> MakeURL() const;

    bool fValid = false;
    /// The parent folder, or the item itself when the name is empty.
    FSRef fReference{};
    HFSUniStr255 fName{};
};

} // namespace Kestrin
