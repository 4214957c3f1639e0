// The language's own names.
#pragma once

#include <stddef.h>
#include <stdint.h>

#define nil nullptr
#define YES __objc_yes
#define NO __objc_no

typedef bool BOOL;
typedef long NSInteger;
typedef unsigned long NSUInteger;

// An enumeration is a type of its own, a set of options is plainly its integer: as in the system's headers for C++.
#define NS_ENUM(type, name) \
  enum name : type name;    \
  enum name : type
#define NS_OPTIONS(type, name) \
  type name;                   \
  enum : type
