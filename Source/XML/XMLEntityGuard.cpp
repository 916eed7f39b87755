#include "XML/XMLEntityGuard.h"

#include <libxml/parser.h>

#include <atomic>
#include <mutex>

namespace Kestrin {

namespace {

constexpr int kErrorClass = 2;

std::mutex gLoaderMutex;
int gGuards = 0;
std::atomic<xmlExternalEntityLoader> gOtherLoader = nullptr;

thread_local Parser::ErrorRecord* tRefusing = nullptr;

xmlParserInputPtr PassOn(const char* url, const char* id, xmlParserCtxtPtr context) {
    const xmlExternalEntityLoader other = gOtherLoader;
    return other != nullptr ? other(url, id, context) : nullptr;
}

xmlParserInputPtr RefuseOrPassOn(const char* url, const char* id, xmlParserCtxtPtr context) {
    if (tRefusing == nullptr)
        return PassOn(url, id, context);
    tRefusing->severityClass = kErrorClass;
    if (context != nullptr && context->input != nullptr)
        tRefusing->line = static_cast<std::uint32_t>(context->input->line);
    return nullptr;
}

} // namespace

EntityGuard::EntityGuard() {
    const std::lock_guard lock(gLoaderMutex);
    if (gGuards++ > 0)
        return;
    gOtherLoader = xmlGetExternalEntityLoader();
    xmlSetExternalEntityLoader(RefuseOrPassOn);
}

EntityGuard::~EntityGuard() {
    const std::lock_guard lock(gLoaderMutex);
    if (--gGuards == 0 && xmlGetExternalEntityLoader() == RefuseOrPassOn)
        xmlSetExternalEntityLoader(gOtherLoader);
}

EntityGuard::Refusal::Refusal(Parser::ErrorRecord& record)
    : fOuter(tRefusing) {
    tRefusing = &record;
}

EntityGuard::Refusal::~Refusal() {
    tRefusing = fOuter;
}

} // namespace Kestrin
