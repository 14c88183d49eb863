#include "registry.h"

#include <algorithm>
#include <utility>

#include "codepage.h"
#include "conversion.h"
#include "host.h"
#include "state.h"
#include "text.h"

namespace host {
namespace {

constexpr LONG kErrorBadPathname = 161;
constexpr LONG kErrorNoAccess = 998;
constexpr LONG kErrorKeyDeleted = 1018;

constexpr std::size_t kMaxValueNameLength = 16383;
constexpr std::size_t kMaxNameLength = 32766;  // that can be asked for

constexpr DWORD kCreatedNewKey = 1;
constexpr DWORD kOpenedExistingKey = 2;

using KeyPointer = std::shared_ptr<RegistryKey>;

const std::pair<const char*, HKEY> kPredefined[] = {
    {"HKEY_CLASSES_ROOT", HKEY_CLASSES_ROOT},
    {"HKEY_CURRENT_USER", HKEY_CURRENT_USER},
    {"HKEY_LOCAL_MACHINE", HKEY_LOCAL_MACHINE},
    {"HKEY_USERS", HKEY_USERS},
};

// What a handle stands for; without a key if it isn't one.
OpenKey Resolve(const Registry& registry, HKEY hKey) {
  for (const auto& [name, key] : kPredefined) {
    if (hKey == key) return {registry.root->keys.at(name), KEY_ALL_ACCESS};
  }
  const auto found = registry.handles.find(hKey);
  return found == registry.handles.end() ? OpenKey() : found->second;
}

HKEY NewHandle(Registry& registry, KeyPointer key, REGSAM access) {
  registry.lastHandle += 4;
  const auto handle = reinterpret_cast<HKEY>(registry.lastHandle);
  registry.handles[handle] = {std::move(key), access};
  return handle;
}

std::string NameOf(LPCSTR pszName) { return pszName == nullptr ? "" : pszName; }

void MarkDeleted(RegistryKey& key) {
  key.isDeleted = true;
  for (const auto& [folded, sub] : key.keys) MarkDeleted(*sub);
}

// The next part of a path, which may be empty; `path` becomes what follows it.
std::string_view TakePart(std::string_view& path) {
  std::size_t end = 0;
  while (end < path.size() && path[end] != '\\') end += CharacterLength(path, end);
  const auto part = path.substr(0, end);
  path.remove_prefix(std::min(end + 1, path.size()));
  return part;
}

// Whether there may be keys of these names below one of this depth.
bool CanStand(std::string_view path, unsigned depth) {
  while (!path.empty()) {
    const auto part = TakePart(path);
    if (part.size() > kMaxKeyNameLength) return false;
    if (!part.empty() && ++depth > kMaxKeyDepth) return false;
  }
  return true;
}

KeyPointer AddKey(const KeyPointer& parent, std::string_view folded, std::string_view name) {
  auto key = std::make_shared<RegistryKey>();
  key->name = name;
  key->parent = parent.get();
  key->depth = parent->depth + 1;
  parent->keys[std::string(folded)] = key;
  return key;
}

// Does work on the key that a handle stands for, if its access covers what is needed.
template <class Work>
LONG OnKey(HKEY hKey, REGSAM needed, Work work) {
  Registry& registry = state->registry;
  const std::lock_guard lock(registry.mutex);
  const OpenKey open = Resolve(registry, hKey);
  if (open.key == nullptr) return ERROR_INVALID_HANDLE;
  if (open.key->isDeleted) return kErrorKeyDeleted;
  if ((open.access & needed) != needed) return ERROR_ACCESS_DENIED;
  return work(open.key);
}

// Opens or, where `made` is given, creates the key at a path and counts there what was missing.
LONG OpenAt(HKEY hKey, std::string_view path, REGSAM samDesired, PHKEY phkResult,
            std::size_t* made) {
  // A key that isn't there to open leaves NULL.
  if (made == nullptr && phkResult != nullptr) *phkResult = nullptr;
  return OnKey(hKey, 0, [&](const KeyPointer& parent) -> LONG {
    if (phkResult == nullptr) return ERROR_INVALID_PARAMETER;
    if (path.starts_with('\\')) return kErrorBadPathname;
    const auto key = FindKey(parent, path, made);
    if (key == nullptr) return made == nullptr ? ERROR_FILE_NOT_FOUND : ERROR_INVALID_PARAMETER;
    *phkResult = NewHandle(state->registry, key, samDesired);
    return ERROR_SUCCESS;
  });
}

// Deletes the key at a path; not one with sub-keys and not a predefined one.
LONG DeleteAt(HKEY hKey, std::string_view path) {
  return OnKey(hKey, 0, [&](const KeyPointer& parent) -> LONG {
    if (path.starts_with('\\')) return kErrorBadPathname;
    const auto key = FindKey(parent, path, nullptr);
    if (key == nullptr) return ERROR_FILE_NOT_FOUND;
    if (!key->keys.empty() || key->depth <= 1) return ERROR_ACCESS_DENIED;
    key->isDeleted = true;
    key->parent->keys.erase(FoldName(key->name));
    return ERROR_SUCCESS;
  });
}

// Types whose data are kept as wide text.
bool IsText(DWORD type) { return type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ; }

// What comes back of a text that was stored; a terminator that follows the text is stored along.
std::vector<unsigned char> StoredText(const char* text, std::size_t size) {
  if (size != 0 && text[size - 1] != 0 && text[size] == 0) ++size;
  // Half a character at the end takes the terminator along.
  std::size_t last = 0;
  const auto isLead = [&] { return IsLeadByte(static_cast<unsigned char>(text[last])); };
  while (last + 2 < size) last += isLead() ? 2 : 1;
  if (last + 2 == size && isLead() && text[last + 1] == 0) --size;
  const auto charset = CharsetOf(CodePage());
  Replacement replacement;
  const auto stored = Narrow(Widen({text, size}, charset, replacement), charset, replacement);
  return {stored.begin(), stored.end()};
}

LONG QueryValue(const RegistryKey& key, LPCSTR pszValueName, LPDWORD pdwType, LPBYTE pData,
                LPDWORD pcbData) {
  const auto found = key.values.find(FoldName(NameOf(pszValueName)));
  if (found == key.values.end()) return ERROR_FILE_NOT_FOUND;

  const auto& [name, type, data] = found->second;
  const DWORD capacity = pcbData == nullptr ? 0 : *pcbData;
  if (pdwType != nullptr) *pdwType = type;
  if (pcbData != nullptr) *pcbData = static_cast<DWORD>(data.size());
  if (pData == nullptr) return ERROR_SUCCESS;
  if (data.size() > capacity) return ERROR_MORE_DATA;
  std::copy(data.begin(), data.end(), pData);
  // A text without a terminator gets one where there is space, and its size doesn't count that.
  if (IsText(type) && !data.empty() && data.back() != 0 && data.size() < capacity)
    pData[data.size()] = 0;
  return ERROR_SUCCESS;
}

}  // namespace

bool operator==(const RegistryKey& one, const RegistryKey& other) {
  const auto sameKey = [](const auto& a, const auto& b) { return *a.second == *b.second; };
  return one.name == other.name && one.values == other.values &&
         std::equal(one.keys.begin(), one.keys.end(), other.keys.begin(), other.keys.end(),
                    sameKey);
}

std::shared_ptr<RegistryKey> NewRegistry() {
  auto registry = std::make_shared<RegistryKey>();
  for (const auto& [name, key] : kPredefined) AddKey(registry, name, name);
  return registry;
}

std::shared_ptr<RegistryKey> FindKey(std::shared_ptr<RegistryKey> from, std::string_view path,
                                     std::size_t* missing) {
  if (missing != nullptr && !CanStand(path, from->depth)) return nullptr;
  while (!path.empty()) {
    const auto part = TakePart(path);
    if (part.empty()) continue;
    const auto folded = FoldName(part);
    const auto found = from->keys.find(folded);
    if (found != from->keys.end()) {
      from = found->second;
      continue;
    }
    if (missing == nullptr) return nullptr;
    from = AddKey(from, folded, part);
    ++*missing;
  }
  return from;
}

void SetValue(RegistryKey& key, std::string_view name, DWORD type,
              std::vector<unsigned char> data) {
  auto& value =
      key.values.try_emplace(FoldName(name), RegistryValue{std::string(name), 0, {}}).first->second;
  value.type = type;
  value.data = std::move(data);
}

std::shared_ptr<const RegistryKey> CurrentRegistry() {
  const std::lock_guard lock(state->registry.mutex);
  return state->registry.root;
}

void ReplaceRegistry(std::shared_ptr<RegistryKey> registry) {
  const std::lock_guard lock(state->registry.mutex);
  MarkDeleted(*state->registry.root);
  state->registry.root = std::move(registry);
}

std::size_t LivingKeyHandles() {
  const std::lock_guard lock(state->registry.mutex);
  return state->registry.handles.size();
}

}  // namespace host

