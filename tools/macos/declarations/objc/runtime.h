/* The Objective-C runtime. */
#pragma once
#include <bits/alltypes.h>
#ifdef __cplusplus
extern "C" {
#endif
#if defined(__x86_64__)
typedef signed char BOOL;
#define YES ((BOOL)1)
#define NO ((BOOL)0)
#else
typedef bool BOOL;
#define YES true
#define NO false
#endif
#define nil nullptr
#define Nil nullptr
Class objc_getClass(const char* name);
#ifdef __cplusplus
}
#endif
