// Lets code that clang compiles with automatic reference counting, for the runtime gnustep-1.9, run
// on GCC's Objective-C runtime, for which Debian builds GNUstep. GCC's runtime has neither
// reference counting nor blocks, and clang's classes have another layout.

#include <cstdint>
#include <map>
#include <mutex>
#include <set>
#include <string>

#include <Block.h>
#include <dlfcn.h>
#include <objc/message.h>
#include <objc/runtime.h>
#include <unwind.h>

#include "Support/Missing.h"

extern "C" {
extern void *_NSConcreteStackBlock[], *_NSConcreteMallocBlock[], *_NSConcreteGlobalBlock[];
_Unwind_Reason_Code __gxx_personality_v0(int, _Unwind_Action, _Unwind_Exception_Class,
                                         _Unwind_Exception*, _Unwind_Context*);
}

namespace {

// What clang writes for each file. GCC's runtime knows `ClassData` up to `gc`.
struct Ivar {
    const char *name, *type;
    int offset;
};
struct IvarList {
    int count;
    Ivar ivars[1];
};
struct Protocol {
    void* isa;
    const char* name;
    struct ProtocolList* protocols;
};
struct ProtocolList {
    ProtocolList* next;
    std::size_t count;
    Protocol* protocols[1];
};
struct ClassData {
    ClassData* isa;
    const char *superName, *name;
    long version;
    unsigned long info;
    long instanceSize;
    IvarList* ivars;
    void *methods, *dispatchTable, *subclasses, *sibling;
    ProtocolList* protocols;
    void* gc;
    long abi;
    int** ivarOffsets;
};
struct CategoryData {
    const char *name, *className;
    void *instanceMethods, *classMethods;
    ProtocolList* protocols;
};
struct SymbolTable {
    unsigned long selectors;
    void* references;
    unsigned short classes, categories;
    void* definitions[1];
};
struct Module {
    unsigned long version, size;
    const char* name;
    SymbolTable* symbols;
};

std::map<std::string, ClassData*>& classes() {
    static std::map<std::string, ClassData*> found;
    return found;
}

/// Sets the layout version of protocols to GCC's, which is 2.
void convert(ProtocolList* list) {
    constexpr std::uintptr_t newestVersion = 15;
    for (; list; list = list->next)
        for (std::size_t i = 0; i < list->count; ++i) {
            Protocol* const protocol = list->protocols[i];
            if (reinterpret_cast<std::uintptr_t>(protocol->isa) <= newestVersion)
                protocol->isa = reinterpret_cast<void*>(2);
            convert(protocol->protocols);
        }
}

/// Moves the instance variables behind those of the superclass, whose size the compiler did not
/// know. It wrote the size of the own variables as a negative number.
void placeIvars(ClassData* data) {
    if (data->instanceSize > 0) return;
    std::size_t base = 0;
    if (const auto own = classes().find(data->superName ? data->superName : "");
        own != classes().end()) {
        placeIvars(own->second);
        base = static_cast<std::size_t>(own->second->instanceSize);
    } else if (data->superName) {
        base = class_getInstanceSize(objc_getClass(data->superName));
    }
    base = (base + 7) & ~std::size_t{7};
    // The classes of the headers have no instance variables, which the compiler counts as one byte.
    if (data->ivars && data->ivars->count > 0 && data->ivars->ivars[0].offset < 0) ++base;
    data->instanceSize = static_cast<long>(base) - data->instanceSize;
    for (int i = 0; data->ivars && i < data->ivars->count; ++i) {
        data->ivars->ivars[i].offset += static_cast<int>(base);
        if (data->ivarOffsets && data->ivarOffsets[i])
            *data->ivarOffsets[i] = data->ivars->ivars[i].offset;
    }
}

id send(id object, const char* name) {
    const SEL selector = sel_registerName(name);
    return objc_msg_lookup(object, selector)(object, selector);
}

/// The beginning of what clang writes for a block.
struct BlockData {
    void* isa;
    int flags, reserved;
    void (*invoke)(BlockData*);
};

id copyBlock(id block, SEL) {
    return static_cast<id>(_Block_copy(block));
}

/// Gives the classes of blocks the methods of objects. "invoke" calls a block without arguments.
void makeBlocksObjects() {
    const Class block = objc_allocateClassPair(objc_getClass("NSObject"), "KarvoBlock", 0);
    const auto add = [block](const char* name, auto* method, const char* types) {
        class_addMethod(block, sel_registerName(name),
                        reinterpret_cast<IMP>(reinterpret_cast<void*>(method)), types);
    };
    for (const char* name : {"copy", "copyWithZone:", "retain"}) add(name, copyBlock, "@@:^v");
    add(
        "release", +[](id self, SEL) { _Block_release(self); }, "v@:");
    add(
        "autorelease", +[](id self, SEL) { return self; }, "@@:");
    add(
        "invoke", +[](BlockData* self, SEL) { self->invoke(self); }, "v@:");
    objc_registerClassPair(block);
    send(reinterpret_cast<id>(block), "class");  // fills its dispatch table
    constexpr std::size_t words = 13;            // of GCC's class structure
    for (void** isa : {_NSConcreteStackBlock, _NSConcreteMallocBlock, _NSConcreteGlobalBlock})
        for (std::size_t i = 0; i < words; ++i) isa[i] = reinterpret_cast<void**>(block)[i];
}

std::recursive_mutex weakMutex;
std::map<id, std::set<id*>> weakSlots;
IMP originalDealloc;

id store(id* slot, id object) {
    *slot = object;
    if (object) weakSlots[object].insert(slot);
    return object;
}

void forget(id* slot) {
    if (const auto found = weakSlots.find(*slot); *slot && found != weakSlots.end())
        found->second.erase(slot);
    *slot = nullptr;
}

id dealloc(id self, SEL selector) {
    {
        const std::lock_guard lock(weakMutex);
        if (const auto found = weakSlots.find(self); found != weakSlots.end()) {
            for (id* slot : found->second) *slot = nullptr;
            weakSlots.erase(found);
        }
    }
    Missing::forget(self);
    return originalDealloc(self, selector);
}

struct Slot {
    Class owner, cachedFor;
    const char* types;
    int version;
    IMP method;
};

}  // namespace

