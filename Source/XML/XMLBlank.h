#pragma once

namespace Kestrin {

/// What stands in a file for a text of one blank, which reading would otherwise drop.
inline constexpr char kEncodedBlank[] = "XML_SPACE_ENCODE";

} // namespace Kestrin
