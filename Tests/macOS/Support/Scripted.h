#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#import <Foundation/Foundation.h>

/// What the stand-ins for frameworks answer. A test sets it first.
namespace Scripted {

/// An account of the directory.
struct Account {
    std::string name;
    std::string password;
    /// What a check with another password reports; nil for no error.
    NSError* refusal = nil;
    NSDictionary* policies = nil;
    /// The values of its only attribute, "dsAttrTypeNative:accountPolicyData".
    NSArray* policyData = nil;
};
struct Node {
    std::vector<Account> accounts;
    NSDictionary* policies = nil;
};
/// By type; other types cannot be opened.
inline std::map<int, Node> nodes;
/// How many passwords were checked.
inline std::atomic<int> checks = 0;

struct Sensor {
    bool isAvailable = true;
    /// No reply comes.
    bool isUntouched = false;
    bool success = false;
    /// `nullopt` for a reply without an error.
    std::optional<int> errorCode;
};
inline Sensor sensor;

/// The window server's list, whose entries may be anything; nil if it gives none.
inline NSArray* windows = nil;
inline std::vector<NSRect> displays;
/// The window server's own description of the session; nil if it gives none.
inline NSDictionary* session = nil;
inline std::optional<std::string> bootSession;

/// The code and the modifiers of a key, as Carbon numbers them.
using Hotkey = std::pair<std::uint32_t, std::uint32_t>;
/// The registered hotkeys, with the number that the program gave each.
inline std::map<Hotkey, std::uint32_t> hotkeys;
inline std::function<void(Hotkey)> press;

/// Runs the main run loop until `done`, or fails the test after a minute.
void runUntil(const std::function<bool()>& done);

}  // namespace Scripted
