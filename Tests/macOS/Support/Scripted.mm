#include "Support/Scripted.h"

#include <cstring>
#include <string_view>
#include <thread>

#import <CoreGraphics/CoreGraphics.h>
#import <LocalAuthentication/LocalAuthentication.h>
#import <OpenDirectory/OpenDirectory.h>
#include <gmock/gmock.h>
#include <sys/sysctl.h>

namespace Scripted {

std::map<int, Node> nodes;
Sensor sensor;
NSArray* windows = nil;
std::vector<NSRect> displays;
NSDictionary* session = nil;
std::optional<std::string> bootSession;

void runUntil(const std::function<bool()>& done) {
    NSDate* const limit = [NSDate dateWithTimeIntervalSinceNow:60];
    while (!done()) {
        ASSERT_EQ([limit compare:[NSDate date]], NSOrderedDescending) << "nothing happened";
        // For GNUstep the common modes are another mode, not a set of them.
        for (NSString* mode in @[ NSDefaultRunLoopMode, NSRunLoopCommonModes ])
            [NSRunLoop.currentRunLoop runMode:mode
                                   beforeDate:[NSDate dateWithTimeIntervalSinceNow:0.002]];
    }
}

}  // namespace Scripted

@interface KarvoCall : NSObject
@property(nonatomic, copy) void (^block)(void);
@end

@implementation KarvoCall
- (void)run {
    self.block();
}
@end

@implementation NSTimer (Missing)
- (NSTimeInterval)tolerance {
    return 0;
}
- (void)setTolerance:(NSTimeInterval)tolerance {
}
@end

@implementation NSTask (Missing)
- (NSURL*)executableURL {
    return nil;
}
- (void)setExecutableURL:(NSURL*)url {
}
- (BOOL)launchAndReturnError:(NSError**)error {
    return NO;
}
@end

// GNUstep's own centres need other processes, which tests do not start.
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wobjc-protocol-method-implementation"
@interface NSDistributedNotificationCenter (Scripted)
@end
@implementation NSDistributedNotificationCenter (Scripted)
+ (NSNotificationCenter*)defaultCenter {
    static NSNotificationCenter* const center = [[NSNotificationCenter alloc] init];
    return center;
}
@end
@interface KarvoWorkspace : NSObject
@property(readonly) NSNotificationCenter* notificationCenter;
@end
@implementation KarvoWorkspace
- (NSNotificationCenter*)notificationCenter {
    static NSNotificationCenter* const center = [[NSNotificationCenter alloc] init];
    return center;
}
@end
@interface NSWorkspace (Scripted)
@end
@implementation NSWorkspace (Scripted)
+ (NSWorkspace*)sharedWorkspace {
    static id const workspace = [[KarvoWorkspace alloc] init];
    return workspace;
}
@end
#pragma clang diagnostic pop

@implementation ODSession
+ (ODSession*)defaultSession {
    static ODSession* const session = [[ODSession alloc] init];
    return session;
}
@end

@implementation ODRecord {
  @public
    Scripted::Account _account;
}
- (BOOL)verifyPassword:(NSString*)password error:(NSError**)error {
    const bool isRight = _account.password == password.UTF8String;
    if (!isRight && error) *error = _account.refusal;
    return isRight;
}
- (NSDictionary*)accountPoliciesAndReturnError:(NSError**)error {
    return _account.policies;
}
- (NSArray*)valuesForAttribute:(NSString*)attribute error:(NSError**)error {
    return [attribute isEqualToString:@"dsAttrTypeNative:accountPolicyData"] ? _account.policyData
                                                                             : nil;
}
@end

@implementation ODNode {
    Scripted::Node _node;
}
+ (instancetype)nodeWithSession:(ODSession*)session type:(ODNodeType)type error:(NSError**)error {
    const auto found = Scripted::nodes.find(type);
    if (!session || found == Scripted::nodes.end()) return nil;
    ODNode* const node = [[ODNode alloc] init];
    node->_node = found->second;
    return node;
}
- (ODRecord*)recordWithRecordType:(NSString*)type
                             name:(NSString*)name
                       attributes:(id)attributes
                            error:(NSError**)error {
    for (const auto& account : _node.accounts) {
        if (account.name != name.UTF8String) continue;
        ODRecord* const record = [[ODRecord alloc] init];
        record->_account = account;
        return record;
    }
    return nil;
}
- (NSDictionary*)accountPoliciesAndReturnError:(NSError**)error {
    return _node.policies;
}
@end

