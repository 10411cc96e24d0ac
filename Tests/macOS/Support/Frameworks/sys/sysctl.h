// The kernel's values. Scripted.h has the only one, "kern.bootsessionuuid".
#pragma once

#include <cstddef>

extern "C" int sysctlbyname(const char* name, void* value, std::size_t* size, void*, std::size_t);
