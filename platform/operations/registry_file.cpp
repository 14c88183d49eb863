#include "registry_file.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <utility>

#include "codepage.h"
#include "conversion.h"

namespace host {
namespace {

constexpr std::string_view kVersion4 = "REGEDIT4";
constexpr std::string_view kVersion5 = "Windows Registry Editor Version 5.00";

// A file with the first line after its version has the second one at its end, so that a file that
// was cut short between two lines can be told from a whole one.
constexpr std::string_view kEndIsMarked = "; The last line is \"; End\".";
constexpr std::string_view kEnd = "\n; End";

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kHexDigits = "0123456789abcdef";
constexpr unsigned kBytesPerLine = 24;

bool IsControl(char byte) { return static_cast<unsigned char>(byte) < 0x20; }

// Whether a text can stand between quotes: no zero, and every lead byte with its trail byte.
bool IsText(std::string_view text) {
  for (std::size_t at = 0, length = 0; at < text.size(); at += length) {
    length = CharacterLength(text, at);
    if (text[at] == 0) return false;
    if (length == 1 && IsLeadByte(static_cast<unsigned char>(text[at]))) return false;
  }
  return true;
}

bool IsKeyName(std::string_view name) {
  return IsText(name) && std::none_of(name.begin(), name.end(), IsControl);
}

bool IsStoredAsText(DWORD type) {
  return type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ;
}

// --- Writing

void AppendQuoted(std::string& out, std::string_view text) {
  out += '"';
  for (std::size_t at = 0, length = 0; at < text.size(); at += length) {
    length = CharacterLength(text, at);
    if (text[at] == '"' || text[at] == '\\') out += '\\';
    out += text.substr(at, length);
  }
  out += '"';
}

void AppendHex(std::string& out, DWORD number, int digits) {
  while (digits-- > 0) out += kHexDigits[(number >> (4 * digits)) & 15];
}

void AppendBytes(std::string& out, const RegistryValue& value) {
  out += "hex";
  if (value.type != REG_BINARY) {
    char number[8];
    const auto end = std::to_chars(number, number + sizeof number, value.type, 16).ptr;
    out.append("(").append(number, end).append(")");
  }
  out += ':';
  for (std::size_t i = 0; i < value.data.size(); ++i) {
    if (i != 0) out += ',';
    if (i != 0 && i % kBytesPerLine == 0) out.append("\\").append(kLineEnd).append("  ");
    AppendHex(out, value.data[i], 2);
  }
}

void AppendData(std::string& out, const RegistryValue& value) {
  const std::string_view text(reinterpret_cast<const char*>(value.data.data()), value.data.size());
  if (value.type == REG_SZ && text.ends_with('\0') && IsText(text.substr(0, text.size() - 1))) {
    AppendQuoted(out, text.substr(0, text.size() - 1));
  } else if (value.type == REG_DWORD && text.size() == sizeof(DWORD)) {
    DWORD number;
    std::memcpy(&number, text.data(), sizeof number);
    out += "dword:";
    AppendHex(out, number, 8);
  } else {
    AppendBytes(out, value);
  }
}

// Refused as soon as it is too large: every key is written with its whole path, which for a deep
// tree takes far more than the tree itself.
void CheckSize(std::string_view content) {
  if (content.size() > kMaxRegistryFileSize) throw RegistryFileError(0, "the file is too large");
}

void AppendKey(std::string& out, const RegistryKey& key, const std::string& parentPath) {
  const std::string path = parentPath.empty() ? key.name : parentPath + '\\' + key.name;
  out.append(kLineEnd).append("[").append(path).append("]").append(kLineEnd);
  CheckSize(out);
  for (const auto& [folded, value] : key.values) {
    if (value.name.empty()) {
      out += '@';
    } else {
      AppendQuoted(out, value.name);
    }
    out += '=';
    AppendData(out, value);
    out += kLineEnd;
    CheckSize(out);
  }
  for (const auto& [folded, sub] : key.keys) AppendKey(out, *sub, path);
}

// --- Reading

// Converts text into the active code page. False if it has a character that isn't there; `text` is
// then what stands before it.
bool ConvertText(std::string& text, const char* encoding) {
  std::string result;
  const bool isWhole =
      Converter(CharsetOf(CodePage()), encoding).Convert(text, result) == text.size();
  text = std::move(result);
  return isWhole;
}

class Reader {
 public:
  explicit Reader(std::string_view content) { Decode(content); }

