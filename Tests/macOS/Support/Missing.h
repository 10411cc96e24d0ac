#pragma once

/// Methods that GNUstep lacks.
namespace Missing {

using id = struct objc_object*;
using SEL = struct objc_selector*;
using IMP = id (*)(id, SEL, ...);

IMP method(SEL selector);
/// Drops the values that were set for an object that ends.
void forget(id object);

}  // namespace Missing
