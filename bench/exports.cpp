#include "exports.h"

#ifdef TAVKIT_NATIVE

void bench::Connect() {
#define UT_ENTRY(ordinal, name, bytes) exports.name = &::name;
#include <exports.inc>
#undef UT_ENTRY
}

#else

#include <module.h>
#include <operation_table.h>

void bench::Connect() {
  static const host::Module module(host::ReadFile(dllPath), host::FindPlatformOperation);
#define UT_ENTRY(ordinal, name, bytes) \
  exports.name = reinterpret_cast<decltype(exports.name)>(module.Find(ordinal));
#include <exports.inc>
#undef UT_ENTRY
}

#endif