extern "C" {

// Called for each file before `main`. This definition hides that of the runtime, and calls it.
__attribute__((visibility("hidden"))) void __objc_exec_class(Module* module) {
    static const auto original =
        reinterpret_cast<void (*)(Module*)>(dlsym(RTLD_NEXT, "__objc_exec_class"));
    constexpr unsigned long newLayout = 0x10;  // has another meaning in GCC's runtime
    SymbolTable* const symbols = module->symbols;
    for (int i = 0; i < symbols->classes; ++i) {
        auto* const data = static_cast<ClassData*>(symbols->definitions[i]);
        classes()[data->name] = data;
        for (ClassData* each : {data, data->isa}) {
            each->info &= ~newLayout;
            convert(each->protocols);
        }
    }
    for (int i = 0; i < symbols->classes; ++i)
        placeIvars(static_cast<ClassData*>(symbols->definitions[i]));
    for (int i = 0; i < symbols->categories; ++i)
        convert(static_cast<CategoryData*>(symbols->definitions[symbols->classes + i])->protocols);
    constexpr unsigned long gccVersion = 8;
    original(new Module{gccVersion, sizeof(Module), module->name, symbols});
    if (originalDealloc) return;
    makeBlocksObjects();
    originalDealloc = method_setImplementation(
        class_getInstanceMethod(objc_getClass("NSObject"), sel_registerName("dealloc")),
        reinterpret_cast<IMP>(dealloc));
}

// The caller reads the slot before its thread looks up anything else.
Slot* objc_msg_lookup_sender(id* receiver, SEL selector, id) {
    thread_local Slot slot;
    const bool isKnown =
        !*receiver || class_respondsToSelector(object_getClass(*receiver), selector);
    slot.method = isKnown ? objc_msg_lookup(*receiver, selector) : Missing::method(selector);
    return &slot;
}
Slot* objc_slot_lookup_super(objc_super* super, SEL selector) {
    thread_local Slot slot;
    slot.method = class_respondsToSelector(super->super_class, selector)
                      ? objc_msg_lookup_super(super, selector)
                      : Missing::method(selector);
    return &slot;
}

// A message to nil does nothing and returns nil.
id objc_retain(id object) {
    return send(object, "retain");
}
void objc_release(id object) {
    send(object, "release");
}
id objc_autorelease(id object) {
    return send(object, "autorelease");
}
id objc_retainAutorelease(id object) {
    return objc_autorelease(objc_retain(object));
}
#define KARVO_SAME(name, other) id name(id) __attribute__((alias(#other)));
KARVO_SAME(objc_autoreleaseReturnValue, objc_autorelease)
KARVO_SAME(objc_retainAutoreleaseReturnValue, objc_retainAutorelease)
KARVO_SAME(objc_retainAutoreleasedReturnValue, objc_retain)
KARVO_SAME(objc_retainBlock, objc_retain)
void objc_storeStrong(id* slot, id object) {
    const id old = *slot;
    *slot = objc_retain(object);
    objc_release(old);
}
void* objc_autoreleasePoolPush() {
    return send(send(reinterpret_cast<id>(objc_getClass("NSAutoreleasePool")), "alloc"), "init");
}
void objc_autoreleasePoolPop(void* pool) {
    send(static_cast<id>(pool), "drain");
}

id objc_initWeak(id* slot, id object) {
    const std::lock_guard lock(weakMutex);
    return store(slot, object);
}
void objc_destroyWeak(id* slot) {
    const std::lock_guard lock(weakMutex);
    forget(slot);
}
id objc_loadWeakRetained(id* slot) {
    const std::lock_guard lock(weakMutex);
    return objc_retain(*slot);
}
void objc_copyWeak(id* to, id* from) {
    const std::lock_guard lock(weakMutex);
    store(to, *from);
}
void objc_moveWeak(id* to, id* from) {
    const std::lock_guard lock(weakMutex);
    store(to, *from);
    forget(from);
}

void objc_setProperty_nonatomic_copy(id self, SEL, id value, long offset) {
    id* const slot = reinterpret_cast<id*>(reinterpret_cast<char*>(self) + offset);
    const id old = *slot;
    *slot = send(value, "copy");
    objc_release(old);
}

// GNUstep throws C++ exceptions, whose handlers this function finds.
_Unwind_Reason_Code __gnustep_objcxx_personality_v0(int version, _Unwind_Action action,
                                                    _Unwind_Exception_Class type,
                                                    _Unwind_Exception* exception,
                                                    _Unwind_Context* context) {
    return __gxx_personality_v0(version, action, type, exception, context);
}
}
