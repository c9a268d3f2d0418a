#pragma once

/// UTILVEL90_EXPORT marks what the shared library offers to its callers; all else stays hidden.
#if defined(_WIN32)
#if defined(UTILVEL90_CONSTRUYE)
#define UTILVEL90_EXPORT __declspec(dllexport)
#else
#define UTILVEL90_EXPORT __declspec(dllimport)
#endif
#else
#define UTILVEL90_EXPORT __attribute__((visibility("default")))
#endif
