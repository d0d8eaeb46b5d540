#include "fakes/folder_world.h"

#include <algorithm>
#include <utility>

#include "base/path_text.h"

namespace embrix {

void FolderWorld::makeParents(const std::string& path) {
  const std::string parent(PathText::parent(path));
  if (parent == "/" || has(parent)) return;
  makeParents(parent);
  nodes[parent] = Node{.inode = nextInode_++};
}

void FolderWorld::folder(const std::string& path, double modified) {
  makeParents(path);
  Node& node = nodes[path];
  if (node.inode == 0) node.inode = nextInode_++;
  node.modified = modified;
}

void FolderWorld::file(const std::string& path, std::int64_t bytes, double modified,
                       std::string content) {
  makeParents(path);
  nodes[path] = Node{.kind = FileKind::file,
                     .modified = modified,
                     .bytes = bytes,
                     .content = std::move(content),
                     .inode = nextInode_++};
}

void FolderWorld::link(const std::string& path, std::string target) {
  makeParents(path);
  nodes[path] = Node{.kind = FileKind::link, .content = std::move(target), .inode = nextInode_++};
}

void FolderWorld::remove(const std::string& path) {
  std::erase_if(nodes, [&](const auto& entry) { return PathText::isAtOrBelow(entry.first, path); });
}

void FolderWorld::replaceByFolder(const std::string& path) {
  remove(path);
  folder(path);
}

bool FolderWorld::isReadable(std::string_view path) const {
  return std::none_of(unreadable.begin(), unreadable.end(), [&](const std::string& forbidden) {
    return PathText::isAtOrBelow(path, forbidden);
  });
}

const FolderWorld::Node* FolderWorld::find(const std::string& path) const {
  const auto node = nodes.find(path);
  return node == nodes.end() || !isReadable(path) ? nullptr : &node->second;
}

std::optional<std::string> FolderWorld::resolved(const std::string& path) {
  if (path == "/") return path;
  if (!path.starts_with('/')) return std::nullopt;
  std::string place = path;
  for (int links = 0; links < 8; ++links) {
    const auto parent = resolved(std::string(PathText::parent(place)));
    if (!parent) return std::nullopt;
    place = PathText::joined(*parent, PathText::name(place));
    const Node* node = find(place);
    if (node == nullptr) return std::nullopt;
    if (node->kind != FileKind::link) return place;
    place = node->content;
  }
  return std::nullopt;
}

std::optional<FileFacts> FolderWorld::facts(const std::string& path) {
  const Node* node = find(path);
  if (node == nullptr) return std::nullopt;
  return FileFacts{.kind = node->kind,
                   .modified = node->modified,
                   .identity = {.device = 1, .inode = node->inode, .born = std::nullopt}};
}

std::vector<FolderEntry> FolderWorld::list(const std::string& folder) {
  std::vector<FolderEntry> entries;
  if (find(folder) == nullptr) return entries;
  for (const auto& [path, node] : nodes) {
    if (PathText::parent(path) != folder || !isReadable(path)) continue;
    const std::string name(PathText::name(path));
    entries.push_back({.name = name,
                       .kind = node.kind,
                       .modified = node.modified,
                       .hidden = name.starts_with('.')});
  }
  // No order is promised, so callers get the worst.
  std::reverse(entries.begin(), entries.end());
  return entries;
}

std::optional<std::int64_t> FolderWorld::measure(const std::string& folder, MeasureWatch& watch) {
  log.push_back("measure " + folder);
  if (onMeasure) onMeasure(folder);
  if (watch.abandoned()) return std::nullopt;
  std::int64_t bytes = 0;
  for (const auto& [path, node] : nodes) {
    if (node.kind != FileKind::file || !isReadable(path)) continue;
    if (!PathText::isBelow(path, folder)) continue;
    bytes += node.bytes;
    watch.add(1, node.bytes);
  }
  return bytes;
}

std::optional<std::string> FolderWorld::read(const std::string& path) {
  const auto real = resolved(path);
  const Node* node = real ? find(*real) : nullptr;
  if (node == nullptr || node->kind != FileKind::file) return std::nullopt;
  return node->content;
}

void FolderWorld::move(const std::string& from, const std::string& to) {
  makeParents(to);
  std::vector<std::pair<std::string, Node>> moved;
  for (const auto& [path, node] : nodes) {
    if (PathText::isAtOrBelow(path, from)) moved.emplace_back(to + path.substr(from.size()), node);
  }
  remove(from);
  nodes.insert(moved.begin(), moved.end());
}

TrashMove FolderWorld::moveToTrash(const std::string& path, const FileIdentity& identity) {
  log.push_back("trash " + path);
  if (onMove) onMove(path);
  if (!has(path)) return {.outcome = TrashOutcome::gone};
  const auto found = facts(path);
  if (!found || found->identity != identity || unmovable.count(path) > 0) return {};
  const std::string trashed =
      std::string(kTrash) + std::to_string(++trashed_) + " " + std::string(PathText::name(path));
  move(path, trashed);
  return {.outcome = TrashOutcome::moved,
          .trashed = trashSaysWhere ? std::optional(trashed) : std::nullopt};
}

bool FolderWorld::putBack(const std::string& trashed, const std::string& original,
                          const FileIdentity& identity) {
  log.push_back("putBack " + original);
  const auto found = facts(trashed);
  if (!found || found->identity != identity || has(original)) return false;
  move(trashed, original);
  return true;
}

}  // namespace embrix
