#pragma once

// Headers that almost every test needs. The compiler includes this file before each file of a test.

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <expected>
#include <filesystem>
#include <fstream>
#include <functional>
#include <future>
#include <iostream>
#include <iterator>
#include <limits>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <random>
#include <ranges>
#include <regex>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <tuple>
#include <utility>
#include <variant>
#include <vector>

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <gmock/gmock.h>
#include <unistd.h>

using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::Pair;
using testing::SizeIs;
using testing::StartsWith;
using testing::UnorderedElementsAre;

// A test names what it tests without its module.
namespace OrvelApp {}
namespace OrvelAuth {}
namespace OrvelBlur {}
namespace OrvelCore {}
namespace OrvelCovers {}
namespace OrvelLock {}
namespace OrvelModes {}
namespace OrvelSystem {}
namespace OrvelUI {}
namespace OrvelUpdates {}
namespace DesktopTest {}
using namespace OrvelApp;
using namespace OrvelAuth;
using namespace OrvelBlur;
using namespace OrvelCore;
using namespace OrvelCovers;
using namespace OrvelLock;
using namespace OrvelModes;
using namespace OrvelSystem;
using namespace OrvelUI;
using namespace OrvelUpdates;
using namespace DesktopTest;
