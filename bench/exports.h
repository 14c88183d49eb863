// The exports under measurement, called as a program calls those of a DLL: through an address.
#ifndef BENCH_EXPORTS_H
#define BENCH_EXPORTS_H

#include <tavkit.h>

#include <string>

namespace bench {

struct Exports {
#define UT_ENTRY(ordinal, name, bytes) decltype(&::name) name;
#include <exports.inc>
#undef UT_ENTRY
};

inline Exports exports;

// Where the DLL is. A native build has no use for it.
inline std::string dllPath = "dist/bin/TAVKIT.DLL";

// Fills in the addresses: of the DLL's exports by ordinal, or in a native build of the functions
// linked into the program. Throws if the DLL can't be loaded.
void Connect();

// Both forms of the exports under one name.
// clang-format off
#define BENCH_OPERATIONS(X)                                                                        \
  X(FindChar) X(FindRevChar) X(CharNull) X(SkipLeadChar) X(CountLeadChar) X(TrimChar)              \
  X(CopyString) X(CopyMakeAsciiz) X(BreakUNCName) X(BuildUNCName)                                  \
  X(CopyNETRESOURCE) X(CopyNETRESOURCE_XBuffer)
// clang-format on

template <class Char>
struct Form {
#define BENCH_OPERATION(operation) \
  static auto operation(auto... arguments) { return exports.ut##operation(arguments...); }
  BENCH_OPERATIONS(BENCH_OPERATION)
#undef BENCH_OPERATION
};

template <>
struct Form<WCHAR> {
#define utCopyNETRESOURCE_XBufferW utCopyNETRESOURCEW_XBuffer  // where this export has its W
#define BENCH_OPERATION(operation) \
  static auto operation(auto... arguments) { return exports.ut##operation##W(arguments...); }
  BENCH_OPERATIONS(BENCH_OPERATION)
#undef BENCH_OPERATION
#undef utCopyNETRESOURCE_XBufferW
};

}  // namespace bench

#endif  // BENCH_EXPORTS_H
