// Private user settings: written, read with defaults, verified and deleted.
#include <vector>

#include "example.h"

namespace {

// In the arguments the section comes first and the product last; in the path the product is above
// the section.
constexpr LPCSTR kProduct = "Viewer";
constexpr LPCSTR kSection = "Window";

void PrintSettings(const char* label) {
  char title[12] = "";  // left alone if the names are too long for a path
  const DWORD length =
      utRegGetPrivateUserString(kSection, "Title", "untitled", title, sizeof title, kProduct);
  std::printf("%s: \"%s\" (%u bytes), width %u, maximized %d\n", label, title, length,
              utRegGetPrivateUserDword(kSection, "Width", 320, kProduct),
              utRegGetPrivateUserBool(kSection, "Maximized", FALSE, kProduct));
}

void PrintAll() {
  char path[64];
  utRegPathBrindlexSoftware(path, sizeof path, kSection, kProduct);
  std::printf("key: %s\n", path);

  // A reader always has a value: its own default where nothing is stored. A writer makes the key.
  PrintSettings("nothing stored");
  utRegWritePrivateUserString(kSection, "Title", "Drawing 1", kProduct);
  utRegWritePrivateUserDword(kSection, "Width", 640, kProduct);
  utRegWritePrivateUserBool(kSection, "Maximized", TRUE, kProduct);
  PrintSettings("stored");

  // A value of another type gives the default, and so does a text that is larger than the buffer:
  // it is not cut.
  utRegWritePrivateUserString(kSection, "Title", "Drawing of the bridge", kProduct);
  utRegWritePrivateUserString(kSection, "Width", "640", kProduct);
  utRegWritePrivateUserString(kSection, "Maximized", "on", kProduct);  // a word for a boolean
  PrintSettings("unsuitable");

  // Bytes of any number: the size first, then the data. Here the result is a code, 0 for success.
  const BYTE places[] = {10, 20, 30};
  utRegWritePrivateUserBinary(kSection, "Places", places, sizeof places, kProduct);
  DWORD type = 0, size = 0;
  if (utRegGetPrivateUserBinary(kSection, "Places", &type, nullptr, &size, kProduct) == 0) {
    std::vector<BYTE> data(size);
    utRegGetPrivateUserBinary(kSection, "Places", &type, data.data(), &size, kProduct);
    std::printf("Places: %zu bytes of type %u\n", data.size(), type);
  }

  // Writing NULL deletes. An empty text is stored like any other.
  utRegWritePrivateUserString(kSection, "Title", "", kProduct);
  utRegWritePrivateUserString(kSection, "Width", nullptr, kProduct);
  PrintSettings("emptied");
  std::printf("Title is there: %d, Width: %d\n",
              utRegVerifyPrivateUserValue(kSection, "Title", kProduct, nullptr),
              utRegVerifyPrivateUserValue(kSection, "Width", kProduct, nullptr));
  const DWORD code = utRegDeletePrivateUserKey(kSection, kProduct);
  std::printf("section deleted, code %u, product is there: %d\n", code,
              utRegVerifyPrivateUserKey(nullptr, kProduct));
}

}  // namespace

int main(int argc, char** argv) { return example::Run(argc, argv, PrintAll); }
