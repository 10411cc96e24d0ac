#include "OrvelSystem/macOS/UserDefaultsStore.h"

#import <Foundation/Foundation.h>

#include "OrvelCore/Brand.h"
#include "OrvelSystem/macOS/Cocoa.h"

namespace OrvelSystem {

namespace {

PropertyValue value(std::string_view key) {
    @autoreleasepool {
        return Cocoa::propertyValue(
            [NSUserDefaults.standardUserDefaults objectForKey:Cocoa::string(key)]);
    }
}

template <class T>
std::optional<T> value(std::string_view key) {
    const auto found = value(key);
    const T* const typed = found.get<T>();
    return typed ? std::optional(*typed) : std::nullopt;
}

void set(std::string_view key, id object) {
    [NSUserDefaults.standardUserDefaults setObject:object forKey:Cocoa::string(key)];
}

}  // namespace

bool UserDefaultsStore::has(std::string_view key) const {
    return [NSUserDefaults.standardUserDefaults objectForKey:Cocoa::string(key)] != nil;
}

std::optional<std::string> UserDefaultsStore::stringForKey(std::string_view key) const {
    return value<std::string>(key);
}

std::optional<bool> UserDefaultsStore::boolForKey(std::string_view key) const {
    return value<bool>(key);
}

std::optional<std::int64_t> UserDefaultsStore::integerForKey(std::string_view key) const {
    if (const auto real = value<double>(key)) return wholeNumber(*real);
    return value<std::int64_t>(key);
}

std::optional<double> UserDefaultsStore::doubleForKey(std::string_view key) const {
    if (const auto whole = value<std::int64_t>(key)) return static_cast<double>(*whole);
    return value<double>(key);
}

std::optional<std::vector<std::string>> UserDefaultsStore::stringArrayForKey(
    std::string_view key) const {
    const auto array = value<PropertyValue::Array>(key);
    if (!array) return {};
    std::vector<std::string> strings;
    for (const auto& element : *array) {
        const auto* const text = element.get<std::string>();
        if (!text) return {};
        strings.push_back(*text);
    }
    return strings;
}

void UserDefaultsStore::setString(std::string_view key, std::string_view value) {
    set(key, Cocoa::string(value));
}

void UserDefaultsStore::setBool(std::string_view key, bool value) {
    set(key, @(value));
}

void UserDefaultsStore::setInteger(std::string_view key, std::int64_t value) {
    set(key, @(value));
}

void UserDefaultsStore::setDouble(std::string_view key, double value) {
    set(key, @(value));
}

void UserDefaultsStore::setStringArray(std::string_view key,
                                       const std::vector<std::string>& value) {
    NSMutableArray* const array = [NSMutableArray array];
    for (const auto& text : value) [array addObject:Cocoa::string(text)];
    set(key, array);
}

void UserDefaultsStore::remove(std::string_view key) {
    [NSUserDefaults.standardUserDefaults removeObjectForKey:Cocoa::string(key)];
}

void UserDefaultsStore::removeAll() {
    [NSUserDefaults.standardUserDefaults
        removePersistentDomainForName:Cocoa::string(OrvelCore::Brand::bundleIdentifier)];
}

}  // namespace OrvelSystem
