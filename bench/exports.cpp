#include "exports.h"

#ifdef TAVKIT_NATIVE

void bench::Connect(const std::string&) {
#define UT_ENTRY(ordinal, name, bytes) exports.name = &::name;
#include <exports.inc>
#undef UT_ENTRY
}

#else

#include <module.h>

void bench::Connect(const std::string& dll) {
  static const host::Module module(host::ReadFile(dll));
#define UT_ENTRY(ordinal, name, bytes) \
  exports.name = reinterpret_cast<decltype(exports.name)>(module.Find(ordinal));
#include <exports.inc>
#undef UT_ENTRY
}

#endif