  std::shared_ptr<RegistryKey> Read() {
    ReadVersion();
    CheckEnd();
    while (at_ < text_.size()) ReadLine();
    return registry_;
  }

 private:
  [[noreturn]] void Refuse(const std::string& reason) const {
    const auto lines = std::count(text_.begin(), text_.begin() + static_cast<long>(at_), '\n');
    throw RegistryFileError(static_cast<unsigned>(lines) + 1, reason);
  }

  // Brings the content into the active code page.
  void Decode(std::string_view content) {
    const bool isUtf16 = content.starts_with("\xFF\xFE");
    const bool isUtf8 = content.starts_with("\xEF\xBB\xBF");
    text_ = content.substr(isUtf16 ? 2 : isUtf8 ? 3 : 0);
    if (!isUtf16 && !isUtf8 && !content.starts_with(kVersion5)) return;
    if (ConvertText(text_, isUtf16 ? "UTF-16LE" : "UTF-8")) return;
    at_ = text_.size();
    Refuse("a character is damaged or not in the active code page");
  }

  bool Accept(std::string_view expected) {
    if (std::string_view(text_).substr(at_, expected.size()) != expected) return false;
    at_ += expected.size();
    return true;
  }

  bool AcceptLineEnd() { return Accept(kLineEnd) || Accept("\n"); }

  void SkipBlanks() {
    while (at_ < text_.size() && (text_[at_] == ' ' || text_[at_] == '\t')) ++at_;
  }

  void RequireLineEnd() {
    SkipBlanks();
    if (!AcceptLineEnd()) Refuse("something follows what the line should hold");
  }

  void ReadVersion() {
    isVersion5_ = Accept(kVersion5);
    if (!isVersion5_ && !Accept(kVersion4)) Refuse("the file is no export of a registry");
    RequireLineEnd();
  }

  void CheckEnd() {
    const auto rest = std::string_view(text_).substr(at_);
    const auto last = rest.substr(0, rest.find_last_not_of(" \t\r\n") + 1);
    const bool isCut = rest.starts_with(kEndIsMarked) && !last.ends_with(kEnd);
    if (!isCut && rest.ends_with('\n')) return;
    at_ = text_.size();
    Refuse("the file ends too early");
  }

  void ReadLine() {
    SkipBlanks();
    if (AcceptLineEnd()) return;
    if (Accept(";")) {
      at_ = LineEnd() + 1;
    } else if (Accept("[")) {
      ReadKey();
    } else {
      ReadValue();
    }
  }

  // Where the line feed stands: there is one, since the file ends with one.
  std::size_t LineEnd() const { return text_.find('\n', at_); }

  void ReadKey() {
    auto line = std::string_view(text_).substr(at_, LineEnd() - at_);
    const auto last = line.find_last_not_of(" \t\r");
    if (last == line.npos || line[last] != ']') Refuse("the key has no closing bracket");
    const auto path = line.substr(0, last);
    if (!IsKeyName(path)) Refuse("the name of the key is no text");
    const auto root = FindKey(registry_, path.substr(0, path.find('\\')), nullptr);
    if (root == nullptr || root == registry_) Refuse("the key stands below no predefined key");
    key_ = FindKey(registry_, path, &keyCount_);
    if (key_ == nullptr) Refuse("the name of the key is too long, or its path too deep");
    if (keyCount_ > kMaxRegistryFileKeys) Refuse("the file has too many keys");
    at_ = LineEnd() + 1;
  }

  void ReadValue() {
    std::string name;
    if (!Accept("@")) {
      if (!Accept("\"")) Refuse("the line is neither a key nor a value nor a comment");
      name = ReadQuoted();
    }
    if (key_ == nullptr) Refuse("the value stands below no key");
    SkipBlanks();
    if (!Accept("=")) Refuse("the name of the value is followed by no =");
    SkipBlanks();
    RegistryValue value = ReadData();
    SetValue(*key_, name, value.type, std::move(value.data));
    RequireLineEnd();
  }

  // The text up to the closing quote; it may go over several lines.
  std::string ReadQuoted() {
    const std::size_t start = at_;
    std::string result;
    for (std::size_t length = 0; !Accept("\""); at_ += length) {
      if (at_ == text_.size()) {
        at_ = start;
        Refuse("the text has no end");
      }
      length = CharacterLength(text_, at_);
      if (length == 1 && Accept("\\") && text_[at_] != '"' && text_[at_] != '\\') {
        Refuse("a backslash stands before a character that needs none");
      }
      result.append(text_, at_, length);
    }
    if (!IsText(result)) Refuse("the text holds a zero or half a character");
    return result;
  }

