#include "Diagnostics/Failure.h"
#include "Strings/TextConversions.h"
#include "XML/XMLSerializable.h"
#include "XML/XMLWriter.h"

#include "tests/fuzz/Require.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <sstream>

// Reads the bytes as a document. What is read is written, read back and written again: the same
// text, as far as the XML form can hold what the tree holds.

void Log(const char*, ...) {}

namespace {

using namespace Kestrin;

/// What becomes of a tree that is written and read: it stays the same, or something in it takes its
/// final form at first (a fraction of six digits, blanks alone), or XML cannot hold it.
enum Fate { kStays, kSettles, kIsLost };

// The document adds an element around the tree, and libxml2 reads 256 levels.
constexpr int kMostLevels = 254;

bool IsBlank(unsigned short unit) {
    return unit == ' ' || unit == '\t' || unit == '\n' || unit == '\r';
}

Fate FateOf(const UString& text) {
    const bool survives =
        Writer::IsValidString(text) && UString(text.utf8_str(), UString::kUTF8) == text;
    return survives ? kStays : kIsLost;
}

/// A prefix may have been declared by an element that is not there any more.
Fate FateOf(const AttributePair& attribute) {
    const std::string name = attribute.name.utf8_str();
    const bool hasPrefix = name.find(':') != std::string::npos && !name.starts_with("xml:");
    return std::max(
        {FateOf(attribute.name), FateOf(attribute.value), hasPrefix ? kIsLost : kStays});
}

Fate FateOfContent(const UString& text) {
    const bool blanks = text.length() > 0 && std::all_of(text.begin(), text.end(), IsBlank);
    const bool oneBlank = text.length() == 1 && text[0] == ' ';
    return std::max(FateOf(text), blanks && !oneBlank ? kSettles : kStays);
}

Fate FateOf(const Item& item, int level);

Fate FateOfValue(const Item& item, int level) {
    Fate fate = level > kMostLevels ? kIsLost : kStays;
    if (const auto* container = dynamic_cast<const ContainerItem*>(&item)) {
        for (const auto& child : container->GetItems())
            fate = std::max(fate, FateOf(*child, level + 1));
    } else if (const auto* text = dynamic_cast<const UStringItem*>(&item)) {
        fate = std::max(fate, FateOfContent(text->GetValue()));
    } else if (const auto* code = dynamic_cast<const OSTypeItem*>(&item)) {
        fate = std::max(fate, FateOf(OSTypeToUString(code->GetValue())));
    } else if (item.GetType() == Item::kDouble) {
        fate = std::max(fate, kSettles);
    }
    return fate;
}

Fate FateOf(const Item& item, int level) {
    Fate fate = std::max(FateOf(item.GetName()), FateOfValue(item, level));
    for (const AttributePair& attribute : item.GetAttributes())
        fate = std::max(fate, FateOf(attribute));
    return fate;
}

boost::shared_ptr<ContainerItem> Read(const std::string& document) {
    std::istringstream stream(document);
    return ReadContainerFromFile(&stream, kDefaultLanguage);
}

void CheckRoundTrip(ContainerItem& tree) {
    const Fate fate = FateOf(tree, 1);
    if (fate == kIsLost)
        return;
    const std::string first = WriteSerializedString(tree);
    const auto second = Read(first);
    Require(second != nullptr && !second->HasChanged(), "what was written can be read");
    const std::string again = WriteSerializedString(*second);
    Require(fate == kSettles || again == first, "it is written as it was");
    Require(WriteSerializedString(*Read(again)) == again, "it stays as it is");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    // The failure lines of what is no document would drown the fuzzer's own.
    return std::freopen("/dev/null", "w", stdout) == nullptr;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    boost::shared_ptr<ContainerItem> tree;
    try {
        tree = Read({bytes, bytes + count});
    } catch (int) {
        return 0;
    }
    if (tree != nullptr)
        CheckRoundTrip(*tree);
    return 0;
}