LONG UT_API RegOpenKeyExA(HKEY hKey, LPCSTR pszSubKey, DWORD dwOptions, REGSAM samDesired,
                          PHKEY phkResult) {
  if (host::Fails(__func__, hKey, pszSubKey, dwOptions, samDesired, phkResult)) {
    return static_cast<LONG>(host::FailureCode());
  }
  return host::OpenAt(hKey, host::NameOf(pszSubKey), samDesired, phkResult, nullptr);
}

LONG UT_API RegCreateKeyExA(HKEY hKey, LPCSTR pszSubKey, DWORD dwReserved, LPSTR pszClass,
                            DWORD dwOptions, REGSAM samDesired, LPVOID pSecurityAttributes,
                            PHKEY phkResult, LPDWORD pdwDisposition) {
  if (host::Fails(__func__, hKey, pszSubKey, dwReserved, pszClass, dwOptions, samDesired,
                  pSecurityAttributes, phkResult, pdwDisposition)) {
    return static_cast<LONG>(host::FailureCode());
  }
  if (pszSubKey == nullptr || dwReserved != 0) return ERROR_INVALID_PARAMETER;
  std::size_t made = 0;
  const LONG code = host::OpenAt(hKey, pszSubKey, samDesired, phkResult, &made);
  if (code == ERROR_SUCCESS && pdwDisposition != nullptr) {
    *pdwDisposition = made != 0 ? host::kCreatedNewKey : host::kOpenedExistingKey;
  }
  return code;
}