@implementation LAContext {
    void (^_reply)(BOOL, NSError*);
}
- (BOOL)canEvaluatePolicy:(LAPolicy)policy error:(NSError**)error {
    return policy == LAPolicyDeviceOwnerAuthenticationWithBiometrics &&
           Scripted::sensor.isAvailable;
}
- (void)evaluatePolicy:(LAPolicy)policy
       localizedReason:(NSString*)reason
                 reply:(void (^)(BOOL, NSError*))reply {
    const auto answer = Scripted::sensor;
    _reply = [reply copy];
    std::thread([call = _reply, answer] {
        @autoreleasepool {
            NSError* const error = answer.errorCode ? [NSError errorWithDomain:@"LAError"
                                                                          code:*answer.errorCode
                                                                      userInfo:nil]
                                                    : nil;
            call(answer.success, error);
        }
    }).detach();
}
- (void)invalidate {
    _reply = nil;
}
@end

extern "C" {

CFTypeID CFGetTypeID(CFTypeRef object) {
    // Numbers that are booleans have a class of their own.
    return [(__bridge id)object isKindOfClass:[[NSNumber numberWithBool:YES] class]]
               ? CFBooleanGetTypeID()
               : 0;
}
CFTypeID CFBooleanGetTypeID(void) {
    return 1;
}

struct __CFArray {
    std::vector<const void*> values;
};
CFArrayRef CFArrayCreate(CFAllocatorRef, const void** values, CFIndex count, const void*) {
    return new __CFArray{std::vector<const void*>(values, values + count)};
}
CFIndex CFArrayGetCount(CFArrayRef array) {
    return static_cast<CFIndex>(array->values.size());
}
const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index) {
    return array->values[static_cast<std::size_t>(index)];
}
void CFRelease(CFTypeRef array) {
    delete static_cast<CFArrayRef>(array);
}

dispatch_queue_t dispatch_get_main_queue(void) {
    return nullptr;
}
void dispatch_async(dispatch_queue_t, void (^block)(void)) {
    @autoreleasepool {
        KarvoCall* const call = [[KarvoCall alloc] init];
        call.block = block;
        [call performSelectorOnMainThread:@selector(run) withObject:nil waitUntilDone:NO];
    }
}

CFArrayRef CGWindowListCopyWindowInfo(CGWindowListOption, CGWindowID) {
    return static_cast<CFArrayRef>((__bridge_retained CFTypeRef)Scripted::windows);
}
CFArrayRef CGWindowListCreateDescriptionFromArray(CFArrayRef numbers) {
    NSMutableArray* const found = [NSMutableArray array];
    for (const void* number : numbers->values)
        for (id window in Scripted::windows) {
            id listed =
                [window isKindOfClass:[NSDictionary class]] ? window[@"kCGWindowNumber"] : nil;
            if ([listed isKindOfClass:[NSNumber class]] &&
                [listed longValue] == reinterpret_cast<long>(number))
                [found addObject:window];
        }
    return static_cast<CFArrayRef>((__bridge_retained CFTypeRef)found);
}
CGError CGGetOnlineDisplayList(std::uint32_t room, CGDirectDisplayID* ids, std::uint32_t* count) {
    *count = static_cast<std::uint32_t>(Scripted::displays.size());
    for (std::uint32_t i = 0; ids && i < std::min(room, *count); ++i) ids[i] = i;
    return kCGErrorSuccess;
}
CGRect CGDisplayBounds(CGDirectDisplayID display) {
    return Scripted::displays[display];
}
CFDictionaryRef CGSessionCopyCurrentDictionary(void) {
    return static_cast<CFDictionaryRef>((__bridge_retained CFTypeRef)Scripted::session);
}

int sysctlbyname(const char* name, void* value, std::size_t* size, void*, std::size_t) {
    if (!Scripted::bootSession || std::string_view(name) != "kern.bootsessionuuid") return -1;
    if (value) std::memcpy(value, Scripted::bootSession->c_str(), *size);
    *size = Scripted::bootSession->size() + 1;
    return 0;
}
}

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    @autoreleasepool {
        return RUN_ALL_TESTS();
    }
}
