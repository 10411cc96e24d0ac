#pragma once

#include <objc/objc.h>

/// Methods that GNUstep lacks.
namespace Missing {

IMP method(SEL selector);
/// Drops the values that were set for an object that ends.
void forget(id object);

}  // namespace Missing
