// Loading and unloading the DLL, which takes a 32-bit program.
#ifndef TAVKIT_NATIVE

#include <dlfcn.h>
#include <module.h>
#include <operation_table.h>

#include <stdexcept>

#include "exports.h"
#include "measure.h"

namespace {

using namespace bench;

TEST_CASE("Load and unload the DLL") {
  const auto file = host::ReadFile(dllPath);
  const char* object = BENCH_EMPTY_OBJECT;
  Compare({"load and unload", "by the module loader, from memory"}, Ours{[&] {
            return host::Module(file, host::FindPlatformOperation).Find(52u) != nullptr;
          }},
          Peer{"dlopen of an empty object", [=] {
                 void* handle = dlopen(object, RTLD_NOW);
                 if (handle == nullptr) throw std::runtime_error(dlerror());
                 dlclose(handle);
                 return true;
               }});
}

}  // namespace

#endif
