// The registry: a tree of keys and values in memory. Names count without regard to case and stay as
// they were first written.
#ifndef PLATFORM_OPERATIONS_REGISTRY_H
#define PLATFORM_OPERATIONS_REGISTRY_H

#include <win32.h>

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace host {

struct RegistryValue {
  std::string name;  // empty for the default value of the key
  DWORD type = REG_NONE;
  std::vector<unsigned char> data;

  friend bool operator==(const RegistryValue&, const RegistryValue&) = default;
};

struct RegistryKey {
  std::string name;
  RegistryKey* parent = nullptr;  // not to be used once the key is deleted
  unsigned depth = 0;             // levels above it
  bool isDeleted = false;
  // Both by FoldName() of the name.
  std::map<std::string, RegistryValue> values;
  std::map<std::string, std::shared_ptr<RegistryKey>> keys;
};

// The same names in the same letters, and the same values.
bool operator==(const RegistryKey& one, const RegistryKey& other);

inline constexpr std::size_t kMaxKeyNameLength = 255;
inline constexpr unsigned kMaxKeyDepth = 512;

// A key without a name that holds the predefined keys, HKEY_CURRENT_USER and so on.
std::shared_ptr<RegistryKey> NewRegistry();

// The key at a path below `from`; empty parts of the path count for nothing. Where `missing` is
// given, missing keys are made and counted there, else the result is NULL. NULL too, and nothing is
// made, for a name that is too long or a tree that would become too deep.
std::shared_ptr<RegistryKey> FindKey(std::shared_ptr<RegistryKey> from, std::string_view path,
                                     std::size_t* missing);

// Sets a value; one that is there keeps the letters of its name.
void SetValue(RegistryKey& key, std::string_view name, DWORD type, std::vector<unsigned char> data);

// The registry that the operations work on; none may run while it is walked. Handles to keys of the
// one that is replaced stay open, on deleted keys.
std::shared_ptr<const RegistryKey> CurrentRegistry();
void ReplaceRegistry(std::shared_ptr<RegistryKey> registry);

// How many handles were opened and not yet closed.
std::size_t LivingKeyHandles();

}  // namespace host

#endif  // PLATFORM_OPERATIONS_REGISTRY_H
