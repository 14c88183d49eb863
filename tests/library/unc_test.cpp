// Paths, UNC names and server names, byte and wide forms by one text, beside obvious models.
#include <codepage.h>
#include <tavkit.h>

#include "support/choices.h"
#include "support/form_test.h"

namespace {

using Part = const char*;  // of a name; may be NULL
using test::Bytes, test::CallText, test::Over, test::Pattern, test::SameBytes;

std::string WithoutLead(const std::string& text) {
  return text.substr(std::min(text.find_first_not_of('\\'), text.size()));
}

// What the rules say of a name. The separators count from its start, 0 for none.
struct Parsed {
  bool isUnc = false;
  std::string parts[3];
  std::size_t separators[2] = {};
};

Parsed Parse(const std::string& name) {
  Parsed parsed;
  auto rest = WithoutLead(name);
  parsed.isUnc = name.size() - rest.size() == 2;
  if (!parsed.isUnc) return parsed;
  for (int i = 0; i < 2; ++i) {
    parsed.parts[i] = rest.substr(0, rest.find('\\'));
    rest = rest.substr(parsed.parts[i].size());
    if (rest.empty()) return parsed;
    parsed.separators[i] = name.size() - rest.size();
    rest = WithoutLead(rest);
  }
  parsed.parts[2] = rest;
  return parsed;
}

DWORD Bits(bool hasServer, bool hasResource, bool hasPath) {
  return UT_UNC_SERVER * hasServer | UT_UNC_RESOURCE * hasResource | UT_UNC_PATH * hasPath;
}

template <class F>
struct Checks : test::GuardedBlock<F> {
  using typename test::GuardedBlock<F>::Char;
  using typename test::GuardedBlock<F>::String;
  using test::GuardedBlock<F>::kUnit;

  // All texts of backslashes, a letter, and the lead byte of double-byte characters.
  static std::vector<std::string> Texts(std::size_t maxLength) {
    std::vector<std::string> texts = {""};
    for (std::size_t i = 0; texts[i].size() < maxLength; ++i) {
      for (const char letter : {'\\', 'a', '\x83'}) texts.push_back(texts[i] + letter);
    }
    return texts;
  }
  static Bytes BytesOf(const std::string& text) { return test::BytesOf(test::Text<F>(text)); }

  // A part as an argument, kept alive by the test.
  const Char* Argument(int index, Part part) {
    if (part == nullptr) return nullptr;
    return (arguments_[index] = test::Text<F>(part)).c_str();
  }

  // Makes a call for every size about the needed one, and with huge sizes where the name fits. What
  // doesn't fit, or is refused for another reason, leaves the empty string.
  template <class Call>
  void CheckEverySize(DWORD needed, bool isAccepted, const std::string& text, const Call& call) {
    for (DWORD size = 0; size <= needed + 2; ++size) {
      const bool stands = size >= needed && isAccepted;
      const auto stored = size < this->kUnit ? Bytes{} : BytesOf(stands ? text : "");
      const DWORD cbHuge = size % 2 == 0 ? UT_SIZE_UNCHECKED : 0x80000000;
      for (const DWORD cbOut : {size, size >= needed ? cbHuge : size}) {
        EXPECT_EQ(call(this->Place(Pattern(size)), cbOut), stands) << cbOut;
        EXPECT_TRUE(this->Contains(Over(Pattern(size), stored)))
            << testing::PrintToString(text) << " into " << cbOut << " bytes";
      }
    }
    test::GuardedBuffer front(needed, test::Guard::kInFront);
    EXPECT_EQ(call(front.template As<Char>(), needed), isAccepted);
  }

  // What a part leaves in a buffer that it is cut to. A whole name comes with a second zero.
  static Bytes Cut(const std::string& text, DWORD size, std::size_t zeros = 1) {
    if (size < kUnit) return Pattern(size);
    auto bytes = test::BytesOf(test::Text<F>(text.substr(0, size / kUnit - 1)), zeros);
    bytes.resize(std::min<std::size_t>(bytes.size(), size / kUnit * kUnit));
    return Over(Pattern(size), bytes);
  }

