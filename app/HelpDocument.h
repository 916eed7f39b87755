#pragma once

/// Opens the help document from among the program's resources with the desktop's default viewer.
/// Does nothing when there is no such document.
void OpenHelpDocument();
