#pragma once

#include "tools/midisetup/Json.h"
#include "tools/midisetup/ObjectNaming.h"

#include <functional>
#include <string>
#include <vector>

namespace MidiSetup {

/// One difference between a document and the studio.
struct Change {
    std::string description;     ///< one line for a person
    std::function<void()> apply; ///< throws Failure
};

struct ImportPlan {
    std::vector<Change> changes;
    std::vector<std::string> notes; ///< what the document holds that cannot be brought in
};

/// What must change for the studio to hold what the document tells: devices that it lacks are added
/// with the document's unique IDs, objects of both get the document's properties. Objects that the
/// document does not mention stay. A card is found by its unique ID, else by name, manufacturer and
/// model; one that was never plugged in here cannot be made. Throws Failure for a document that is
/// not of the form in Json.h. `studio` and `names` must outlive the plan.
ImportPlan PlanImport(const Json& document, const Studio& studio, const ObjectNames& names);

/// Parses a document. Throws Failure when it is no JSON, or another kind of document.
Json ParseDocument(const std::string& text);

} // namespace MidiSetup
