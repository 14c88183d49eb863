// Lists of strings, beside the C library's argz vectors and a vector of strings.
#include <argz.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <random>

#include "exports.h"
#include "measure.h"

namespace {

using namespace bench;

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

  // The list in a buffer of its own, with room for another string.
  std::string List() const { return flat + std::string(64, '\0'); }
};

void CompareBuild(const Strings& strings, std::size_t count) {
  std::string buffer = strings.List();
  Argz argz;
  std::vector<std::string> vector;
  Compare({"utCopyNextAsciiz", "build a list", count, 0.7}, Ours{[&] {
            LPSTR pCursor = buffer.data();
            auto cbRemaining = static_cast<DWORD>(buffer.size());
            for (const auto& item : strings.items) {
              exports.utCopyNextAsciiz(item.c_str(), &pCursor, &cbRemaining);
            }
            return std::string_view(buffer.data(), pCursor);
          }},
          Peer{"argz_add",
               [&] {
                 argz.Clear();
                 for (const auto& item : strings.items) {
                   argz_add(&argz.data, &argz.size, item.c_str());
                 }
                 return argz.view();
               }},
          Peer{"vector<string>", [&] {
                 vector = {};
                 for (const auto& item : strings.items) vector.emplace_back(item.c_str());
                 return &std::as_const(vector);
               }});
}

// The obvious walk, which the compiler can't make faster either.
std::size_t WalkBytes(const char* list) {
  const char* end = list;
  while (end[0] != 0 || end[1] != 0) ++end;
  return static_cast<std::size_t>(end + 1 - list);
}