  // The parts of a name, each cut to a buffer of its own, and unchecked where all fits.
  void CheckCuts(const std::string& name, DWORD size1, DWORD size2, DWORD size3) {
    const auto expected = Parse(name);
    const auto [first, second] = expected.separators;
    const auto* psz = Argument(0, name.c_str());
    const auto size = [&](test::GuardedBuffer& buffer) {
      return buffer.size() >= (name.size() + 2) * kUnit ? UT_SIZE_UNCHECKED : buffer.size();
    };
    test::GuardedBuffer server(size1), resource(size2), path(size3);
    F::BreakUNCName(psz, server.As<Char>(), size(server), resource.As<Char>(), size(resource),
                    path.As<Char>(), size(path));
    SCOPED_TRACE(CallText<F>("BreakUNCName and Extract...", name, size1, size2, size3));
    EXPECT_TRUE(SameBytes(server.Bytes(), Cut(expected.parts[0], size1)));
    EXPECT_TRUE(SameBytes(resource.Bytes(), Cut(expected.parts[1], size2)));
    EXPECT_TRUE(SameBytes(path.Bytes(), Cut(expected.parts[2], size3)));
    server.Refill();
    resource.Refill();
    const bool isCut1 = expected.isUnc && size1 >= kUnit, isCut2 = first != 0 && size2 >= kUnit;
    EXPECT_EQ(F::ExtractServer(psz, server.As<Char>(), size(server)), isCut1);
    EXPECT_EQ(F::ExtractServerResource(psz, resource.As<Char>(), size(resource)), isCut2);
    const auto whole1 = first == 0 ? Cut(name, size1, 2) : Cut(name.substr(0, first), size1);
    const auto whole2 = second == 0 ? Cut(name, size2, 2) : Cut(name.substr(0, second), size2);
    EXPECT_TRUE(SameBytes(server.Bytes(), isCut1 ? whole1 : Pattern(size1)));
    EXPECT_TRUE(SameBytes(resource.Bytes(), isCut2 ? whole2 : Pattern(size2)));
  }

  // The parts of a name, copied to any places of the block that holds the name. Where they begin
  // and how long they are is told from the name as it was; the copies then go one after another.
  void CheckOverlap(test::Choices& choices, const std::string& name) {
    const auto parsed = Parse(name);
    auto units = test::Text<F>(name) + String(4, Char{});
    Char* psz = this->Place(test::BytesOf(units, 0));
    std::size_t to[3], sizes[3];
    for (std::size_t i = 0, from = name.find_first_not_of('\\'); i < 3; ++i) {
      to[i] = choices.Below(units.size());
      sizes[i] = choices.Below(units.size() - to[i] + 1);
      if (i != 0) from = name.find_first_not_of('\\', parsed.separators[i - 1]);
      const auto length = std::min(parsed.parts[i].size(), sizes[i] - 1);
      if (sizes[i] == 0) continue;
      if (length != 0) units.replace(to[i], length, String(units, from, length));
      units[to[i] + length] = 0;
    }
    F::BreakUNCName(psz, psz + to[0], sizes[0] * kUnit, psz + to[1], sizes[1] * kUnit, psz + to[2],
                    sizes[2] * kUnit);
    EXPECT_TRUE(this->Contains(test::BytesOf(units, 0)))
        << CallText<F>("BreakUNCName", name, "at", to, "sizes", sizes);
  }

