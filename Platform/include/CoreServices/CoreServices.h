#pragma once

// The part of CoreServices that the system uses, with the meaning of its public documentation.

#include <CoreFoundation/CoreFoundation.h>
#include <CoreServices/Files.h>
#include <CoreServices/LaunchServices.h>
#include <CoreServices/TextEncoding.h>
