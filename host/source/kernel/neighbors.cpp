// Rows of the tables of neighbors and of MAC addresses, which are messages of one type.
#include <linux/neighbour.h>
#include <linux/rtnetlink.h>
#include <netinet/in.h>
#include <unistd.h>

#include <algorithm>
#include <array>

#include "source/kernel/policy.h"
#include "source/kernel/tables.h"

namespace host {
namespace {

constexpr message_policy kNeighborPolicy = {
    {NDA_DST, attribute_type::bytes, sizeof(in_addr), sizeof(in6_addr)},
    {NDA_LLADDR, attribute_type::bytes, sizeof(mac_address), sizeof(mac_address)},
    {NDA_CACHEINFO, attribute_type::bytes, sizeof(nda_cacheinfo)},
    {NDA_VLAN, attribute_type::number, sizeof(uint16)},
    {NDA_MASTER, attribute_type::number, sizeof(uint32)},
};

// The words of ip(8) and bridge(8).
constexpr flag_word kNeighborFlags[] = {
    {NTF_ROUTER, "router"}, {NTF_PROXY, "proxy"}, {NTF_EXT_LEARNED, "extern_learn"}, {NTF_OFFLOADED, "offload"}};
constexpr flag_word kForwardingFlags[] = {
    {NTF_SELF, "self"},         {NTF_ROUTER, "router"}, {NTF_EXT_LEARNED, "extern_learn"},
    {NTF_OFFLOADED, "offload"}, {NTF_MASTER, "master"}, {NTF_STICKY, "sticky"}};

struct state_word {
  uint16 state;
  const char* word;
};
constexpr state_word kStates[] = {{NUD_INCOMPLETE, "incomplete"}, {NUD_REACHABLE, "reachable"}, {NUD_STALE, "stale"},
                                  {NUD_DELAY, "delay"},           {NUD_PROBE, "probe"},         {NUD_FAILED, "failed"},
                                  {NUD_NOARP, "noarp"},           {NUD_PERMANENT, "permanent"}};

std::string word_of_state(uint16 state) {
  const auto* const end = std::end(kStates);
  const auto* const found =
      std::find_if(std::begin(kStates), end, [=](const state_word& it) { return it.state == state; });
  return found == end ? std::string() : found->word;
}

// The kernel counts in ticks of its clock.
uint32 seconds_of(uint32 ticks) {
  static const long per_second = std::max(sysconf(_SC_CLK_TCK), 1L);
  return ticks / static_cast<uint32>(per_second);
}

std::optional<nda_cacheinfo> ages_in(const attributes& all) {
  const auto bytes = all.bytes(NDA_CACHEINFO);
  return bytes ? std::optional(record_of<nda_cacheinfo>(*bytes)) : std::nullopt;
}

std::optional<mac_address> mac_in(const attributes& all) {
  const auto bytes = all.bytes(NDA_LLADDR);
  return bytes ? std::optional(record_of<mac_address>(*bytes)) : std::nullopt;
}

std::optional<parsed_message<ndmsg>> parse_neighbor(const nlmsghdr& message, const table_devices& devices) {
  if (message.nlmsg_type != RTM_NEWNEIGH) return std::nullopt;
  auto parsed = parse<ndmsg>(message, kNeighborPolicy);
  if (!parsed || !devices.is_requested(static_cast<uint32>(parsed->head.ndm_ifindex))) return std::nullopt;
  return parsed;
}

// A prefix of the address counts as the whole one.
std::optional<ip_address> whole_address_in(const attributes& all) {
  const auto bytes = all.bytes(NDA_DST);
  auto address = bytes ? address_of(*bytes) : std::nullopt;
  if (address) address->prefix_length = address->is_ipv6 ? 128 : 32;
  return address;
}

}  // namespace

std::optional<neighbor_row> neighbor_in_message(const nlmsghdr& message) {
  const bool is_of_neighbor = message.nlmsg_type == RTM_NEWNEIGH || message.nlmsg_type == RTM_DELNEIGH;
  const auto parsed = is_of_neighbor ? parse<ndmsg>(message, kNeighborPolicy) : std::nullopt;
  const auto address = parsed ? whole_address_in(parsed->all) : std::nullopt;
  if (!address || parsed->head.ndm_family != (address->is_ipv6 ? AF_INET6 : AF_INET)) return std::nullopt;
  neighbor_row row;
  row.device.number = static_cast<uint32>(parsed->head.ndm_ifindex);
  row.address = *address;
  row.mac = mac_in(parsed->all);
  row.state = word_of_state(parsed->head.ndm_state);
  row.flags = words_of_flags(parsed->head.ndm_flags, kNeighborFlags);
  if (const auto ages = ages_in(parsed->all)) row.age_seconds = seconds_of(ages->ndm_confirmed);
  return row;
}

bool is_neighbor(const nlmsghdr& message) {
  const uint16 state = record_of<ndmsg>(payload_of(message)).ndm_state;
  return state != NUD_NONE && (state & NUD_NOARP) == 0;
}

void decode_neighbor_row(const nlmsghdr& message, const table_devices& devices, std::vector<table_row>& rows) {
  auto row = message.nlmsg_type == RTM_NEWNEIGH && is_neighbor(message) ? neighbor_in_message(message) : std::nullopt;
  if (!row || !devices.is_requested(row->device.number)) return;
  row->device = devices.row_of(row->device.number);
  rows.emplace_back(std::move(*row));
}

void decode_forwarding_row(const nlmsghdr& message, const table_devices& devices, std::vector<table_row>& rows) {
  const auto parsed = parse_neighbor(message, devices);
  const auto mac = parsed ? mac_in(parsed->all) : std::nullopt;
  if (!mac || parsed->head.ndm_family != AF_BRIDGE) return;
  forwarding_row row;
  row.port = devices.row_of(static_cast<uint32>(parsed->head.ndm_ifindex));
  if (const auto master = parsed->all.number<uint32>(NDA_MASTER)) row.bridge = devices.row_of(*master).name;
  row.mac = *mac;
  if (const auto vlan = parsed->all.number<uint16>(NDA_VLAN)) row.vlan = *vlan;
  const uint16 state = parsed->head.ndm_state;
  row.type = (state & NUD_PERMANENT) != 0 ? "permanent" : (state & NUD_NOARP) != 0 ? "static" : "dynamic";
  row.flags = words_of_flags(parsed->head.ndm_flags, kForwardingFlags);
  row.remote = whole_address_in(parsed->all);
  if (const auto ages = ages_in(parsed->all)) row.age_seconds = seconds_of(ages->ndm_updated);
  rows.emplace_back(std::move(row));
}

}  // namespace host
