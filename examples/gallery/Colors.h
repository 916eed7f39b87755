#pragma once

#include "UI/Color.h"

// How everything in the gallery looks.

constexpr Kestrin::RGBAColor kBackground = {0.12F, 0.13F, 0.15F, 1};
constexpr Kestrin::RGBAColor kText = {0.93F, 0.93F, 0.93F, 1};
constexpr Kestrin::RGBAColor kAccent = {0.35F, 0.56F, 0.89F, 1};
constexpr Kestrin::RGBAColor kPaper = {1, 1, 1, 1};
constexpr Kestrin::RGBAColor kInk = {0, 0, 0, 1};
constexpr unsigned int kTextSize = 14;
