#include "atomic_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

namespace host {
namespace {

namespace fs = std::filesystem;

// Where the new content is written. One name is enough, since each folder is locked meanwhile.
constexpr const char* kFreshName = ".atomic_file.new";

[[noreturn]] void Fail(const std::string& path, const char* what) {
  throw std::system_error(errno, std::generic_category(), path + ": " + what);
}

void Require(bool done, const std::string& path, const char* otherwise) {
  if (!done) Fail(path, otherwise);
}

// Repeats a call that a signal broke off.
template <class Call>
auto Retry(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() {
    if (number_ >= 0) close(number_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int number() const { return number_; }
  bool IsOpen() const { return number_ >= 0; }

  // False, with errno, at a failure.
  bool Read(std::string& content, std::size_t maxSize) const {
    char block[4096];
    ssize_t count;
    while ((count = Retry([&] { return read(number_, block, sizeof block); })) > 0) {
      content.append(block, static_cast<std::size_t>(count));
      if (content.size() > maxSize) break;
    }
    return count >= 0;
  }

  bool Write(std::string_view content) const {
    while (!content.empty()) {
      const ssize_t count = Retry([&] { return write(number_, content.data(), content.size()); });
      if (count == 0) errno = EIO;
      if (count <= 0) return false;
      content.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
  }

  bool Sync() const {
    return Retry([&] { return fsync(number_); }) == 0;
  }

  bool Lock() const {
    return Retry([&] { return flock(number_, LOCK_EX); }) == 0;
  }

 private:
  int number_;
};

// A file as it was found: its content, and the rights that its successor takes over.
struct Found {
  std::string content;
  struct stat status = {};
};

// Nothing if there is no file.
std::optional<Found> Find(const std::string& path, std::size_t maxSize) {
  // Opening a pipe would wait for its writer.
  const int flags = O_RDONLY | O_NONBLOCK | O_CLOEXEC;
  const Descriptor file(Retry([&] { return open(path.c_str(), flags); }));
  if (!file.IsOpen() && errno == ENOENT) return {};
  Found found;
  Require(file.IsOpen() && fstat(file.number(), &found.status) == 0, path, "can't be opened");
  if (!S_ISREG(found.status.st_mode)) throw std::runtime_error(path + ": is no regular file");
  Require(file.Read(found.content, maxSize), path, "can't be read");
  return found;
}

// Where a chain of symbolic links ends, whether a file is there or not.
fs::path EndOfLinks(fs::path path) {
  constexpr int kMaxLinks = 40;
  char target[PATH_MAX];
  for (int links = 0; links < kMaxLinks; ++links) {
    const ssize_t length = readlink(path.c_str(), target, sizeof target);
    if (length < 0) break;
    path = path.parent_path() / fs::path(target, target + length);
  }
  return path;
}

// Gives a file the owner, the group and the mode of another. Only root may give a file away.
bool TakeOver(const Descriptor& file, const struct stat& status) {
  if (fchown(file.number(), status.st_uid, status.st_gid) != 0 &&
      fchown(file.number(), static_cast<uid_t>(-1), status.st_gid) != 0 && errno != EPERM) {
    return false;
  }
  return fchmod(file.number(), status.st_mode & 0777) == 0;
}

// Writes a new file in a locked folder and renames it; false, with errno, at a failure.
bool WriteAndRename(const Descriptor& folder, const std::string& name, std::string_view content,
                    const struct stat* old) {
  unlinkat(folder.number(), kFreshName, 0);
  const int flags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC;
  const Descriptor file(openat(folder.number(), kFreshName, flags, old == nullptr ? 0666 : 0600));
  if (!file.IsOpen()) return false;
  if (file.Write(content) && (old == nullptr || TakeOver(file, *old)) && file.Sync() &&
      renameat(folder.number(), kFreshName, folder.number(), name.c_str()) == 0) {
    return true;
  }
  const int reason = errno;
  unlinkat(folder.number(), kFreshName, 0);
  errno = reason;
  return false;
}

}  // namespace

const std::optional<std::string>& AtomicFile::Read() {
  auto found = Find(path_, maxSize_);
  content_.reset();
  if (found) content_ = std::move(found->content);
  return content_;
}

void AtomicFile::Replace(std::string content) {
  const fs::path target = EndOfLinks(path_);
  const std::string parent = target.has_parent_path() ? target.parent_path().string() : ".";
  const Descriptor folder(open(parent.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  Require(folder.IsOpen() && folder.Lock(), path_, "can't be saved");
  const auto old = Find(target, maxSize_);
  if (old.has_value() != content_.has_value() || (old && old->content != *content_)) {
    throw std::runtime_error(path_ + ": can't be saved: another process has changed it");
  }
  Require(WriteAndRename(folder, target.filename(), content, old ? &old->status : nullptr), path_,
          "can't be saved");
  content_ = std::move(content);
  // The new name must be on the disk too.
  Require(folder.Sync(), path_, "may not be on the disk");
}

}  // namespace host
