// Stand-ins for the frameworks that Linux lacks. They answer what Scripted.h says.
#include <algorithm>
#include <cstring>
#include <string_view>
#include <thread>

#import <Carbon/Carbon.h>
#import <Collaboration/Collaboration.h>
#import <LocalAuthentication/LocalAuthentication.h>
#import <LocalAuthenticationEmbeddedUI/LocalAuthenticationEmbeddedUI.h>
#import <OpenDirectory/OpenDirectory.h>
#import <QuartzCore/QuartzCore.h>
#import <ServiceManagement/ServiceManagement.h>
#import <UniformTypeIdentifiers/UniformTypeIdentifiers.h>
#include <libproc.h>
#include <sys/sysctl.h>

#include "OrvelSystem/GuardService.h"

#include "Support/Scripted.h"

// Only what the program uses is there.
#pragma clang diagnostic ignored "-Wincomplete-implementation"
#pragma clang diagnostic ignored "-Wprotocol"
#pragma clang diagnostic ignored "-Wobjc-protocol-property-synthesis"
#pragma clang diagnostic ignored "-Wobjc-property-implementation"

// Constants. Their values do not matter.
#define KARVO_NAME(name) NSString* const name = @ #name;
KARVO_NAME(NSWindowDidChangeOcclusionStateNotification)
KARVO_NAME(NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification)
KARVO_NAME(NSWorkspaceActiveSpaceDidChangeNotification)
KARVO_NAME(NSWorkspaceApplicationKey)
KARVO_NAME(NSWorkspaceDidActivateApplicationNotification)
KARVO_NAME(NSWorkspaceDidUnhideApplicationNotification)
KARVO_NAME(kCACornerCurveContinuous)
KARVO_NAME(kCAFillRuleEvenOdd)
KARVO_NAME(kODRecordTypeUsers)
UTType* const UTTypeApplication = nil;

// Classes that only keep their properties.
#define KARVO_CLASS(name) \
    @implementation name  \
    @end
KARVO_CLASS(CAShapeLayer)
KARVO_CLASS(CBIdentity)
KARVO_CLASS(CBIdentityAuthority)
KARVO_CLASS(LAAuthenticationView)
KARVO_CLASS(NSHapticFeedbackManager)
KARVO_CLASS(NSImageSymbolConfiguration)
KARVO_CLASS(UTType)

@implementation CALayer
+ (instancetype)layer {
    return [[self alloc] init];
}
@end
@implementation SMAppService
+ (SMAppService*)mainAppService {
    return [self agentServiceWithPlistName:@""];
}
+ (instancetype)agentServiceWithPlistName:(NSString*)name {
    return [[self alloc] init];
}
- (SMAppServiceStatus)status {
    return SMAppServiceStatusEnabled;
}
- (BOOL)registerAndReturnError:(NSError**)error {
    return YES;
}
@end

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
    ++Scripted::checks;
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
    const auto found = Scripted::nodes.find(static_cast<int>(type));
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

@implementation LAContext
- (BOOL)canEvaluatePolicy:(LAPolicy)policy error:(NSError**)error {
    return policy == LAPolicyDeviceOwnerAuthenticationWithBiometrics &&
           Scripted::sensor.isAvailable;
}
- (void)evaluatePolicy:(LAPolicy)policy
       localizedReason:(NSString*)reason
                 reply:(void (^)(BOOL, NSError*))reply {
    const auto answer = Scripted::sensor;
    if (answer.isUntouched) return;
    std::thread([reply, answer] {
        @autoreleasepool {
            NSError* const error = answer.errorCode ? [NSError errorWithDomain:@"LAError"
                                                                          code:*answer.errorCode
                                                                      userInfo:nil]
                                                    : nil;
            reply(answer.success, error);
        }
    }).detach();
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

// Only arrays of numbers, without callbacks.
struct __CFArray : std::vector<const void*> {
    using vector::vector;
};
CFArrayRef CFArrayCreate(CFAllocatorRef, const void** values, CFIndex count, const void*) {
    return new __CFArray(values, values + count);
}
CFIndex CFArrayGetCount(CFArrayRef array) {
    return static_cast<CFIndex>(array->size());
}
const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index) {
    return array->at(static_cast<std::size_t>(index));
}
void CFRelease(CFTypeRef array) {
    delete static_cast<CFArrayRef>(array);
}

