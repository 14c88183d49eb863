// The imports of an image. What they are bound to is the resolver's to know.
#ifndef PLATFORM_LOADER_IMPORTS_H
#define PLATFORM_LOADER_IMPORTS_H

#include <functional>
#include <string_view>

#include "image.h"

namespace host {

// Finds the function to bind an import to; NULL if there is none. An import by ordinal has a name
// like "#52".
using ImportResolver = std::function<void*(std::string_view module, std::string_view name)>;

void BindImports(const pe::Headers& headers, const Mapping& image, const ImportResolver& resolve);

}  // namespace host

#endif  // PLATFORM_LOADER_IMPORTS_H
