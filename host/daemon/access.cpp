#include "daemon/access.h"

#include <fmt/format.h>
#include <grp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <vector>

namespace host {
namespace {

// Also those that the process has besides its own.
std::vector<gid_t> groups_of_peer(int descriptor, gid_t own) {
  std::vector<gid_t> groups(32);
  socklen_t size = static_cast<socklen_t>(groups.size() * sizeof(gid_t));
  while (getsockopt(descriptor, SOL_SOCKET, SO_PEERGROUPS, groups.data(), &size) != 0) {
    if (errno != ERANGE) return {own};
    groups.resize(size / sizeof(gid_t));
  }
  groups.resize(size / sizeof(gid_t));
  groups.push_back(own);
  return groups;
}

}  // namespace

gid_t find_group(const std::string& name) {
  std::vector<char> buffer(1024);
  group entry{};
  group* found = nullptr;
  while (getgrnam_r(name.c_str(), &entry, buffer.data(), buffer.size(), &found) == ERANGE)
    buffer.resize(buffer.size() * 2);
  if (found == nullptr)
    throw access_error(fmt::format("unknown group '{}' in --group. Name a group of this machine.", name));
  return entry.gr_gid;
}

session_rights rights_of_peer(int descriptor, std::optional<gid_t> group) {
  ucred peer{};
  socklen_t size = sizeof peer;
  if (getsockopt(descriptor, SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0)
    throw std::runtime_error(fmt::format("the user of a shell is unknown: {}", std::strerror(errno)));
  if (peer.uid == 0 || peer.uid == geteuid()) return {};
  const std::vector<gid_t> groups = groups_of_peer(descriptor, peer.gid);
  const bool is_member = !group || std::find(groups.begin(), groups.end(), *group) != groups.end();
  return {.may_change = is_member, .may_be_any_user = false};
}

}  // namespace host
