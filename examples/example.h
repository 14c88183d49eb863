// What the examples share: the way from main to a body that calls the DLL.
#ifndef EXAMPLES_EXAMPLE_H
#define EXAMPLES_EXAMPLE_H

#include <tavkit.h>

#include <cstdio>
#include <initializer_list>

#if !defined(_WIN32)
#include <client.h>
#include <operation_table.h>
#endif

// A wide literal: the platform's wide character has its type on Windows alone.
#if defined(_WIN32)
#define EXAMPLE_WIDE(text) L##text
#else
#define EXAMPLE_WIDE(text) u##text
#endif

namespace example {

#if defined(_WIN32)

// Runs the body, in a program that is linked with tavkit.lib. The result is for main.
inline int Run(int /*argc*/, char** /*argv*/, void (*body)()) {
  body();
  return 0;
}

#else

// Connects the exports with the DLL that the program's argument names, or with the release, and
// runs the body. The result is for main.
inline int Run(int argc, char** argv, void (*body)()) {
  if (argc > 2) {
    std::fprintf(stderr, "usage: %s [PATH OF TAVKIT.DLL]\n", argv[0]);
    return 2;
  }
  try {
    const auto module = host::ConnectTavkit(argc > 1 ? argv[1] : "dist/bin/TAVKIT.DLL",
                                            host::FindPlatformOperation);
    body();
    return 0;
  } catch (const host::ModuleError& error) {
    std::fprintf(stderr,
                 "%s: the DLL can't be loaded: %s; script/build makes dist/bin/TAVKIT.DLL\n",
                 argv[0], error.what());
    return 1;
  }
}

#endif

// Places are printed as bytes from a start, since addresses differ from run to run.
inline unsigned Offset(const void* start, const void* place) {
  return static_cast<unsigned>(static_cast<const char*>(place) - static_cast<const char*>(start));
}

}  // namespace example

#endif  // EXAMPLES_EXAMPLE_H
