#define NS_ASSUME_NONNULL_BEGIN
#define NS_ASSUME_NONNULL_END
extern "C" {
NSString* NSUserName(void);
NSString* NSFullUserName(void);
NSString* NSHomeDirectory(void);
void NSLog(NSString* format, ...) __attribute__((format(NSString, 1, 2)));
}
constexpr NSPoint NSMakePoint(CGFloat x, CGFloat y) {
    return {x, y};
}
constexpr NSSize NSMakeSize(CGFloat w, CGFloat h) {
    return {w, h};
}
constexpr NSRect NSMakeRect(CGFloat x, CGFloat y, CGFloat w, CGFloat h) {
    return {{x, y}, {w, h}};
}
constexpr NSRange NSMakeRange(NSUInteger location, NSUInteger length) {
    return {location, length};
}
constexpr NSPoint NSZeroPoint{};
constexpr NSSize NSZeroSize{};
constexpr NSRect NSZeroRect{};
constexpr CGFloat NSMinX(NSRect r) {
    return r.origin.x;
}
constexpr CGFloat NSMinY(NSRect r) {
    return r.origin.y;
}
constexpr CGFloat NSMidX(NSRect r) {
    return r.origin.x + r.size.width * 0.5;
}
constexpr CGFloat NSMidY(NSRect r) {
    return r.origin.y + r.size.height * 0.5;
}
constexpr CGFloat NSWidth(NSRect r) {
    return r.size.width;
}
constexpr CGFloat NSHeight(NSRect r) {
    return r.size.height;
}
constexpr CGFloat NSMaxX(NSRect r) {
    return r.origin.x + r.size.width;
}
constexpr CGFloat NSMaxY(NSRect r) {
    return r.origin.y + r.size.height;
}
template <class T>
T CFBridgingRetain(T);
extern "C" BOOL NSMouseInRect(NSPoint, NSRect, BOOL flipped);
typedef NSString *NSNotificationName, *NSRunLoopMode, *NSExceptionName, *NSErrorDomain,
    *NSErrorUserInfoKey;
// Dispatch objects are Objective-C objects, which ARC releases.
@protocol OS_dispatch_object
@end
typedef NSObject<OS_dispatch_object>*dispatch_queue_t, *dispatch_source_t;
typedef void (^dispatch_block_t)(void);
typedef const struct dispatch_source_type_s* dispatch_source_type_t;
extern "C" {
dispatch_queue_t dispatch_get_main_queue(void);
void dispatch_async(dispatch_queue_t, dispatch_block_t);
dispatch_source_t dispatch_source_create(dispatch_source_type_t, unsigned long handle,
                                         unsigned long mask, dispatch_queue_t);
void dispatch_source_set_event_handler(dispatch_source_t, dispatch_block_t);
void dispatch_source_set_cancel_handler(dispatch_source_t, dispatch_block_t);
void dispatch_source_cancel(dispatch_source_t);
void dispatch_resume(dispatch_source_t);
void dispatch_main(void) __attribute__((noreturn));
extern struct dispatch_source_type_s _dispatch_source_type_proc, _dispatch_source_type_signal,
    _dispatch_source_type_vnode;
}
#define DISPATCH_SOURCE_TYPE_PROC (&_dispatch_source_type_proc)
#define DISPATCH_SOURCE_TYPE_SIGNAL (&_dispatch_source_type_signal)
#define DISPATCH_SOURCE_TYPE_VNODE (&_dispatch_source_type_vnode)
#define DISPATCH_PROC_EXIT 0x80000000UL
#define DISPATCH_VNODE_WRITE 0x2UL
