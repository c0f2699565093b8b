// Pointers to functions of the platform.
#pragma once

namespace pmcli {

template <auto Function>
struct lazy_call;

template <typename Result, typename... Arguments, Result (*Function)(Arguments...)>
struct lazy_call<Function> {
  static Result call(Arguments... arguments) { return Function(arguments...); }
};

// Points to a function of ours that calls the platform's. The loader finds what is called at the first call, but what
// is pointed to when it loads the library: a platform may leave out functions that its displays do not need.
template <auto Function>
inline constexpr auto lazily = &lazy_call<Function>::call;

}  // namespace pmcli
