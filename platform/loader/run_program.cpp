// Runs a 32-bit Windows console program: run_program PROGRAM. The DLLs that it needs lie beside it.
// The exit code is the program's; 125 stands for a program that can't be run.
#include <operation_table.h>

#include <cstdio>

#include "module.h"
#include "program.h"

int main(int argc, char** argv) {
  constexpr int kCannotRun = 125;
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s PROGRAM\n", argv[0]);
    return kCannotRun;
  }
  try {
    const DWORD exitCode = host::RunProgram(argv[1], host::FindPlatformOperation);
    if (exitCode < kCannotRun) return static_cast<int>(exitCode);
    std::fprintf(stderr, "%s: %s ended with the exit code %u, which is told as 124\n", argv[0],
                 argv[1], exitCode);
    return kCannotRun - 1;
  } catch (const host::ModuleError& error) {
    std::fprintf(stderr, "%s: %s can't be run: %s\n", argv[0], argv[1], error.what());
    return kCannotRun;
  }
}