void CompareWalks(const Strings& strings, std::size_t count) {
  const char* list = strings.flat.c_str();
  const char* argz = strings.argz.data;
  const std::size_t size = strings.argz.size;
  Compare({"utMultiAsciizStringCount", "", count, 1.0},
          Ours{[=] { return exports.utMultiAsciizStringCount(list); }},
          Peer{"argz_count", [=] { return argz_count(argz, size); }});
  Compare({"utMultiAsciizSize", "", count, 1.0},
          Ours{[=] { return exports.utMultiAsciizSize(list, FALSE); }},
          Peer{"strlen of each",
               [=] {
                 const char* next = list;
                 while (*next != 0) next += std::strlen(next) + 1;
                 return next - list;
               }},
          Peer{"vector<string>", [&] {
                 std::size_t sum = 0;
                 for (const auto& item : strings.items) sum += item.size() + 1;
                 return sum;
               }});
  Compare({"utMultiAsciizSize", "the walk alone", count, count == 1'000 ? 0.1 : 0},
          Ours{[=] { return exports.utMultiAsciizSize(list, FALSE); }},
          Peer{"byte by byte", [=] { return WalkBytes(list); }});
  Compare({"utNextAsciiz", "through a list", count, 1.0}, Ours{[=] {
            std::size_t sum = 0;
            for (LPCSTR psz = list; *psz != 0; psz = exports.utNextAsciiz(psz)) sum += BYTE(*psz);
            return sum;
          }},
          Peer{"argz_next",
               [=] {
                 std::size_t sum = 0;
                 for (const char* psz = argz; psz != nullptr; psz = argz_next(argz, size, psz)) {
                   sum += BYTE(*psz);
                 }
                 return sum;
               }},
          Peer{"vector<string>", [&] {
                 std::size_t sum = 0;
                 for (const auto& item : strings.items) sum += BYTE(item[0]);
                 return sum;
               }});
}

void CompareScan(const Strings& strings, std::size_t count, const char* input, const char* sought) {
  const char* list = strings.flat.c_str();
  const char* argz = strings.argz.data;
  const std::size_t size = strings.argz.size;
  const auto IndexOf = [=](const char* found) { return found == nullptr ? -1 : found - list; };
  Compare({"utScanMultiAsciiz", input, count},
          Ours{[=] { return IndexOf(exports.utScanMultiAsciiz(sought, list, TRUE)); }},
          Peer{"argz_next, strcmp", [=] {
                 const char* psz = argz;
                 while (psz != nullptr && std::strcmp(psz, sought) != 0) {
                   psz = argz_next(argz, size, psz);
                 }
                 return psz == nullptr ? -1 : psz - argz;
               }});
}

// Every change is taken back in the same piece of work, on both sides.
void CompareChanges(const Strings& strings, std::size_t count) {
  std::string buffer = strings.List();
  LPSTR list = buffer.data();
  const auto size = static_cast<DWORD>(buffer.size());
  const std::size_t used = strings.flat.size();
  Argz argz{static_cast<char*>(std::malloc(used)), used};
  std::memcpy(argz.data, strings.flat.data(), used);
  std::vector<std::string> vector = strings.items;
  const char* added = "one string more";

  Compare({"utAppendMultiAsciiz", "one string, and take it back", count}, Ours{[=] {
            exports.utAppendMultiAsciiz(added, list, size);
            list[used] = 0;
            return list[used + 1];
          }},
          Peer{"argz_add", [&] {
                 argz_add(&argz.data, &argz.size, added);
                 argz.size = used;
                 return argz.data[used + 1];
               }});
  Compare({"utAppendMultiAsciiz", "no room", count},
          Ours{[=] { return exports.utAppendMultiAsciiz(added, list, DWORD(used + 1)); }},
          Peer{"strlen of each", [=] {
                 const char* next = list;
                 while (*next != 0) next += std::strlen(next) + 1;
                 return next + std::strlen(added) + 2 <= list + used + 1;
               }});
  Compare({"utInsertMultiAsciiz, utRemoveMultiAsciiz", "one string at the front", count, 1.0},
          Ours{[=] {
            exports.utInsertMultiAsciiz(added, list, list, size);
            exports.utRemoveMultiAsciiz(list, 1);
            return std::string_view(list, used);
          }},
          Peer{"argz_insert, argz_delete", [&] {
                 argz_insert(&argz.data, &argz.size, argz.data, added);
                 argz_delete(&argz.data, &argz.size, argz.data);
                 return argz.view();
               }});
}

void CompareArrays(const Strings& strings, std::size_t count) {
  std::string buffer = strings.List();
  std::vector<const char*> array(count + 1);
  std::vector<char*> argv(count + 1);
  Argz argz;
  Compare({"utArray2MultiAsciiz", "", count, 1.0}, Ours{[&] {
            exports.utArray2MultiAsciiz(strings.pointers.data(), buffer.data(),
                                        DWORD(strings.flat.size() + 1), nullptr);
            return std::string_view(buffer.data(), strings.flat.size());
          }},
          Peer{"argz_create", [&] {
                 argz.Clear();
                 argz_create(const_cast<char* const*>(strings.pointers.data()), &argz.data,
                             &argz.size);
                 return argz.view();
               }});
  Compare({"utMultiAsciiz2Array", "", count, 1.0}, Ours{[&] {
            exports.utMultiAsciiz2Array(strings.flat.c_str(), array.data(),
                                        DWORD(array.size() * sizeof array[0]), nullptr);
            return array[count - 1] - array[0];
          }},
          Peer{"argz_extract", [&] {
                 argz_extract(strings.argz.data, strings.argz.size, argv.data());
                 return argv[count - 1] - argv[0];
               }});
}

template <class Rows>
void ForEachCount(Rows rows) {
  for (const auto count : kCounts) rows(Strings(count), count);
}

TEST_CASE("List: build in one pass, count, size, next") {
  ForEachCount(CompareBuild);
  ForEachCount(CompareWalks);
}

TEST_CASE("List: insert at front, remove, append") { ForEachCount(CompareChanges); }

TEST_CASE("List: to and from arrays") { ForEachCount(CompareArrays); }

TEST_CASE("List: scan") {
  ForEachCount([](const Strings& strings, std::size_t count) {
    CompareScan(strings, count, "the last string", strings.items.back().c_str());
    CompareScan(strings, count, "no match", "no such string");
  });
}

}  // namespace
