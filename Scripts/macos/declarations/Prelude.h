#include <stdarg.h>
#include <stddef.h>
#include <stdint.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <time.h>
#define nil nullptr
#define YES __objc_yes
#define NO __objc_no
typedef bool BOOL;
typedef long NSInteger;
typedef unsigned long NSUInteger;
typedef double CGFloat;
typedef double NSTimeInterval;
typedef unsigned short unichar;
typedef long CFIndex;
typedef unsigned long CFTypeID, CFOptionFlags, CFHashCode;
typedef struct __CGEvent* CGEventRef;
typedef double CFTimeInterval, CFAbsoluteTime;
typedef unsigned char Boolean;
typedef int32_t OSStatus;
typedef uint32_t UInt32, FourCharCode, OSType, AEKeyword, DescType, OptionBits;
typedef int16_t OSErr;
typedef unsigned long ByteCount, ItemCount;
typedef const void* CFTypeRef;
#define KARVO_CF(N) typedef const struct __CF##N* CF##N##Ref
KARVO_CF(String);
KARVO_CF(Array);
KARVO_CF(Dictionary);
KARVO_CF(Data);
KARVO_CF(Number);
KARVO_CF(Boolean);
KARVO_CF(Date);
KARVO_CF(URL);
KARVO_CF(Set);
KARVO_CF(UUID);
KARVO_CF(Locale);
KARVO_CF(TimeZone);
KARVO_CF(Allocator);
KARVO_CF(Attributed);
KARVO_CF(Notification);
#undef KARVO_CF
#define KARVO_CF(N) typedef struct __CF##N* CF##N##Ref
KARVO_CF(RunLoop);
KARVO_CF(RunLoopSource);
KARVO_CF(RunLoopTimer);
KARVO_CF(Bundle);
KARVO_CF(MachPort);
KARVO_CF(Error);
KARVO_CF(MutableArray);
KARVO_CF(MutableDictionary);
#undef KARVO_CF
struct CGPoint {
    CGFloat x, y;
};
struct CGSize {
    CGFloat width, height;
};
struct CGVector {
    CGFloat dx, dy;
};
struct CGRect {
    CGPoint origin;
    CGSize size;
};
typedef CGPoint NSPoint;
typedef CGSize NSSize;
typedef CGRect NSRect;
struct NSRange {
    NSUInteger location, length;
};
typedef struct _NSZone NSZone;
// Stricter than the SDK, in which option sets are plain integers in C++.
#define KARVO_OPTIONS(T)                                         \
    constexpr T operator|(T a, T b) {                            \
        return T((unsigned long long)a | (unsigned long long)b); \
    }                                                            \
    constexpr T operator&(T a, T b) {                            \
        return T((unsigned long long)a & (unsigned long long)b); \
    }                                                            \
    constexpr T operator~(T a) {                                 \
        return T(~(unsigned long long)a);                        \
    }                                                            \
    constexpr T& operator|=(T& a, T b) {                         \
        return a = a | b;                                        \
    }                                                            \
    constexpr T& operator&=(T& a, T b) {                         \
        return a = a & b;                                        \
    }
