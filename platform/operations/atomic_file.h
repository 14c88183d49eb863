// A file whose content is replaced as a whole.
#ifndef PLATFORM_OPERATIONS_ATOMIC_FILE_H
#define PLATFORM_OPERATIONS_ATOMIC_FILE_H

#include <cstddef>
#include <optional>
#include <string>

namespace host {

// The errors are std::runtime_errors that begin with the path.
class AtomicFile {
 public:
  // Of a larger file no more is read than shows that it is larger.
  AtomicFile(std::string path, std::size_t maxSize) : path_(std::move(path)), maxSize_(maxSize) {}

  const std::string& path() const { return path_; }

  // Reads the file. Nothing if there is none; what is no regular file is refused.
  const std::optional<std::string>& Read();

  // Writes a new file beside the old one and renames it over that, so that a crash leaves one of
  // the two and never a part. A file that another process changed since it was read or replaced
  // here is refused, so that no update is lost; replacing goes on one by one in a folder.
  //
  // The new file has the mode of the old one, and its owner and group as far as the process may
  // give them; it has no access lists, and further hard links keep the old content. At a symbolic
  // link the file that it leads to is replaced. On an error the old file stays, or the new one if
  // only its place in the folder is not known to be on the disk. What a killed process left is
  // cleared away by the next one that replaces a file in that folder.
  void Replace(std::string content);

 private:
  std::string path_;
  std::size_t maxSize_;
  std::optional<std::string> content_;  // as last read or written
};

}  // namespace host

#endif  // PLATFORM_OPERATIONS_ATOMIC_FILE_H
