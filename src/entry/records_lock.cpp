#include "entry/records_lock.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "base/path_text.h"

namespace embrix {

RecordsLock::RecordsLock(const std::string& folder) {
  if (folder.empty()) return;
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  const std::string path = PathText::joined(folder, kFileName);
  file_ = Descriptor(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
  if (!file_.isOpen()) return;
  isHeldByAnother_ = ::flock(file_.number(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
}

}  // namespace embrix