  void CheckParse(const std::string& name) {
    const auto expected = Parse(name);
    const auto& [server, resource, path] = expected.parts;
    const DWORD bits = Bits(!server.empty(), !resource.empty(), !path.empty());
    auto bytes = this->BytesOf(name);
    if (name.size() % 2 != 0) bytes.push_back(test::kPattern);  // from an odd address on
    Char* psz = this->Place(bytes);
    Char out[3][40];
    constexpr DWORD kSize = sizeof out[0];
    EXPECT_EQ(F::CheckUNCName(psz), bits);
    EXPECT_EQ(F::BreakUNCName(psz, out[0], kSize, out[1], kSize, out[2], UT_SIZE_UNCHECKED), bits);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(out[i], test::Text<F>(expected.parts[i]));

    const auto [first, second] = expected.separators;
    Char* found[] = {psz + 1, psz + 1, psz + 1};
    EXPECT_EQ(F::SearchUNCName(psz, &found[0], &found[1], &found[2]),
              Bits(expected.isUnc, first != 0, second != 0));
    EXPECT_EQ(found[0], expected.isUnc ? psz : nullptr);
    EXPECT_EQ(found[1], first == 0 ? nullptr : psz + first);
    EXPECT_EQ(found[2], second == 0 ? nullptr : psz + second);
    // The stores follow each other in the order of the arguments.
    EXPECT_EQ(F::SearchUNCName(psz, &found[0], &found[0], nullptr) != 0, expected.isUnc);
    EXPECT_EQ(found[0], found[1]);
    EXPECT_EQ(F::SearchUNCName(psz, &found[1], &found[1], &found[1]) != 0, expected.isUnc);
    EXPECT_EQ(found[1], found[2]);

    out[0][0] = out[1][0] = out[0][1] = out[1][1] = 0;
    EXPECT_EQ(F::ExtractServer(psz, out[0], kSize), expected.isUnc);
    EXPECT_EQ(F::ExtractServerResource(psz, out[1], kSize), first != 0);
    const std::string whole = expected.isUnc ? name : "";
    EXPECT_EQ(out[0], test::Text<F>(first == 0 ? whole : name.substr(0, first)));
    EXPECT_EQ(out[1], test::Text<F>(first == 0 ? "" : second == 0 ? name : name.substr(0, second)));
    EXPECT_TRUE(this->Contains(bytes));
  }

  // The outcome of appending a component. A lead byte takes the byte that follows it along.
  static std::string Appended(std::string path, Part component) {
    bool endsInSeparator = false;
    for (std::size_t i = 0; i < path.size(); ++i) {
      endsInSeparator = path[i] == '\\';
      if (!F::kIsWide && host::IsLeadByte(path[i])) ++i;
    }
    if (!endsInSeparator) path += '\\';
    return path + WithoutLead(component == nullptr ? "" : component);
  }

  void CheckAppend(const std::string& path, Part component) {
    const auto expected = this->BytesOf(Appended(path, component));
    const auto before = Over(Pattern(expected.size()), this->BytesOf(path));
    SCOPED_TRACE(CallText<F>("AppendPathComponent", path, component));
    F::AppendPathComponent(this->Place(before), this->Argument(0, component));
    EXPECT_TRUE(this->Contains(expected));
    test::GuardedBuffer front(before, test::Guard::kInFront);
    F::AppendPathComponent(front.template As<typename F::Char>(), this->Argument(0, component));
    EXPECT_TRUE(SameBytes(front.Bytes(), expected));
  }

  void CheckBuild(Part server, Part resource, Part path) {
    const bool hasServer = server != nullptr && *server != 0;
    std::string name = hasServer ? "\\\\" + WithoutLead(server) : "";
    DWORD needed = name.size();
    for (const Part part : {resource, path}) {
      if (part == nullptr) continue;
      needed += WithoutLead(part).size() + 1;
      name = Appended(name, part);
    }
    needed = std::max((needed + (needed != 0)) * this->kUnit, this->kUnit);
    SCOPED_TRACE(CallText<F>("BuildUNCName", server, resource, path));
    this->CheckEverySize(needed, true, name, [&](auto* out, DWORD cbOut) {
      return F::BuildUNCName(out, cbOut, this->Argument(0, server), this->Argument(1, resource),
                             this->Argument(2, path));
    });
  }

  void CheckServerName(Part server, INT nForm) {
    const std::string given = server == nullptr ? "" : server;
    const bool isUnc = nForm == UT_SERVERNAME_UNC;
    const std::string name = (isUnc ? "\\\\" : "") + WithoutLead(given);
    const DWORD needed = (given.size() + (isUnc ? 3 : 1)) * this->kUnit;
    SCOPED_TRACE(CallText<F>("ServerName", server, nForm));
    this->CheckEverySize(needed, server != nullptr, name, [&](auto* out, DWORD cbOut) {
      return F::ServerName(this->Argument(0, server), nForm, out, cbOut);
    });
  }

  void CheckConvert(const std::string& name, INT nForm) {
    const bool isUnc = nForm == UT_SERVERNAME_UNC;
    constexpr std::size_t kLongest = 63, kPrefix = 2;
    auto expected = (isUnc ? "\\\\" : "") + WithoutLead(name);
    if (name.size() > kLongest - isUnc * kPrefix) expected = "";
    // Nothing past the new terminator is written, so the old characters show there.
    const auto after = this->BytesOf(expected);
    const auto before = Over(Pattern(after.size()), this->BytesOf(name));
    F::ConvertServerName(this->Place(before), nForm);
    EXPECT_TRUE(this->Contains(Over(before, after)))
        << CallText<F>("ConvertServerName", name, nForm);
  }

