// What a message does for which GNUstep has no method. A setter keeps the value, its getter returns
// it, and every other message returns zero. Misspelled names do not get here, because the compiler
// knows all methods of macOS.

#include "Support/Missing.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <mutex>
#include <set>
#include <string>

#include <objc/runtime.h>

extern "C" id objc_retain(id);

namespace {

// Values of eight bytes, by their properties.
std::recursive_mutex mutex;
std::map<id, std::map<std::string, std::array<char, 8>>> values;

/// The property of a setter, or of a getter that may begin with "is".
std::string property(const std::string& name) {
    std::string rest = name;
    if (name.starts_with("set") && name.ends_with(":"))
        rest = name.substr(3, name.size() - 4);
    else if (name.starts_with("is"))
        rest = name.substr(2);
    if (!rest.empty()) rest[0] = static_cast<char>(std::tolower(rest[0]));
    return rest;
}

template <class T>
id set(id self, SEL selector, T value) {
    const std::lock_guard lock(mutex);
    values[self][property(sel_getName(selector))] = std::bit_cast<std::array<char, 8>>(value);
    return nullptr;
}
id setObject(id self, SEL selector, id object) {
    return set(self, selector, objc_retain(object));  // for ever, which does not matter in a test
}
template <class T>
T get(id self, SEL selector) {
    const std::lock_guard lock(mutex);
    const auto found = values.find(self);
    if (found == values.end()) return {};
    return std::bit_cast<T>(found->second[property(sel_getName(selector))]);
}

std::array<double, 2> zeroPair() {
    return {};
}
/// For results in memory, which are rectangles and insets.
std::array<double, 4> zeroFour() {
    return {};
}

void report(SEL selector) {
    static const bool reports = std::getenv("KARVO_MISSING") != nullptr;
    static std::set<std::string> reported;
    if (reports && reported.insert(sel_getName(selector)).second)
        std::fprintf(stderr, "missing: %s\n", sel_getName(selector));
}

template <class F>
IMP as(F* function) {
    return reinterpret_cast<IMP>(reinterpret_cast<void*>(function));
}

}  // namespace

// Functions that do nothing.
#define KARVO_ZERO(name)     \
    extern "C" long name() { \
        return 0;            \
    }
KARVO_ZERO(CGEventSourceButtonState)
KARVO_ZERO(CGEventSourceFlagsState)
KARVO_ZERO(GetApplicationEventTarget)
KARVO_ZERO(IOPMAssertionCreateWithName)
KARVO_ZERO(IOPMAssertionRelease)
KARVO_ZERO(IOPMCopyAssertionsStatus)
KARVO_ZERO(_dispatch_source_type_signal)
KARVO_ZERO(dispatch_resume)
KARVO_ZERO(dispatch_source_create)
KARVO_ZERO(dispatch_source_set_event_handler)
KARVO_ZERO(pthread_set_qos_class_self_np)

IMP Missing::method(SEL selector) {
    report(selector);
    const std::string name = sel_getName(selector);
    const char* const types = sel_getTypeEncoding(selector);
    const char result = types ? types[0] : '@';
    const auto arguments = std::count(name.begin(), name.end(), ':');
    if (name.starts_with("set") && arguments == 1) {
        const char* const argument = types ? std::strchr(types, ':') : nullptr;
        const char type = argument ? argument[1 + std::strspn(argument + 1, "0123456789")] : '@';
        return type == 'd' ? as(set<double>) : type == '@' ? as(setObject) : as(set<long>);
    }
    if (result == '{') {
        const bool isPair =
            std::strncmp(types, "{CGPoint", 8) == 0 || std::strncmp(types, "{CGSize", 7) == 0;
        return isPair ? as(zeroPair) : as(zeroFour);
    }
    if (arguments > 0) return as(+[] { return 0L; });
    return result == 'd' ? as(get<double>) : as(get<long>);
}

void Missing::forget(id object) {
    const std::lock_guard lock(mutex);
    values.erase(object);
}
