#pragma once

// This C header names an argument with a keyword of C++.
#define namespace scope
#include <wlr-layer-shell-unstable-v1.h>  // IWYU pragma: export
#undef namespace
