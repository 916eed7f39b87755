#include "app/HelpDocument.h"

#include "Strings/PlatformStrings.h"

#include <CoreFoundation/CFHolder.h>
#include <CoreFoundation/CoreFoundation.h>
#include <CoreServices/CoreServices.h>

void OpenHelpDocument() {
    const CFBundleRef bundle = CFBundleGetMainBundle();
    if (bundle == nullptr)
        return;
    const auto name = UStringToCF("SorvexMackieSurfaceHelp"_u);
    const auto type = UStringToCF("htm"_u);
    const CFHolder<CFURLRef> url(CFBundleCopyResourceURL(bundle, name.Get(), type.Get(), nullptr));
    if (url.Get() != nullptr)
        LSOpenCFURLRef(url.Get(), nullptr);
}
