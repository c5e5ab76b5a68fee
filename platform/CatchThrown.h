// Catching Objective-C exceptions in Objective-C++.
//
// With g++ an @catch in an Objective-C++ file compiles and then crashes as soon as an exception
// reaches it, because the function carries the C++ exception personality. So all catching happens
// in one plain Objective-C function, and Objective-C++ code calls it through CatchThrown().

#ifndef PLATFORM_CATCHTHROWN_H_
#define PLATFORM_CATCHTHROWN_H_

#import <Foundation/Foundation.h>

#ifdef __cplusplus
extern "C" {
#endif

// Calls body(context). Returns the object that it threw, whatever its class, else nil. The object
// is not retained for the caller. C++ exceptions pass through.
id CatchObject(void (*body)(void* context), void* context);

#ifdef __cplusplus
}

// Runs `body`, a callable without arguments and result, and returns what it threw, else nil:
//   if (id thrown = CatchThrown([&] { ... })) showNsObject(thrown);
// C++ objects on the way are destroyed; throwing the object again with @throw is allowed.
template <class Body>
id CatchThrown(Body body) {
  return CatchObject([](void* context) { (*static_cast<Body*>(context))(); }, &body);
}
#endif

#endif  // PLATFORM_CATCHTHROWN_H_
