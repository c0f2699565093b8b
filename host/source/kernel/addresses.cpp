// Rows of the table of addresses.
#include <linux/if_addr.h>
#include <linux/rtnetlink.h>
#include <netinet/in.h>

#include <array>

#include "source/kernel/policy.h"
#include "source/kernel/tables.h"

namespace host {
namespace {

constexpr message_policy kAddressRowPolicy = {
    {IFA_ADDRESS, attribute_type::bytes, sizeof(in_addr), sizeof(in6_addr)},
    {IFA_LOCAL, attribute_type::bytes, sizeof(in_addr), sizeof(in6_addr)},
    {IFA_LABEL, attribute_type::text, 1},
    {IFA_CACHEINFO, attribute_type::bytes, sizeof(ifa_cacheinfo)},
    {IFA_FLAGS, attribute_type::number, sizeof(uint32)},
};

// The words of ip(8). The lowest bit has two meanings.
constexpr flag_word kAddressFlags[] = {
    {IFA_F_PERMANENT, "permanent"},   {IFA_F_TENTATIVE, "tentative"},           {IFA_F_DADFAILED, "dadfailed"},
    {IFA_F_DEPRECATED, "deprecated"}, {IFA_F_OPTIMISTIC, "optimistic"},         {IFA_F_NODAD, "nodad"},
    {IFA_F_HOMEADDRESS, "home"},      {IFA_F_MANAGETEMPADDR, "mngtmpaddr"},     {IFA_F_NOPREFIXROUTE, "noprefixroute"},
    {IFA_F_MCAUTOJOIN, "autojoin"},   {IFA_F_STABLE_PRIVACY, "stable-privacy"},
};

std::string flags_of(uint32 flags, bool is_ipv6) {
  const bool is_secondary = (flags & IFA_F_SECONDARY) != 0;
  std::string words;
  if (is_ipv6 && is_secondary) words = "temporary";
  if (!is_ipv6) words = is_secondary ? "secondary" : "primary";
  if (const std::string others = words_of_flags(flags, kAddressFlags); !others.empty()) append_word(words, others);
  return words;
}

std::string scope_of(uint8 scope) {
  switch (scope) {
    case RT_SCOPE_UNIVERSE: return "global";
    case RT_SCOPE_SITE: return "site";
    case RT_SCOPE_LINK: return "link";
    case RT_SCOPE_HOST: return "host";
    case RT_SCOPE_NOWHERE: return "nowhere";
    default: return std::to_string(scope);
  }
}

std::optional<uint32> lifetime_of(uint32 seconds) {
  constexpr uint32 kForEver = 0xFFFFFFFF;
  return seconds == kForEver ? std::nullopt : std::optional(seconds);
}

std::optional<ip_address> address_in(const attributes& all, uint16 number, const ifaddrmsg& head) {
  const auto bytes = all.bytes(number);
  auto address = bytes ? address_of(*bytes) : std::nullopt;
  if (!address || address->is_ipv6 != (head.ifa_family == AF_INET6)) return std::nullopt;
  address->prefix_length = head.ifa_prefixlen;
  return address;
}

}  // namespace

// IFA_ADDRESS is the other end of a link between two, which has IFA_LOCAL, too.
std::optional<address_row> address_in_message(const nlmsghdr& message) {
  const bool is_of_address = message.nlmsg_type == RTM_NEWADDR || message.nlmsg_type == RTM_DELADDR;
  const auto parsed = is_of_address ? parse<ifaddrmsg>(message, kAddressRowPolicy) : std::nullopt;
  if (!parsed) return std::nullopt;
  const attributes& all = parsed->all;
  const auto local = address_in(all, IFA_LOCAL, parsed->head);
  const auto other = address_in(all, IFA_ADDRESS, parsed->head);
  if (!local && !other) return std::nullopt;
  address_row row;
  row.device.number = parsed->head.ifa_index;
  row.address = local ? *local : *other;
  if (local && other && *other != *local) row.peer = other;
  row.scope = scope_of(parsed->head.ifa_scope);
  row.flags = flags_of(all.number<uint32>(IFA_FLAGS).value_or(parsed->head.ifa_flags), row.address.is_ipv6);
  row.label = all.text(IFA_LABEL).value_or("");
  if (const auto bytes = all.bytes(IFA_CACHEINFO)) {
    const auto lifetimes = record_of<ifa_cacheinfo>(*bytes);
    row.valid_seconds = lifetime_of(lifetimes.ifa_valid);
    row.preferred_seconds = lifetime_of(lifetimes.ifa_prefered);
  }
  return row;
}

void decode_address_row(const nlmsghdr& message, const table_devices& devices, std::vector<table_row>& rows) {
  auto row = message.nlmsg_type == RTM_NEWADDR ? address_in_message(message) : std::nullopt;
  if (!row || !devices.is_requested(row->device.number)) return;
  row->device = devices.row_of(row->device.number);
  if (const table_device* const device = devices.find(row->device.number)) row->mtu_bytes = device->mtu_bytes;
  rows.emplace_back(std::move(*row));
}

}  // namespace host
