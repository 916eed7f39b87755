#include "Resources/ResourceAccess.h"

#include "Strings/PlatformStrings.h"

#include <CoreFoundation/CFBundle.h>

namespace Kestrin {

class ResourceAccess::Implementation {
public:
    CFBundleRef Bundle() const { return fBundle; }

private:
    CFBundleRef fBundle = CFBundleGetMainBundle();
};

ResourceAccess& ResourceAccess::Instance() {
    static ResourceAccess instance;
    return instance;
}

ResourceAccess::ResourceAccess()
    : fImplementation(std::make_unique<Implementation>()) {}

ResourceAccess::~ResourceAccess() = default;

FileSpecification ResourceAccess::GetFile(const UString& name, const UString& type) const {
    const CFHolder<CFURLRef> url(CFBundleCopyResourceURL(
        fImplementation->Bundle(), UStringToCF(name).Get(), UStringToCF(type).Get(), nullptr));
    FSRef reference{};
    if (!url || !CFURLGetFSRef(url.Get(), &reference))
        return {};
    return FileSpecification(reference);
}

} // namespace Kestrin
