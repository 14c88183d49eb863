// The bytes of a list, in both forms, and what the operations on lists count and point at.
#include "example.h"
#include "picture.h"

namespace {

void PrintByteList() {
  char list[16];
  utInitMultiAsciiz(list, sizeof list);
  for (LPCSTR text : {"ab", "x", "tan"}) utAppendMultiAsciiz(text, list, sizeof list);

  std::printf("A list of the byte form in a buffer of %zu bytes:\n\n", sizeof list);
  LPCSTR member = list;
  for (; *member != 0; member = utNextAsciiz(member)) {
    example::PrintRows(list, example::Offset(list, member), utStringSize(member, TRUE), "string");
  }
  const unsigned end = example::Offset(list, member);
  example::PrintRows(list, end, 1, "final zero");
  example::PrintRows(list, end + 1, sizeof list - end - 1, "no part of the list");
  std::printf("\nused size %u, full size %u, strings %u\n", utMultiAsciizSize(list, FALSE),
              utMultiAsciizSize(list, TRUE), utMultiAsciizStringCount(list));
}

void PrintWideList() {
  WCHAR list[8];
  utInitMultiAsciiz(list, sizeof list);
  for (LPCWSTR text : {EXAMPLE_WIDE("ab"), EXAMPLE_WIDE("x")})
    utAppendMultiAsciizW(text, list, sizeof list);

  std::printf("\nA list of the W form in a buffer of %zu bytes:\n\n", sizeof list);
  LPCWSTR member = list;
  for (; *member != 0; member = utNextAsciizW(member)) {
    example::PrintRows(list, example::Offset(list, member), utStringSizeW(member, TRUE), "string");
  }
  const unsigned end = example::Offset(list, member);
  example::PrintRows(list, end, sizeof *list, "final zero");
  example::PrintRows(list, end + sizeof *list, sizeof list - end - sizeof *list,
                     "no part of the list");
  std::printf("\nused size %u, full size %u, strings %u\n", utMultiAsciizSizeW(list, FALSE),
              utMultiAsciizSizeW(list, TRUE), utMultiAsciizStringCountW(list));
}

void PrintLists() {
  PrintByteList();
  PrintWideList();
}

}  // namespace

int main(int argc, char** argv) { return example::Run(argc, argv, PrintLists); }
