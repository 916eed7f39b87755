#pragma once

#include "XML/XMLParser.h"

namespace Kestrin {

/// Keeps libxml2 from opening anything for a parser.
///
/// libxml2 has one loader of external entities for the whole process. While any guard lives, ours
/// stands in front of it: it passes on the requests of everybody but of a parser at work, which it
/// refuses, and the one it found is put back with the last guard.
class EntityGuard {
public:
    EntityGuard();
    ~EntityGuard();
    EntityGuard(const EntityGuard&) = delete;
    EntityGuard& operator=(const EntityGuard&) = delete;

    /// While it lives, entities that libxml2 asks for on this thread are refused, and the refusal
    /// is recorded as an error of the document.
    class Refusal {
    public:
        explicit Refusal(Parser::ErrorRecord& record);
        ~Refusal();
        Refusal(const Refusal&) = delete;
        Refusal& operator=(const Refusal&) = delete;

    private:
        Parser::ErrorRecord* fOuter;
    };
};

} // namespace Kestrin
