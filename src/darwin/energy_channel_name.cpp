#include "darwin/energy_channel_name.h"

#include <charconv>

namespace embrix {

namespace {

bool isDigit(char character) {
  return character >= '0' && character <= '9';
}

// Takes a name apart from its front.
class Pieces {
 public:
  explicit Pieces(std::string_view rest) : rest_(rest) {}

  bool take(std::string_view literal) {
    if (!rest_.starts_with(literal)) return false;
    rest_.remove_prefix(literal.size());
    return true;
  }

  std::optional<int> takeNumber() {
    std::size_t digits = 0;
    while (digits < rest_.size() && isDigit(rest_[digits])) ++digits;
    if (digits == 0) return std::nullopt;
    int number = 0;
    const auto parsed = std::from_chars(rest_.data(), rest_.data() + digits, number);
    rest_.remove_prefix(digits);
    return parsed.ec == std::errc() ? number : 0;
  }

  // One of E, P, M at the front.
  std::optional<char> takeLevel() {
    if (rest_.empty() || std::string_view("EPM").find(rest_[0]) == std::string_view::npos) {
      return std::nullopt;
    }
    const char level = rest_[0];
    rest_.remove_prefix(1);
    return level;
  }

  // "DIE_1_" at the front, or nothing taken at all.
  int takeDie() {
    Pieces ahead = *this;
    if (!ahead.take("DIE_")) return kNoDie;
    const auto die = ahead.takeNumber();
    if (!die || !ahead.take("_")) return kNoDie;
    *this = ahead;
    return *die;
  }

  bool atEnd() const { return rest_.empty(); }

 private:
  std::string_view rest_;
};

std::optional<ClusterName> clusterOf(Pieces name) {
  const auto level = name.takeLevel();
  if (!level) return std::nullopt;
  ClusterName cluster{.level = *level};
  bool isCluster = false;
  if (name.take("ACC")) {
    cluster.number = name.takeNumber().value_or(kUnnumbered);
    isCluster = name.take("_CPU");
  } else if (name.take("CPU")) {
    isCluster = true;
    // Only of this level is a single number known to be a cluster's; of the others it is a core's.
    if (*level == 'M') cluster.number = name.takeNumber().value_or(kUnnumbered);
  }
  return isCluster && name.atEnd() ? std::optional(cluster) : std::nullopt;
}

// What is left of a block's name behind the block itself: nothing, "0", or "0_1".
std::optional<BlockRank> rankOf(Pieces name, bool ofDie) {
  const auto ranked = [ofDie](BlockRank rank, BlockRank rankOfDie) {
    return ofDie ? rankOfDie : rank;
  };
  if (name.atEnd()) return ranked(BlockRank::whole, BlockRank::wholeOfDie);
  if (!name.takeNumber()) return std::nullopt;
  if (name.atEnd()) return ranked(BlockRank::numbered, BlockRank::numberedOfDie);
  if (!name.take("_") || !name.takeNumber() || !name.atEnd()) return std::nullopt;
  return ranked(BlockRank::numberedTwice, BlockRank::numberedTwiceOfDie);
}

CoreForm formOf(CoreForm form, CoreForm formOfDie, int die) {
  return die == kNoDie ? form : formOfDie;
}

// Behind "PACC": "0_CPU1", "_CPU1", "0_1" or "_1".
std::optional<CoreName> acceleratedCore(Pieces name, char level, int die) {
  const int cluster = name.takeNumber().value_or(0);
  if (!name.take("_")) return std::nullopt;
  const bool named = name.take("CPU");
  const auto index = name.takeNumber();
  if (!index || !name.atEnd()) return std::nullopt;
  const CoreForm form = named ? formOf(CoreForm::accelerated, CoreForm::acceleratedOfDie, die)
                              : formOf(CoreForm::paired, CoreForm::pairedOfDie, die);
  return CoreName{.level = level, .form = form, .die = die, .cluster = cluster, .index = *index};
}

// Behind "PCPU": "2" or "0_3".
std::optional<CoreName> plainCore(Pieces name, char level, int die) {
  const auto first = name.takeNumber();
  if (!first) return std::nullopt;
  CoreName core{.level = level,
                .form = formOf(CoreForm::plain, CoreForm::plainOfDie, die),
                .die = die,
                .cluster = 0,
                .index = *first};
  if (name.atEnd()) return level == 'M' ? std::nullopt : std::optional(core);
  const auto second = name.take("_") ? name.takeNumber() : std::nullopt;
  if (!second || !name.atEnd()) return std::nullopt;
  core.form = formOf(CoreForm::paired, CoreForm::pairedOfDie, die);
  core.cluster = *first;
  core.index = *second;
  return core;
}

}  // namespace

std::optional<BlockName> energyBlockOf(std::string_view name) {
  Pieces behindDie(name);
  const bool ofDie = behindDie.takeDie() != kNoDie;
  if (const auto cluster = clusterOf(behindDie)) {
    return BlockName{.block = kCpuBlock, .rank = BlockRank::cluster, .cluster = *cluster};
  }
  for (std::size_t block = 0; block < kEnergyBlocks.size(); ++block) {
    Pieces rest = behindDie;
    if (!rest.take(kEnergyBlocks[block])) continue;
    if (const auto rank = rankOf(rest, ofDie)) return BlockName{.block = block, .rank = *rank};
  }
  return std::nullopt;
}

std::optional<CoreName> energyCoreOf(std::string_view name) {
  Pieces rest(name);
  const int die = rest.takeDie();
  const auto level = rest.takeLevel();
  if (!level) return std::nullopt;
  if (rest.take("ACC")) return acceleratedCore(rest, *level, die);
  if (rest.take("CPU")) return plainCore(rest, *level, die);
  return std::nullopt;
}

}  // namespace embrix
