// Lists of strings, beside the C library's argz vectors and a vector of strings.
#include <argz.h>

#include <cstdlib>
#include <cstring>
#include <random>

#include "bench.h"

namespace {

using namespace bench;

constexpr double kGoal = 0.9;

// An argz vector, freed at its end or when another takes its place.
struct Argz {
  char* data = nullptr;
  std::size_t size = 0;

  ~Argz() { std::free(data); }
  void Clear() {
    std::free(data);
    data = nullptr;
    size = 0;
  }
  std::string_view view() const { return {data, size}; }
};

// The same strings in every shape.
struct Strings {
  std::vector<std::string> items;
  std::vector<const char*> pointers;  // ended by NULL
  std::string flat;                   // with their terminators; its own is the final zero
  Argz argz;

  explicit Strings(std::size_t count) {
    std::mt19937 random(1);
    for (std::size_t i = 0; i < count; ++i) {
      items.push_back(Letters(4 + random() % 16) + std::to_string(random() % 100'000));
      flat += items.back() + '\0';
    }
    for (const auto& item : items) pointers.push_back(item.c_str());
    pointers.push_back(nullptr);
    argz_create(const_cast<char* const*>(pointers.data()), &argz.data, &argz.size);
  }

  // The list in a buffer of its own that takes another string.
  std::string List() const { return flat + std::string(64, '\0'); }
};

void CompareBuild(const Strings& strings, std::size_t count) {
  std::string buffer = strings.List();
  Argz argz;
  std::vector<std::string> vector;
  Compare(
      {"list", "utCopyNextAsciiz", "build a list", count, kGoal},
      [&] {
        LPSTR pCursor = buffer.data();
        auto cbRemaining = static_cast<DWORD>(buffer.size());
        for (const auto& item : strings.items) {
          exports.utCopyNextAsciiz(item.c_str(), &pCursor, &cbRemaining);
        }
        return static_cast<std::size_t>(pCursor - buffer.data());
      },
      Peer{"argz_add",
           [&] {
             argz.Clear();
             for (const auto& item : strings.items) {
               argz_add(&argz.data, &argz.size, item.c_str());
             }
             return argz.size;
           },
           kIsCall},
      Peer{"vector<string>", [&](auto call) {
             vector = {};
             for (const auto& item : strings.items) {
               call([&] { return vector.emplace_back(item.c_str()).size(); });
             }
             return strings.flat.size();
           }});
}

// The obvious walk, which the compiler can't make faster either.
std::size_t WalkBytes(const char* list) {
  const char* end = list;
  while (end[0] != 0 || end[1] != 0) ++end;
  return static_cast<std::size_t>(end + 1 - list);
}

std::size_t WalkStrings(const char* list) {
  const char* next = list;
  while (*next != 0) next += std::strlen(next) + 1;
  return static_cast<std::size_t>(next - list);
}

void CompareWalks(const Strings& strings, std::size_t count) {
  const char* list = strings.flat.c_str();
  const char* argz = strings.argz.data;
  const std::size_t size = strings.argz.size;
  const auto* items = &strings.items;
  Compare(
      {"list", "utMultiAsciizStringCount", "", count, kGoal},
      [=] { return exports.utMultiAsciizStringCount(list); },
      Peer{"argz_count", [=] { return argz_count(argz, size); }, kIsCall});
  const auto getSize = [=] { return exports.utMultiAsciizSize(list, FALSE); };
  Compare({"list", "utMultiAsciizSize", "", count, kGoal}, getSize,
          Peer{"strlen of each", [=] { return WalkStrings(list); }},
          Peer{"vector<string>", [=] {
                 std::size_t sum = 0;
                 for (const auto& item : *items) sum += item.size() + 1;
                 return sum;
               }});
  Compare({"list", "utMultiAsciizSize", "the walk alone", count}, getSize,
          Peer{"byte by byte", [=] { return WalkBytes(list); }});
  Compare(
      {"list", "utNextAsciiz", "through a list", count, kGoal},
      [=] {
        std::size_t sum = 0;
        for (LPCSTR psz = list; *psz != 0; psz = exports.utNextAsciiz(psz)) sum += BYTE(*psz);
        return sum;
      },
      Peer{"argz_next",
           [=] {
             std::size_t sum = 0;
             for (const char* psz = argz; psz != nullptr; psz = argz_next(argz, size, psz)) {
               sum += BYTE(*psz);
             }
             return sum;
           },
           kIsCall},
      Peer{"vector<string>", [=](auto call) {
             std::size_t sum = 0;
             const std::string* end = items->data() + items->size();
             for (const std::string* item = items->data(); item != end;
                  item = call([=] { return item + 1; })) {
               sum += BYTE((*item)[0]);
             }
             return sum;
           }});
}

void CompareScan(const Strings& strings, std::size_t count, const char* input, const char* sought) {
  const char* list = strings.flat.c_str();
  const char* argz = strings.argz.data;
  const std::size_t size = strings.argz.size;
  const auto indexOf = [=](const char* found) { return found == nullptr ? -1 : found - list; };
  Compare(
      {"list", "utScanMultiAsciiz", input, count},
      [=] { return indexOf(exports.utScanMultiAsciiz(sought, list, TRUE)); },
      Peer{"argz_next, strcmp", [=] {
             const char* psz = argz;
             while (psz != nullptr && std::strcmp(psz, sought) != 0) {
               psz = argz_next(argz, size, psz);
             }
             return psz == nullptr ? -1 : psz - argz;
           }});
}

// Every change is taken back in the same piece of work, on all sides.
void CompareChanges(const Strings& strings, std::size_t count) {
  std::string buffer = strings.List();
  LPSTR list = buffer.data();
  const auto size = static_cast<DWORD>(buffer.size());
  const std::size_t used = strings.flat.size();
  Argz argz{static_cast<char*>(std::malloc(used)), used};
  std::memcpy(argz.data, strings.flat.data(), used);
  const char* added = "one string more";

  Compare(
      {"list", "utAppendMultiAsciiz", "one string, and take it back", count},
      [=] {
        exports.utAppendMultiAsciiz(added, list, size);
        list[used] = 0;
        return list[used + 1];
      },
      Peer{"argz_add",
           [&] {
             argz_add(&argz.data, &argz.size, added);
             argz.size = used;
             return argz.data[used + 1];
           },
           kIsCall});
  Compare(
      {"list", "utInsertMultiAsciiz, utRemoveMultiAsciiz", "one string at the front", count, kGoal},
      [=] {
        exports.utInsertMultiAsciiz(added, list, list, size);
        exports.utRemoveMultiAsciiz(list, 1);
        return std::string_view(list, used);
      },
      Peer{"argz_insert, argz_delete",
           [&] {
             argz_insert(&argz.data, &argz.size, argz.data, added);
             argz_delete(&argz.data, &argz.size, argz.data);
             return argz.view();
           },
           kIsCall});
}

void CompareArrays(const Strings& strings, std::size_t count) {
  std::string buffer = strings.List();
  std::vector<const char*> array(count + 1);
  std::vector<char*> argv(count + 1);
  Argz argz;
  Compare(
      {"list", "utArray2MultiAsciiz", "", count, kGoal},
      [&] {
        exports.utArray2MultiAsciiz(strings.pointers.data(), buffer.data(),
                                    static_cast<DWORD>(strings.flat.size() + 1), nullptr);
        return std::string_view(buffer.data(), strings.flat.size());
      },
      Peer{"argz_create",
           [&] {
             argz.Clear();
             argz_create(const_cast<char* const*>(strings.pointers.data()), &argz.data, &argz.size);
             return argz.view();
           },
           kIsCall});
  Compare(
      {"list", "utMultiAsciiz2Array", "", count, kGoal},
      [&] {
        exports.utMultiAsciiz2Array(strings.flat.c_str(), array.data(),
                                    static_cast<DWORD>(array.size() * sizeof array[0]), nullptr);
        return array[count - 1] - array[0];
      },
      Peer{"argz_extract",
           [&] {
             argz_extract(strings.argz.data, strings.argz.size, argv.data());
             return argv[count - 1] - argv[0];
           },
           kIsCall});
}

}  // namespace

void bench::CompareLists() {
  for (const auto count : kCounts) {
    const Strings strings(count);
    CompareBuild(strings, count);
    CompareWalks(strings, count);
    CompareChanges(strings, count);
    CompareArrays(strings, count);
    CompareScan(strings, count, "the last string", strings.items.back().c_str());
    CompareScan(strings, count, "no match", "no such string");
  }
}
