#pragma once

#include <string>
#include <string_view>
#include <system_error>

namespace Kestrin {

/// Makes `content` the content of the file at `path`: writes it beside the file, waits until it is
/// stored and puts it in the file's place, with the old file's permissions. On an error the old
/// file is as it was and nothing is left beside it. A symbolic link keeps its place; what it points
/// to is replaced.
std::error_code ReplaceFile(const std::string& path, std::string_view content);

} // namespace Kestrin
