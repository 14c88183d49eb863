#include "operation_table.h"

#include <import_table.h>
#include <win32.h>

namespace host {

void* FindPlatformOperation(std::string_view module, std::string_view name) {
#define UT_ENTRY UT_IMPORTABLE
  static const Importable operations[] = {
#include <imports.inc>
  };
#undef UT_ENTRY
  return FindIn(operations, module, name);
}

}  // namespace host
