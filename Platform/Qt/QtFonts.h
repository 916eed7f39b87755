#pragma once

#include <QFont>
#include <string>

namespace Kestrin {

/// The font of that name (UTF-8) and height in points, of which one is one logical pixel, whatever
/// the desktop's font resolution is. Words of style at the end of the name are taken as such where
/// no family has the whole name; for a family that is not installed the system chooses a sans
/// serif.
QFont FontNamed(const std::string& name, int size);

} // namespace Kestrin
