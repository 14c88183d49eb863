#include "program.h"

#include <import_table.h>
#include <strings.h>

#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <list>
#include <memory>

#include "module.h"
#include "program_operations.h"

namespace host {
namespace {

namespace fs = std::filesystem;

// The DLLs that the running program uses, each with the number of its users.
class Libraries {
 public:
  Libraries(const fs::path& program, const ImportResolver& resolve)
      : program_(program), resolve_(resolve) {}

  // Loads a DLL, or counts one more user of it. Throws ModuleError if there is none to load, which
  // then says what was wanted of it.
  const Module& Load(const std::string& name, const std::string& wanted) {
    for (auto& library : loaded_) {
      if (strcasecmp(library.name.c_str(), name.c_str()) != 0) continue;
      ++library.users;
      return *library.module;
    }
    const std::string path = PathOf(name, wanted);
    try {
      return *loaded_.emplace_back(name, std::make_unique<Module>(ReadFile(path), resolve_)).module;
    } catch (const ModuleError& error) {
      throw ModuleError(path + ": " + error.what());
    }
  }

  const Module* Find(HMODULE handle) const {
    for (const auto& library : loaded_) {
      if (library.module->handle() == handle) return library.module.get();
    }
    return nullptr;
  }

  bool Release(HMODULE handle) {
    for (auto library = loaded_.begin(); library != loaded_.end(); ++library) {
      if (library->module->handle() != handle) continue;
      if (--library->users == 0) loaded_.erase(library);
      return true;
    }
    return false;
  }

 private:
  struct Library {
    Library(const std::string& name_, std::unique_ptr<Module> module_)
        : name(name_), module(std::move(module_)) {}

    std::string name;
    std::unique_ptr<Module> module;
    unsigned users = 1;
  };

  // The file beside the program that has this name in whichever case.
  std::string PathOf(const std::string& name, const std::string& wanted) const {
    const fs::path folder = program_.has_parent_path() ? program_.parent_path() : ".";
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder, error)) {
      const std::string found = entry.path().filename();
      if (strcasecmp(found.c_str(), name.c_str()) == 0) return entry.path();
    }
    throw ModuleError(program_.string() + " needs " + wanted + ", and there is no " + name +
                      " in the folder " + folder.string());
  }

  fs::path program_;
  ImportResolver resolve_;
  std::list<Library> loaded_;
};

// What of the running program its operations need.
struct Process {
  Libraries libraries;
  std::jmp_buf end;
  DWORD exitCode = 0;
};

Process* process;

void* FindExport(const Module& library, std::string_view name) {
  if (!name.starts_with('#')) return library.Find(name);
  const auto ordinal = std::strtoul(std::string(name.substr(1)).c_str(), nullptr, 10);
  return library.Find(static_cast<unsigned>(ordinal));
}

void* FindProgramOperation(std::string_view module, std::string_view name) {
#define UT_ENTRY UT_IMPORTABLE
  static const Importable operations[] = {
#include <program_imports.inc>
  };
#undef UT_ENTRY
  return FindIn(operations, module, name);
}

// A program that calls ExitProcess comes back here, past frames that have nothing to release.
DWORD RunToItsEnd(const Module& program) {
  if (setjmp(process->end) == 0) process->exitCode = program.Run();
  return process->exitCode;
}

}  // namespace

DWORD RunProgram(const std::string& path, const ImportResolver& resolve) {
  const auto file = ReadFile(path);
  Process own{Libraries(path, resolve), {}};
  process = &own;
  const auto find = [&](std::string_view module, std::string_view name) {
    if (void* const operation = resolve(module, name)) return operation;
    if (void* const operation = FindProgramOperation(module, name)) return operation;
    const std::string library(module);
    return FindExport(own.libraries.Load(library, library + "!" + std::string(name)), name);
  };
  const Module program(file, find, Module::EntryCalls::kMake, Module::Kind::kProgram);
  return RunToItsEnd(program);
}

}  // namespace host

using host::process;

HMODULE UT_API LoadLibraryA(LPCSTR pszName) {
  try {
    return process->libraries.Load(pszName, pszName).handle();
  } catch (const host::ModuleError& error) {
    std::fprintf(stderr, "LoadLibraryA gives NULL: %s\n", error.what());
    return nullptr;
  }
}

BOOL UT_API FreeLibrary(HMODULE hModule) { return process->libraries.Release(hModule); }

LPVOID UT_API GetProcAddress(HMODULE hModule, LPCSTR pszName) {
  const auto* const library = process->libraries.Find(hModule);
  if (library == nullptr) return nullptr;
  const auto ordinal = reinterpret_cast<uintptr_t>(pszName);
  return ordinal < 0x10000 ? library->Find(static_cast<unsigned>(ordinal))
                           : library->Find(std::string_view(pszName));
}

void UT_API ExitProcess(UINT uExitCode) {
  process->exitCode = uExitCode;
  std::longjmp(process->end, 1);
}

HANDLE UT_API GetStdHandle(DWORD dwStdHandle) {
  if (dwStdHandle == STD_OUTPUT_HANDLE) return stdout;
  if (dwStdHandle == STD_ERROR_HANDLE) return stderr;
  return nullptr;
}

BOOL UT_API WriteFile(HANDLE hFile, LPCVOID pBuffer, DWORD cbToWrite, LPDWORD pcbWritten, LPVOID) {
  if (hFile != stdout && hFile != stderr) return FALSE;
  const auto written = std::fwrite(pBuffer, 1, cbToWrite, static_cast<FILE*>(hFile));
  std::fflush(static_cast<FILE*>(hFile));
  if (pcbWritten != nullptr) *pcbWritten = static_cast<DWORD>(written);
  return written == cbToWrite;
}
