// base::Bind(functor, arguments...): a callback that runs the functor with the given first
// arguments; whatever parameters remain are those of the callback.
//
// A functor is a function pointer, a pointer to a method (its first argument is the receiver) or
// another callback. Function objects, lambdas among them, are not accepted. Bound values are copied
// and live as long as the last copy of the callback. A receiver given as a plain pointer or a
// CefRefPtr is kept alive by a reference, one wrapped in base::Unretained is not. A plain pointer
// bound as a further argument is stored as it is: pass a CefRefPtr there.

#ifndef CEF_INCLUDE_BASE_CEF_BIND_H_
#define CEF_INCLUDE_BASE_CEF_BIND_H_

#include <cstddef>
#include <tuple>
#include <type_traits>
#include <utility>

#include "include/base/cef_bind_helpers.h"
#include "include/base/cef_callback.h"

namespace base {

namespace cef_internal {

template <typename... T>
struct TypeList {};

// The parameters that are left when `Count` are bound.
template <size_t Count, typename List>
struct DropTypes;
template <typename... T>
struct DropTypes<0, TypeList<T...>> {
  typedef TypeList<T...> Type;
};
template <size_t Count, typename First, typename... Rest>
struct DropTypes<Count, TypeList<First, Rest...>> : DropTypes<Count - 1, TypeList<Rest...>> {};
template <typename First, typename... Rest>
struct DropTypes<0, TypeList<First, Rest...>> {
  typedef TypeList<First, Rest...> Type;
};

// A bound value would be modified instead of what the caller means.
template <size_t Count, typename List>
struct BindsMutableReference : std::false_type {};
template <size_t Count, typename First, typename... Rest>
struct BindsMutableReference<Count, TypeList<First, Rest...>>
    : std::bool_constant<Count != 0 &&
                         ((std::is_lvalue_reference<First>::value &&
                           !std::is_const<std::remove_reference_t<First>>::value) ||
                          BindsMutableReference<Count - 1, TypeList<Rest...>>::value)> {};
template <typename First, typename... Rest>
struct BindsMutableReference<0, TypeList<First, Rest...>> : std::false_type {};

template <typename Functor>
struct FunctorTraits {
  static_assert(sizeof(Functor) == 0, "base::Bind takes functions, methods and callbacks only");
};

template <typename R, typename... Params>
struct FunctorTraits<R (*)(Params...)> {
  typedef R Return;
  typedef TypeList<Params...> ParamList;
  static constexpr bool kIsMethod = false;

  template <typename... Args>
  static R Call(R (*function)(Params...), Args&&... args) {
    return function(std::forward<Args>(args)...);
  }
};

template <typename R, typename Class, typename... Params>
struct FunctorTraits<R (Class::*)(Params...)> {
  typedef R Return;
  typedef TypeList<Class*, Params...> ParamList;
  static constexpr bool kIsMethod = true;

  template <typename Receiver, typename... Args>
  static R Call(R (Class::*method)(Params...), const Receiver& receiver, Args&&... args) {
    return (ReceiverOf(receiver)->*method)(std::forward<Args>(args)...);
  }
};

template <typename R, typename Class, typename... Params>
struct FunctorTraits<R (Class::*)(Params...) const> {
  typedef R Return;
  typedef TypeList<const Class*, Params...> ParamList;
  static constexpr bool kIsMethod = true;

  template <typename Receiver, typename... Args>
  static R Call(R (Class::*method)(Params...) const, const Receiver& receiver, Args&&... args) {
    return (ReceiverOf(receiver)->*method)(std::forward<Args>(args)...);
  }
};

template <typename R, typename... Params>
struct FunctorTraits<Callback<R(Params...)>> {
  typedef R Return;
  typedef TypeList<Params...> ParamList;
  static constexpr bool kIsMethod = false;

  template <typename... Args>
  static R Call(const Callback<R(Params...)>& callback, Args&&... args) {
    return callback.Run(std::forward<Args>(args)...);
  }
};

template <bool IsMethod, typename... Args>
struct StoredTuple {
  typedef std::tuple<typename StoredArgument<Args>::Type...> Type;
};
template <typename First, typename... Rest>
struct StoredTuple<true, First, Rest...> {
  typedef std::tuple<typename StoredReceiver<std::decay_t<First>>::Type,
                     typename StoredArgument<Rest>::Type...>
      Type;
};

template <typename Functor, typename Stored, typename Remaining>
class BoundCallImpl;

template <typename Functor, typename... Stored, typename... Remaining>
class BoundCallImpl<Functor, std::tuple<Stored...>, TypeList<Remaining...>>
    : public BoundCall<typename FunctorTraits<Functor>::Return, Remaining...> {
 public:
  template <typename... Args>
  explicit BoundCallImpl(const Functor& functor, const Args&... args)
      : functor_(functor), stored_(args...) {}

  typename FunctorTraits<Functor>::Return Run(Remaining... args) override {
    return std::apply(
        [&](const Stored&... stored) {
          return FunctorTraits<Functor>::Call(functor_, Unwrap(stored)...,
                                              std::forward<Remaining>(args)...);
        },
        stored_);
  }

 private:
  const Functor functor_;
  const std::tuple<Stored...> stored_;
};

template <typename R, typename List>
struct CallbackOf;
template <typename R, typename... Params>
struct CallbackOf<R, TypeList<Params...>> {
  typedef Callback<R(Params...)> Type;
};

template <typename Functor, typename... Args>
auto BindImpl(const Functor& functor, const Args&... args) {
  typedef FunctorTraits<Functor> Traits;
  static_assert(!BindsMutableReference<sizeof...(Args), typename Traits::ParamList>::value,
                "base::Bind cannot bind to a parameter that is a non-const reference");
  typedef typename DropTypes<sizeof...(Args), typename Traits::ParamList>::Type Remaining;
  typedef typename StoredTuple<Traits::kIsMethod && sizeof...(Args) != 0, Args...>::Type Stored;
  return typename CallbackOf<typename Traits::Return, Remaining>::Type(
      new BoundCallImpl<Functor, Stored, Remaining>(functor, args...));
}

}  // namespace cef_internal

template <typename Functor, typename... Args>
auto Bind(Functor functor, const Args&... args) {
  return cef_internal::BindImpl(functor, args...);
}

}  // namespace base

#endif  // CEF_INCLUDE_BASE_CEF_BIND_H_
