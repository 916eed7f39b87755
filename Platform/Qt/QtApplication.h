#pragma once

namespace Kestrin {

/// Throws on what escaped from the handling of an event, if anything did. Whoever runs an event
/// loop calls this behind it.
void RethrowEventFailure();

} // namespace Kestrin
