#include "OrvelAuth/AccountLockoutPolicy.h"

#include <algorithm>

#import <OpenDirectory/OpenDirectory.h>

#include "OrvelAuth/macOS/DirectoryRecord.h"
#include "OrvelSystem/macOS/Cocoa.h"

namespace OrvelAuth {

namespace Cocoa = OrvelSystem::Cocoa;

ODNode* DirectoryRecord::node(ODNodeType type) {
    return [ODNode nodeWithSession:ODSession.defaultSession type:type error:nil];
}

ODRecord* DirectoryRecord::find(ODNodeType type, const std::string& userName, NSArray* attributes) {
    return [node(type) recordWithRecordType:kODRecordTypeUsers
                                       name:Cocoa::string(userName)
                                 attributes:attributes
                                      error:nil];
}

namespace {

/// The smaller of two limits; `nullopt` means no limit.
std::optional<int> stricter(std::optional<int> a, std::optional<int> b) {
    return a && b ? std::min(*a, *b) : a ? a : b;
}

std::optional<int> limitIn(NSDictionary* policies) {
    return AccountLockoutPolicy::limit(Cocoa::dictionary(policies));
}

}  // namespace

std::optional<int> AccountLockoutPolicy::currentLimit(const std::string& userName) {
    @autoreleasepool {
        ODNode* const node = DirectoryRecord::node(kODNodeTypeLocalNodes);
        if (!node) return {};
        ODRecord* const record = DirectoryRecord::find(kODNodeTypeLocalNodes, userName, nil);
        return stricter(limitIn([node accountPoliciesAndReturnError:nil]),
                        limitIn([record accountPoliciesAndReturnError:nil]));
    }
}

std::optional<int> AccountLockoutPolicy::currentFailures(const std::string& userName) {
    @autoreleasepool {
        NSString* const attribute = @"dsAttrTypeNative:accountPolicyData";
        ODRecord* const record =
            DirectoryRecord::find(kODNodeTypeLocalNodes, userName, @[ attribute ]);
        id value = [record valuesForAttribute:attribute error:nil].firstObject;
        if ([value isKindOfClass:[NSString class]])
            value = [static_cast<NSString*>(value) dataUsingEncoding:NSUTF8StringEncoding];
        if (![value isKindOfClass:[NSData class]]) return {};
        NSData* const data = value;
        return failedLoginCount({static_cast<const std::byte*>(data.bytes), data.length});
    }
}

bool AccountLockoutPolicy::isLocked(const std::string& userName) {
    const auto limit = currentLimit(userName);
    const auto failures = currentFailures(userName);
    return limit && failures && *failures >= *limit;
}

}  // namespace OrvelAuth
