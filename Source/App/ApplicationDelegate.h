#pragma once

#include "Platform/UI/NativeApplication.h"

namespace Kestrin {

/// Hands what the platform tells the program to the current application; without one, to nobody.
class ApplicationDelegate : public NativeApplicationDelegate {
public:
    void DidFinishLaunching() override;
    void OpenURLs(const std::vector<std::string>& addresses) override;
    void OpenFiles(const std::vector<std::string>& paths) override;
    bool OpenUntitledFile() override;
    void QuitRequested() override;
};

} // namespace Kestrin
