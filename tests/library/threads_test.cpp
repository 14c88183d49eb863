// Calls on different data from several threads at once: what a checker of threads watches.
#include <gtest/gtest.h>
#include <host.h>
#include <tavkit.h>

#include <thread>

#include "support/forms.h"

namespace {

constexpr char kMarks[] = "abcd";  // one for each thread, in all that it works on
constexpr int kTurns = 40;

// A text on the stack of a thread. The library reads whole aligned blocks of 16 bytes, so the
// blocks of a text hold nothing else: on the heap they could hold what another thread writes.
template <class Char, std::size_t kSize>
struct alignas(16) Block {
  Char units[kSize] = {};
  static_assert(sizeof(Char[kSize]) % 16 == 0);
  operator Char*() { return units; }
};

template <class Form>
std::string WorkOnTexts(char mark) {
  using Char = typename Form::Char;
  Block<Char, 256> block;
  Block<Char, 16> name, server, resource, path;
  const auto text = test::Text<Form>(std::string("\\\\srv") + mark + "\\res\\p" + mark);
  std::copy(text.begin(), text.end(), name.units);
  Form::BreakUNCName(name, server, sizeof server, resource, sizeof resource, path, sizeof path);
  for (const auto* part : {server.units, resource.units, path.units}) {
    Form::AppendMultiAsciiz(part, block, sizeof block);
    Form::InsertMultiAsciiz(part, block, block, sizeof block);
  }
  Form::RemoveMultiAsciiz(block, 1);
  Form::FindChar(Form::NextAsciiz(block), mark)[0] = '-';
  Form::BuildUNCName(block + 40, 80, Form::CharNull(block), block, path);
  Form::ConvertServerName(server, UT_SERVERNAME_UNC);
  std::string result(block.units, block.units + 256);
  return result.append(server.units, server.units + 16);
}

std::string WorkOnSettings(char mark) {
  Block<char, 16> section = {{mark}}, text, digits = {{mark, '0', mark}};
  Block<char, 32> name;
  utRegWritePrivateUserString(section, "name", section, "Threads");
  utRegWritePrivateUserDword(section, "number", utAtoX(digits), "Threads");
  utRegWritePrivateUserString(section, "flag", mark % 2 != 0 ? "yes" : "no", "Threads");
  utRegGetPrivateUserString(section, "name", "", text, sizeof text, "Threads");
  const DWORD number = utRegGetPrivateUserDword(section, "number", 0, "Threads");
  const WORD flag = utRegGetPrivateUserBool(section, "flag", 2, "Threads");
  utRegDeletePrivateUserKey(section, "Threads");
  utDayOfWeekName(name, sizeof name, static_cast<WORD>(mark % 7), 0);
  return text.units + std::to_string(number) + std::to_string(flag) + name.units;
}

std::string WorkOnBlocks(char mark) {
  Block<char, 16> remote = {{mark, 'r'}};
  Block<BYTE, 128> buffer;
  const NETRESOURCEA source = {1, 2, 3, 4, nullptr, remote, remote, nullptr};
  const HXBUF hXBuf = utXBufCreate(sizeof buffer, buffer);
  void* copy = nullptr;
  utXBufCopyStringTo(hXBuf, UT_XBUF_BACK, remote, &copy);
  utCopyNETRESOURCE_XBuffer(&source, hXBuf, UT_NR_ALL, nullptr);
  std::string result = static_cast<char*>(copy);
  result += static_cast<NETRESOURCEA*>(utXBufGetBlock(hXBuf, UT_XBUF_BLOCK_FRONT))->lpComment;
  utXBufDestroy(hXBuf);
  FILETIME time = {static_cast<DWORD>(mark), 30000000};
  utFileTimeAddMilliseconds(&time, 86400000);
  SYSTEMTIME fields = {};
  utFileTimeToSystemTime(&time, &fields, 0);
  return result + std::to_string(time.dwLowDateTime) + std::to_string(fields.wMilliseconds);
}

std::string Work(char mark) {
  return WorkOnTexts<test::ByteForm>(mark) + WorkOnTexts<test::WideForm>(mark) +
         WorkOnSettings(mark) + WorkOnBlocks(mark);
}

TEST(Threads, GetWhatEachWouldGetAlone) {
  std::vector<std::string> expected;
  for (int i = 0; kMarks[i] != 0; ++i) expected.push_back(Work(kMarks[i]));
  std::vector<std::thread> threads;
  // Each lets the others go on at every operation, so that what they share by mistake shows.
  host::ShowCalls([](const host::Call&) { std::this_thread::yield(); });
  std::vector<int> mistakes(expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    threads.emplace_back([&, i] {
      int count = 0;
      for (int turn = 0; turn < kTurns; ++turn) count += Work(kMarks[i]) != expected[i];
      mistakes[i] = count;
    });
  }
  for (auto& thread : threads) thread.join();
  for (std::size_t i = 0; i < threads.size(); ++i) EXPECT_EQ(mistakes[i], 0) << kMarks[i];
}

}  // namespace
