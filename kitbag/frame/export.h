// How the library's names are exported.
//
// Plain functions are extern "C", use the default (caller-cleans) calling convention and are
// exported undecorated. No exception leaves one of them. Text functions exist in an A form (8-bit
// text in the ANSI code page) and a W form (16-bit text).
#pragma once

#if defined(KITBAG_BUILDING)
#define KITBAG_API __declspec(dllexport)
#else
#define KITBAG_API __declspec(dllimport)
#endif

#define KITBAG_PLAIN extern "C" KITBAG_API
