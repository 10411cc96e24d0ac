// What a message does for which GNUstep has no method. A setter keeps the value, its getter returns
// it, and every other message returns zero. Misspelled names do not get here, because the compiler
// knows all methods of macOS.

#include "Support/Missing.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <mutex>
#include <set>
#include <string>

using namespace Missing;

extern "C" {
const char* sel_getName(SEL);
const char* sel_getTypeEncoding(SEL);
id objc_retain(id);
void objc_release(id);
}

namespace {

union Value {
    long bits;
    double real;
};
std::recursive_mutex mutex;
std::map<id, std::map<std::string, Value>> values;

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

Value& value(id self, SEL selector) {
    return values[self][property(sel_getName(selector))];
}

id setBits(id self, SEL selector, long bits) {
    const std::lock_guard lock(mutex);
    value(self, selector).bits = bits;
    return nullptr;
}
id setObject(id self, SEL selector, id object) {
    objc_retain(object);  // for ever, which does not matter in a test
    return setBits(self, selector, reinterpret_cast<long>(object));
}
id setReal(id self, SEL selector, double real) {
    const std::lock_guard lock(mutex);
    value(self, selector).real = real;
    return nullptr;
}
long getBits(id self, SEL selector) {
    const std::lock_guard lock(mutex);
    const auto found = values.find(self);
    return found == values.end() ? 0 : value(self, selector).bits;
}
double getReal(id self, SEL selector) {
    const std::lock_guard lock(mutex);
    const auto found = values.find(self);
    return found == values.end() ? 0 : value(self, selector).real;
}

struct Pair {
    double first, second;
};
Pair zeroPair() {
    return {0, 0};
}
/// For results in memory, which are rectangles and insets.
struct Four {
    double values[4];
};
Four zeroFour() {
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

IMP Missing::method(SEL selector) {
    report(selector);
    const std::string name = sel_getName(selector);
    const char* const types = sel_getTypeEncoding(selector);
    const char result = types ? types[0] : '@';
    const auto arguments = std::count(name.begin(), name.end(), ':');
    if (name.starts_with("set") && arguments == 1) {
        const char* const argument = types ? std::strchr(types, ':') : nullptr;
        const char type = argument ? argument[1 + std::strspn(argument + 1, "0123456789")] : '@';
        return type == 'd' ? as(setReal) : type == '@' ? as(setObject) : as(setBits);
    }
    if (result == '{') {
        const bool isPair =
            std::strncmp(types, "{CGPoint", 8) == 0 || std::strncmp(types, "{CGSize", 7) == 0;
        return isPair ? as(zeroPair) : as(zeroFour);
    }
    if (arguments > 0) return as(+[] { return 0L; });
    return result == 'd' ? as(getReal) : as(getBits);
}

void Missing::forget(id object) {
    const std::lock_guard lock(mutex);
    values.erase(object);
}
