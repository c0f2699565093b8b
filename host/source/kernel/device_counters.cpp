#include "source/kernel/device_counters.h"

#include <linux/ethtool_netlink.h>
#include <linux/if_link.h>
#include <linux/rtnetlink.h>

#include <algorithm>

#include "source/kernel/ethtool.h"
#include "source/kernel/links.h"
#include "source/kernel/policy.h"
#include "source/kernel/sorted_records.h"

namespace host {
namespace {

constexpr message_policy kStatisticsPolicy = {{IFLA_STATS_LINK_64, attribute_type::bytes, kLeastStatisticsBytes}};

// The number and name of every device, by the dump of ethtool that has the least of each. Nothing on failure.
std::optional<std::vector<counted_device>> read_device_names(ethtool_socket& ethtool) {
  std::vector<counted_device> devices;
  netlink_request request = ethtool.request(ETHTOOL_MSG_LINKSTATE_GET, NLM_F_DUMP);
  put_ethtool_head(request, ETHTOOL_A_LINKSTATE_HEADER, 0, 0);
  const int error = ethtool.ask(
      request,
      [&devices](const nlmsghdr& message) {
        if (auto named = decode_link_name(message)) devices.push_back({named->number, std::move(named->name), {}});
      },
      [&devices] { devices.clear(); });
  if (error != 0) return std::nullopt;
  sort_by<&counted_device::number>(devices);
  return devices;
}

bool have_same_names(const std::vector<counted_device>& devices, const std::vector<counted_device>& others) {
  return std::equal(devices.begin(), devices.end(), others.begin(), others.end(),
                    [](const counted_device& one, const counted_device& other) {
                      return one.number == other.number && one.name == other.name;
                    });
}

// False when they are not the counters of exactly these devices.
bool count(netlink_socket& route, std::vector<counted_device>& devices) {
  std::size_t num_counted = 0;
  bool are_known = true;
  netlink_request request(RTM_GETSTATS, NLM_F_DUMP);
  request.extra<if_stats_msg>().filter_mask = IFLA_STATS_FILTER_BIT(IFLA_STATS_LINK_64);
  const int error = route.ask(
      request,
      [&](const nlmsghdr& message) {
        if (message.nlmsg_type != RTM_NEWSTATS) return;
        const auto parsed = parse<if_stats_msg>(message, kStatisticsPolicy);
        const auto bytes = parsed ? parsed->all.bytes(IFLA_STATS_LINK_64) : std::nullopt;
        counted_device* const device =
            bytes ? find_by<&counted_device::number>(devices, parsed->head.ifindex) : nullptr;
        if (device == nullptr) return void(are_known = false);
        device->counted = counters_of(*bytes);
        ++num_counted;
      },
      [&] {
        num_counted = 0;
        are_known = true;
      });
  return error == 0 && are_known && num_counted == devices.size();
}

}  // namespace

std::optional<std::vector<counted_device>> read_device_counters() {
  netlink_socket route(NETLINK_ROUTE);
  ethtool_socket ethtool;
  auto devices = read_device_names(ethtool);
  if (!devices || devices->empty() || !count(route, *devices)) return std::nullopt;
  const auto after = read_device_names(ethtool);
  return after && have_same_names(*devices, *after) ? devices : std::nullopt;
}

}  // namespace host