CFArrayRef CGWindowListCopyWindowInfo(CGWindowListOption, CGWindowID) {
    return static_cast<CFArrayRef>((__bridge_retained CFTypeRef)Scripted::windows);
}
CFArrayRef CGWindowListCreateDescriptionFromArray(CFArrayRef numbers) {
    NSMutableArray* const found = [NSMutableArray array];
    for (id window in Scripted::windows) {
        if (![window isKindOfClass:[NSDictionary class]]) continue;
        const auto number = reinterpret_cast<const void*>([window[@"kCGWindowNumber"] longValue]);
        if (std::ranges::find(*numbers, number) != numbers->end()) [found addObject:window];
    }
    return static_cast<CFArrayRef>((__bridge_retained CFTypeRef)found);
}
CGError CGGetOnlineDisplayList(std::uint32_t room, CGDirectDisplayID* ids, std::uint32_t* count) {
    *count = static_cast<std::uint32_t>(Scripted::displays.size());
    for (std::uint32_t i = 0; ids && i < std::min(room, *count); ++i) ids[i] = i;
    return CGError{};
}
CGRect CGDisplayBounds(CGDirectDisplayID display) {
    return Scripted::displays[display];
}
CFDictionaryRef CGSessionCopyCurrentDictionary(void) {
    return static_cast<CFDictionaryRef>((__bridge_retained CFTypeRef)Scripted::session);
}
CFTimeInterval CGEventSourceSecondsSinceLastEventType(CGEventSourceStateID, CGEventType) {
    return 0;
}

int sysctlbyname(const char* name, void* value, std::size_t* size, void*, std::size_t) {
    if (!Scripted::bootSession || std::string_view(name) != "kern.bootsessionuuid") return -1;
    if (value) std::memcpy(value, Scripted::bootSession->c_str(), *size);
    *size = Scripted::bootSession->size() + 1;
    return 0;
}

// The only other process is the guard.
int proc_listallpids(void* pids, int) {
    if (pids) *static_cast<int*>(pids) = 1;
    return 1;
}
int proc_pidpath(int, void* path, std::uint32_t size) {
    const auto guard = OrvelSystem::GuardService::executable().string();
    std::strncpy(static_cast<char*>(path), guard.c_str(), size);
    return static_cast<int>(guard.size());
}

// Hotkeys. An event is the identifier of a hotkey.
OSStatus InstallEventHandler(EventTargetRef, EventHandlerUPP handler, ItemCount,
                             const EventTypeSpec*, void* context, EventHandlerRef*) {
    Scripted::press = [=](Scripted::Hotkey key) {
        const auto found = Scripted::hotkeys.find(key);
        if (found == Scripted::hotkeys.end()) return;
        EventHotKeyID id{.signature = 0, .id = found->second};
        handler(nullptr, reinterpret_cast<EventRef>(&id), context);
    };
    return 0;
}
OSStatus GetEventParameter(EventRef event, EventParamName, EventParamType, EventParamType*,
                           ByteCount size, ByteCount*, void* data) {
    std::memcpy(data, event, size);
    return 0;
}
OSStatus RegisterEventHotKey(UInt32 code, UInt32 modifiers, EventHotKeyID id, EventTargetRef,
                             OptionBits, EventHotKeyRef* ref) {
    const auto [entry, _] = Scripted::hotkeys.insert_or_assign({code, modifiers}, id.id);
    *ref = reinterpret_cast<EventHotKeyRef>(const_cast<Scripted::Hotkey*>(&entry->first));
    return 0;
}
OSStatus UnregisterEventHotKey(EventHotKeyRef ref) {
    Scripted::hotkeys.erase(Scripted::Hotkey(*reinterpret_cast<Scripted::Hotkey*>(ref)));
    return 0;
}
}