  void CheckChosen(test::Choices& choices) {
    host::SetCodePage(choices.Of<unsigned>({1252, 932, 936}));
    const auto any = static_cast<char>(1 + choices.Below(255));
    const std::vector<char> letters = {'\\', '\\', 'a', '\x83', '\xDC', any};
    const std::string texts[] = {choices.Text(letters, 12), choices.Text(letters, 6),
                                 choices.Text(letters, 6)};
    Part parts[3];
    for (int i = 0; i < 3; ++i) parts[i] = choices.Below(8) != 0 ? texts[i].c_str() : nullptr;
    const INT nForm = choices.Of<INT>({UT_SERVERNAME_UNC, 0, 2, -1, 0x10001});
    const std::string name = "\\\\" + texts[0];
    const auto size = [&] { return choices.Below(40); };
    const unsigned check = choices.Below(7);
    if (check == 0) CheckParse(name);
    if (check == 1) CheckCuts(name, size(), size(), size());
    if (check == 2) CheckOverlap(choices, name);
    if (check == 3) CheckAppend(texts[0], parts[1]);
    if (check == 4) CheckBuild(parts[0], parts[1], parts[2]);
    if (check == 5) CheckServerName(parts[0], nForm);
    if (check == 6) CheckConvert(texts[0] + std::string(choices.Below(70), 'n'), nForm);
  }

 private:
  String arguments_[3];
};

PROPERTY(Unc, AgreesWithTheModel, 6000) {
  choices.Below(3) != 0 ? Checks<test::ByteForm>().CheckChosen(choices)
                        : Checks<test::WideForm>().CheckChosen(choices);
}

template <class F>
class UncTest : public testing::Test, protected Checks<F> {
  void SetUp() override { host::SetCodePage(932); }
};
TYPED_TEST_SUITE(UncTest, test::Forms, test::FormNames);

TYPED_TEST(UncTest, ParseEveryShortName) {
  auto names = this->Texts(8);
  names.insert(names.end(), {"\\\\server\\share\\\\dir\\\\sub\\\\", "\\\\server/share", "c:\\x"});
  for (const auto& name : names) {
    SCOPED_TRACE(testing::PrintToString(name));
    this->CheckParse(name);
  }
}

TYPED_TEST(UncTest, AnswerNullAndWhatIsNoName) {
  using F = TypeParam;
  const auto* psz = this->Argument(0, "\\\\server\\share\\path");
  EXPECT_EQ(F::SearchUNCName(psz, nullptr, nullptr, nullptr), Bits(true, true, true));
  auto* mark = this->Place(Pattern(8));
  auto* found = mark;
  EXPECT_EQ(F::SearchUNCName(nullptr, &found, &found, &found), 0u);
  EXPECT_EQ(found, mark);
  EXPECT_EQ(F::BreakUNCName(nullptr, mark, 8, mark, 8, mark, 8), 0u);
  EXPECT_EQ(F::CheckUNCName(nullptr), 0u);
  EXPECT_EQ(F::ExtractServer(psz, nullptr, UT_SIZE_UNCHECKED), 0);
  EXPECT_EQ(F::ExtractServerResource(psz, nullptr, UT_SIZE_UNCHECKED), 0);
  for (const auto* none : {psz + 1, psz + 2, static_cast<decltype(psz)>(nullptr)}) {
    EXPECT_EQ(F::ExtractServer(none, mark, 8), 0);
    EXPECT_EQ(F::ExtractServerResource(none, mark, 8), 0);
  }
  EXPECT_EQ(F::BuildUNCName(nullptr, UT_SIZE_UNCHECKED, nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(F::ServerName(psz, UT_SERVERNAME_UNC, nullptr, UT_SIZE_UNCHECKED), 0);
  F::AppendPathComponent(nullptr, nullptr);
  EXPECT_TRUE(this->Contains(Pattern(8)));
  typename F::Char self[8] = {'a', 'b', 0};
  F::AppendPathComponent(self, self);  // which by then ends with a backslash
  EXPECT_EQ(self, test::Text<F>("ab\\ab\\"));
}

}  // namespace
