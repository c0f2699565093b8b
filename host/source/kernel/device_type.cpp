#include "source/kernel/device_type.h"

#include <fmt/format.h>
#include <net/if.h>

namespace host {
namespace {

// Devices that carry packets of their own over the one below; all others are a part of it.
constexpr std::string_view kTunnels[] = {"vxlan",     "geneve",  "gre", "gretap", "ip6gre", "ip6gretap",
                                         "ipip",      "ip6tnl",  "sit", "vti",    "vti6",   "erspan",
                                         "ip6erspan", "bareudp", "gtp", "l2tp",   "xfrm",   "macsec"};

bool is_tunnel(std::string_view kind) {
  for (const std::string_view it : kTunnels)
    if (it == kind) return true;
  return false;
}

std::string kind_of_device(const kernel_link& link) {
  if (link.kind.empty()) return (link.flags & IFF_LOOPBACK) != 0 ? "loopback" : "physical";
  if (link.kind == "tun" && link.is_tap) return "tap";
  if (link.kind == "vlan" && link.vlan != 0) return fmt::format("vlan {}", link.vlan);
  if (link.vxlan) return fmt::format("{} {}", link.kind, *link.vxlan);
  return link.kind;
}

}  // namespace

bool has_device_below(const kernel_link& link) { return link.kind != "veth"; }

std::string device_type(const kernel_link& link, std::string_view below) {
  const std::string kind = kind_of_device(link);
  return below.empty() ? kind : fmt::format("{} {} {}", kind, is_tunnel(link.kind) ? "over" : "of", below);
}

}  // namespace host
