#pragma once

// Headers include this one first or nearly so: a compiler set too low reads this before what it cannot.
#if __cplusplus < 202002L && (!defined(_MSVC_LANG) || _MSVC_LANG < 202002L)
#error "UtilVel90 needs C++20: compile with -std=c++20, or link UtilVel90::UtilVel90 in CMake."
// There is no such file: the compiler stops here, and hundreds of other errors do not bury that one.
#include "needs C++20"
#endif

/// UTILVEL90_EXPORT marks what the shared library offers to its callers; all else stays hidden. With
/// UTILVEL90_ESTATICA the library's objects are linked themselves, as some of its own tests do.
///
/// Threads. Functions that are no members, and static members, may be called by all threads at once, for the
/// same file too: what two of them save, one after the other saves whole. Different objects may be used by
/// different threads. What holds for one object is the last sentence of its class:
///
///     Threads: one at a time.                         its const members too
///     Threads: const members may be called by all.    while no thread changes the object
///
/// Records of public members are as the second. Nobody may set an environment variable meanwhile: the
/// system's own functions do not allow it.
#if defined(_WIN32)
#if defined(UTILVEL90_ESTATICA)
#define UTILVEL90_EXPORT
#elif defined(UTILVEL90_CONSTRUYE)
#define UTILVEL90_EXPORT __declspec(dllexport)
#else
#define UTILVEL90_EXPORT __declspec(dllimport)
#endif
#else
#define UTILVEL90_EXPORT __attribute__((visibility("default")))
#endif