  RegistryValue ReadData() {
    RegistryValue value;
    if (Accept("\"")) {
      value.type = REG_SZ;
      const std::string text = ReadQuoted();
      value.data.assign(text.c_str(), text.c_str() + text.size() + 1);
    } else if (Accept("dword:")) {
      value.type = REG_DWORD;
      const DWORD number = ReadHex(8);
      value.data.resize(sizeof number);
      std::memcpy(value.data.data(), &number, sizeof number);
    } else if (Accept("hex")) {
      value.type = REG_BINARY;
      if (Accept("(")) {
        value.type = ReadHex(8);
        if (!Accept(")")) Refuse("the number of the type has no closing bracket");
      }
      if (!Accept(":")) Refuse("the type of the value is followed by no colon");
      value.data = ReadBytes();
      if (isVersion5_ && IsStoredAsText(value.type)) Narrow(value.data);
    } else {
      Refuse("the data of the value have an unknown form");
    }
    return value;
  }

  DWORD ReadHex(std::size_t maxDigits) {
    const char* from = text_.data() + at_;
    const char* to = from + std::min(maxDigits, text_.size() - at_);
    DWORD number = 0;
    const auto end = std::from_chars(from, to, number, 16).ptr;
    if (end == from) Refuse("a hexadecimal number is missing");
    at_ += static_cast<std::size_t>(end - from);
    return number;
  }

  // Bytes with a comma between two; a backslash at the end of a line carries on in the next.
  std::vector<unsigned char> ReadBytes() {
    std::vector<unsigned char> bytes;
    SkipToByte();
    if (text_[at_] == '\r' || text_[at_] == '\n') return bytes;
    do {
      SkipToByte();
      bytes.push_back(static_cast<unsigned char>(ReadHex(2)));
      SkipToByte();
    } while (Accept(","));
    return bytes;
  }

  void SkipToByte() {
    SkipBlanks();
    while (Accept("\\")) {
      RequireLineEnd();
      SkipBlanks();
    }
  }

  // Version 5.00 shows the units of a wide text; they are kept in the active code page.
  void Narrow(std::vector<unsigned char>& data) {
    std::string text(data.begin(), data.end());
    if (!ConvertText(text, "UTF-16LE")) {
      Refuse("a character of the value is damaged or not in the active code page");
    }
    data.assign(text.begin(), text.end());
  }

  std::shared_ptr<RegistryKey> registry_ = NewRegistry();
  std::shared_ptr<RegistryKey> key_;  // the one that values go to
  std::size_t keyCount_ = 0;
  bool isVersion5_ = false;
  std::size_t at_ = 0;
  std::string text_;
};

}  // namespace

std::shared_ptr<RegistryKey> ParseRegistry(std::string_view content) {
  CheckSize(content);
  return Reader(content).Read();
}

std::string FormatRegistry(const RegistryKey& registry) {
  std::string out;
  out.append(kVersion4).append(kLineEnd).append(kEndIsMarked).append(kLineEnd);
  for (const auto& [folded, key] : registry.keys) AppendKey(out, *key, "");
  out.append("\r").append(kEnd).append(kLineEnd);
  if (!(*ParseRegistry(out) == registry)) {
    throw RegistryFileError(0, "a name can't be told from its neighbours in the text form");
  }
  return out;
}

RegistryFile::RegistryFile(std::string path) : file_(std::move(path), kMaxRegistryFileSize) {
  try {
    const auto& content = file_.Read();
    auto registry = content ? ParseRegistry(*content) : NewRegistry();
    FormatRegistry(*registry);  // nothing is loaded that couldn't be saved again
    ReplaceRegistry(std::move(registry));
  } catch (const RegistryFileError& error) {
    const std::string line = error.line() == 0 ? "" : std::to_string(error.line()) + ":";
    throw RegistryFileError(error.line(), file_.path() + ":" + line + " " + error.what());
  } catch (const std::runtime_error& error) {
    throw RegistryFileError(0, error.what());
  }
}

void RegistryFile::Save() {
  std::string content;
  try {
    content = FormatRegistry(*CurrentRegistry());
  } catch (const RegistryFileError& error) {
    throw RegistryFileError(0, file_.path() + ": can't be saved: " + error.what());
  }
  try {
    file_.Replace(std::move(content));
  } catch (const std::runtime_error& error) {
    throw RegistryFileError(0, error.what());
  }
}

}  // namespace host
