// The platform's operations on strings and blocks that an export calls: recorded once, and made
// again to be timed.
#ifndef BENCH_PLATFORM_H
#define BENCH_PLATFORM_H

#include <string>
#include <vector>

namespace bench {

struct PlatformCall {
  enum Operation { kLength, kCopy, kNext, kBlock } operation;  // kBlock: allocated and freed
  const char* source;
  std::string text = {};  // what stood at `source` then; as long as the block
};

// The calls of one piece of work, each on its own text, which the work may have changed since.
class PlatformCalls {
 public:
  void Start();
  void Stop();
  bool empty() const { return calls_.empty(); }

  void Make();        // all of them again
  void Walk() const;  // the same loop without a call in it

 private:
  std::vector<PlatformCall> calls_;
  std::string target_;  // of all copies, one after the other
};

}  // namespace bench

#endif  // BENCH_PLATFORM_H
