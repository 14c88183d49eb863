// Calls on different data from several threads at once: what a checker of threads watches.
#include <gtest/gtest.h>
#include <tavkit.h>

#include <thread>

#include "support/forms.h"

namespace {

constexpr char kMarks[] = "abcd";  // one for each thread, in all that it works on
constexpr int kTurns = 20;

template <class Form>
std::string WorkOnTexts(char mark) {
  using Char = typename Form::Char;
  Char block[256] = {}, server[16], resource[16], path[16];
  const auto name = test::Text<Form>(std::string("\\\\srv") + mark + "\\res\\p" + mark);
  Form::BreakUNCName(name.c_str(), server, sizeof server, resource, sizeof resource, path,
                     sizeof path);
  for (const auto* part : {server, resource, path}) {
    Form::AppendMultiAsciiz(part, block, sizeof block);
    Form::InsertMultiAsciiz(part, block, block, sizeof block);
  }
  Form::RemoveMultiAsciiz(block, 1);
  Form::FindChar(Form::NextAsciiz(block), mark)[0] = '-';
  Form::BuildUNCName(block + 40, 80, Form::CharNull(block), block, path);
  Form::ConvertServerName(block + 80, 0);
  return {block, block + sizeof block / sizeof(Char)};
}

std::string WorkOnSettings(char mark) {
  const char section[] = {mark, 0};
  char text[16] = {}, digits[] = {mark, '0', mark, 0}, name[32] = {};
  utRegWritePrivateUserString(section, "name", section, "Threads");
  utRegWritePrivateUserDword(section, "number", utAtoX(digits), "Threads");
  utRegGetPrivateUserString(section, "name", "", text, sizeof text, "Threads");
  const DWORD number = utRegGetPrivateUserDword(section, "number", 0, "Threads");
  utRegDeletePrivateUserKey(section, "Threads");
  utDayOfWeekName(name, sizeof name, static_cast<WORD>(mark % 7), 0);
  return text + std::to_string(number) + name;
}

std::string WorkOnBlocks(char mark) {
  char remote[] = {mark, 'r', 0};
  const NETRESOURCEA source = {1, 2, 3, 4, nullptr, remote, remote, nullptr};
  const HXBUF hXBuf = utXBufCreate(128, nullptr);
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
  std::vector<std::thread> threads;
  bool ok[sizeof kMarks] = {};
  for (int i = 0; kMarks[i] != 0; ++i) {
    threads.emplace_back([&good = ok[i], mark = kMarks[i], expected = Work(kMarks[i])] {
      good = true;
      for (int turn = 0; turn < kTurns; ++turn) good &= Work(mark) == expected;
    });
  }
  for (auto& thread : threads) thread.join();
  for (std::size_t i = 0; i < threads.size(); ++i) EXPECT_TRUE(ok[i]) << kMarks[i];
}

}  // namespace