LONG UT_API RegQueryValueExA(HKEY hKey, LPCSTR pszValueName, LPDWORD pdwReserved, LPDWORD pdwType,
                             LPBYTE pData, LPDWORD pcbData) {
  if (host::Fails(__func__, hKey, pszValueName, pdwReserved, pdwType, pData, pcbData)) {
    return static_cast<LONG>(host::FailureCode());
  }
  if (pdwReserved != nullptr || (pData != nullptr && pcbData == nullptr)) {
    return ERROR_INVALID_PARAMETER;
  }
  // What a failure leaves behind.
  if (pdwType != nullptr) *pdwType = REG_NONE;
  if (pData == nullptr && pcbData != nullptr) *pcbData = 0;
  if (host::NameOf(pszValueName).size() > host::kMaxNameLength) return ERROR_INVALID_PARAMETER;
  return host::OnKey(hKey, KEY_QUERY_VALUE, [&](const host::KeyPointer& key) {
    return host::QueryValue(*key, pszValueName, pdwType, pData, pcbData);
  });
}

LONG UT_API RegSetValueExA(HKEY hKey, LPCSTR pszValueName, DWORD dwReserved, DWORD dwType,
                           const BYTE* pData, DWORD cbData) {
  if (host::Fails(__func__, hKey, pszValueName, dwReserved, dwType, pData, cbData)) {
    return static_cast<LONG>(host::FailureCode());
  }
  const auto name = host::NameOf(pszValueName);
  if (dwReserved != 0 || name.size() > host::kMaxValueNameLength) return ERROR_INVALID_PARAMETER;
  if (pData == nullptr && cbData != 0) return host::kErrorNoAccess;
  return host::OnKey(hKey, KEY_SET_VALUE, [&](const host::KeyPointer& key) -> LONG {
    std::vector<unsigned char> data(pData, pData + cbData);
    if (host::IsText(dwType)) {
      data = host::StoredText(reinterpret_cast<const char*>(pData), cbData);
    }
    host::SetValue(*key, name, dwType, std::move(data));
    return ERROR_SUCCESS;
  });
}

LONG UT_API RegDeleteValueA(HKEY hKey, LPCSTR pszValueName) {
  if (host::Fails(__func__, hKey, pszValueName)) {
    return static_cast<LONG>(host::FailureCode());
  }
  return host::OnKey(hKey, KEY_SET_VALUE, [&](const host::KeyPointer& key) -> LONG {
    const auto erased = key->values.erase(host::FoldName(host::NameOf(pszValueName)));
    return erased != 0 ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND;
  });
}

LONG UT_API RegDeleteKeyA(HKEY hKey, LPCSTR pszSubKey) {
  if (host::Fails(__func__, hKey, pszSubKey)) return static_cast<LONG>(host::FailureCode());
  if (pszSubKey == nullptr) return ERROR_INVALID_PARAMETER;
  return host::DeleteAt(hKey, pszSubKey);
}

// A planned failure changes the result only: the handle is closed, since no caller could do it
// again.
LONG UT_API RegCloseKey(HKEY hKey) {
  const bool fails = host::Fails(__func__, hKey);
  host::Registry& registry = host::state->registry;
  const std::lock_guard lock(registry.mutex);
  if (host::Resolve(registry, hKey).key == nullptr) return ERROR_INVALID_HANDLE;
  registry.handles.erase(hKey);
  return fails ? static_cast<LONG>(host::FailureCode()) : ERROR_SUCCESS;
}
