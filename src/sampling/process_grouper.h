// Decides for each process whom it belongs to: the app or tool at the top of its chain of parents.
//
// A group's key is the stable name under which history, ledgers and rules keep it; its forms must
// not change. Sampling thread only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "base/hash_map.h"
#include "base/shared_text.h"
#include "frame/app_info.h"
#include "frame/group_identity.h"
#include "frame/process_sample.h"
#include "sampling/pid_index.h"

namespace embrix {

// The answer for one process table. An identity is held once, however many processes share it.
class ProcessGroups {
 public:
  // Number of processes; each has an identity.
  std::size_t size() const { return identityOfSample_.size(); }

  // Whom the process at that place of the table belongs to.
  const GroupIdentity& identity(std::size_t sample) const {
    return identities_[identityOfSample_[sample]];
  }

  // The number of that identity's key: two processes have the same number exactly if their keys
  // are equal. Below keyCount(), counted from 0 in the order in which the table first names a key.
  std::size_t keyNumber(std::size_t sample) const {
    return keyNumberOfIdentity_[identityOfSample_[sample]];
  }
  std::size_t keyCount() const { return keyNumbers_.size(); }

  // Whom the process with that pid belongs to; null when the table does not have it.
  const GroupIdentity* find(std::int32_t pid) const;

 private:
  friend class ProcessGrouper;

  void begin(std::size_t samples);
  GroupIdentity& add();

  PIDIndex index_;
  std::vector<std::uint32_t> identityOfSample_;
  // The first count_ are of this table; those beyond keep their storage for the next.
  std::vector<GroupIdentity> identities_;
  std::size_t count_ = 0;
  std::vector<std::uint32_t> keyNumberOfIdentity_;
  HashMap<SharedText, std::uint32_t> keyNumbers_;
};

class ProcessGrouper {
 public:
  // The application that a process is an executable of, absent for none. Asked about the tops of
  // chains only.
  using App = std::function<std::optional<AppInfo>(const ProcessSample&)>;
  // The pid that the platform holds responsible for that pid, absent when it tells none.
  using Responsible = std::function<std::optional<std::int32_t>(std::int32_t)>;

  ProcessGrouper(App app, Responsible responsible);

  // Groups a process table. Should a pid stand there twice, its first row speaks for both. The
  // answer is the grouper's own and valid until the next call; its storage is used again, so that
  // a table like the one before costs no allocation.
  const ProcessGroups& groups(const std::vector<ProcessSample>& samples);

 private:
  using Samples = std::vector<ProcessSample>;
  // Places in the table, or one of the negative marks below. Only for the length of one call.
  using Place = std::int32_t;

  // What to show for a process name, and the group key that goes with it.
  struct Friendly {
    SharedText name;
    SharedText key;  // empty when the name is the process's own
  };

  // What is worked out once for a place of the table.
  struct Known {
    Place root;                       // top of the chain of parents
    std::int32_t identityOfChildren;  // of the processes that have this place as root
    std::int32_t identityOfTop;       // of a group that has this process at its top
  };

  Place placeOf(std::int32_t pid) const;
  Place rootOf(const Samples& samples, Place place);
  std::int32_t identityForRoot(const Samples& samples, Place root);
  Place responsibleRoot(const Samples& samples, Place root);
  std::int32_t makeIdentity(const ProcessSample& top, std::optional<AppInfo> app);
  Friendly friendly(const SharedText& processName);

  App app_;
  Responsible responsible_;
  ProcessGroups groups_;
  std::vector<Known> known_;
  std::vector<Place> chain_;
  HashMap<SharedText, Friendly> derived_;
};

}  // namespace embrix
