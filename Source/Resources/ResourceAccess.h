#pragma once

#include "Resources/FileSpecification.h"
#include "Strings/UString.h"

#include <memory>

namespace Kestrin {

/// Finds the files that come with the application. A copy in the user's language is preferred.
class ResourceAccess {
public:
    static ResourceAccess& Instance();

    ~ResourceAccess();
    ResourceAccess(const ResourceAccess&) = delete;
    ResourceAccess& operator=(const ResourceAccess&) = delete;

    /// The resource of that name and type, its extension without the point. Not valid when there is
    /// none.
    FileSpecification GetFile(const UString& name, const UString& type) const;

private:
    class Implementation;

    ResourceAccess();

    std::unique_ptr<Implementation> fImplementation;
};

} // namespace Kestrin
