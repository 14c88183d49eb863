// MultiAsciiz lists: many strings in one flat block, built in one pass, searched and edited.
#include <vector>

#include "example.h"

namespace {

void PrintList(const char* label, LPCSTR list) {
  std::printf("%s:", label);
  for (LPCSTR member = list; *member != 0; member = utNextAsciiz(member)) {
    std::printf(" %s", member);
  }
  std::printf(" (%u strings, %u bytes)\n", utMultiAsciizStringCount(list),
              utMultiAsciizSize(list, 1));
}

void PrintLists() {
  // The cursor stays at the end of the list. utAppendMultiAsciiz would look for that end each time,
  // which takes ever longer as the list grows. A string that doesn't fit is refused, never cut.
  char list[20];
  LPSTR cursor = list;
  DWORD remaining = sizeof list;
  utCopyNextAsciiz(nullptr, &cursor, &remaining);  // a list even if no string is taken
  for (LPCSTR color : {"red", "green", "blue", "ultramarine"}) {
    const BOOL isTaken = utCopyNextAsciiz(color, &cursor, &remaining);
    std::printf("%-11s taken: %d, cursor at %2u, %2u bytes left\n", color, isTaken,
                example::Offset(list, cursor), remaining);
  }
  PrintList("built", list);

  const LPSTR found = utScanMultiAsciiz("GREEN", list, FALSE);
  std::printf("GREEN in any case: at %u, exactly so: %s\n", example::Offset(list, found),
              utScanMultiAsciiz("GREEN", list, TRUE) != nullptr ? "found" : "not found");

  // An edit moves the members that follow, so an address from before it now means another string.
  utInsertMultiAsciiz("tan", found, list, sizeof list);
  std::printf("inserted: %s stands where green stood\n", found);
  PrintList("full", list);

  // One more doesn't fit until the first string goes.
  BOOL isTaken = utAppendMultiAsciiz("sky", list, sizeof list);
  utRemoveMultiAsciiz(list, 1);
  std::printf("appended: %d, then %d\n", isTaken, utAppendMultiAsciiz("sky", list, sizeof list));
  PrintList("edited", list);

  // One entry more than strings, for the NULL that ends the array. A smaller array would be filled
  // as far as it goes, with the result 1.
  std::vector<LPCSTR> members(utMultiAsciizStringCount(list) + 1);
  DWORD count = 0;
  utMultiAsciiz2Array(list, members.data(), static_cast<DWORD>(members.size() * sizeof(LPCSTR)),
                      &count);
  std::printf("array: %u entries, the last one is %s\n", count, members[count - 1]);

  // And back. The size has to be the true one: all of the buffer is set to zero first.
  char copy[16];
  const BOOL isWhole = utArray2MultiAsciiz(members.data(), copy, sizeof copy, &count);
  std::printf("every string fits %zu bytes: %d, stored: %u\n", sizeof copy, isWhole, count);
  PrintList("copy", copy);
}

}  // namespace

int main(int argc, char** argv) { return example::Run(argc, argv, PrintLists); }
