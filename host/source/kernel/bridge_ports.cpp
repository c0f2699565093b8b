// Rows of the table of bridge ports, from the links of the kernel.
#include <linux/if_bridge.h>
#include <linux/if_link.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>

#include <map>
#include <utility>

#include "source/kernel/dump.h"
#include "source/kernel/policy.h"
#include "source/kernel/tables.h"

namespace host {
namespace {

constexpr message_policy kTreeLinkPolicy = {
    {IFLA_MASTER, attribute_type::number, sizeof(uint32)},
    {IFLA_LINKINFO, attribute_type::nest, 0},
};
constexpr message_policy kTreeBridgePolicy = {
    {IFLA_BR_STP_STATE, attribute_type::number, sizeof(uint32)},
    {IFLA_BR_BRIDGE_ID, attribute_type::bytes, sizeof(bridge_id)},
    {IFLA_BR_ROOT_PORT, attribute_type::number, sizeof(uint16)},
};
constexpr message_policy kTreePortPolicy = {
    {IFLA_BRPORT_STATE, attribute_type::number, sizeof(uint8)},
    {IFLA_BRPORT_PRIORITY, attribute_type::number, sizeof(uint16)},
    {IFLA_BRPORT_COST, attribute_type::number, sizeof(uint32)},
    {IFLA_BRPORT_ROOT_ID, attribute_type::bytes, sizeof(bridge_id)},
    {IFLA_BRPORT_BRIDGE_ID, attribute_type::bytes, sizeof(bridge_id)},
    {IFLA_BRPORT_DESIGNATED_PORT, attribute_type::number, sizeof(uint16)},
    {IFLA_BRPORT_ID, attribute_type::number, sizeof(uint16)},
    {IFLA_BRPORT_NO, attribute_type::number, sizeof(uint16)},
};

std::optional<bridge_id> bridge_id_in(const attributes& all, uint16 number) {
  const auto bytes = all.bytes(number);
  return bytes ? std::optional(record_of<bridge_id>(*bytes)) : std::nullopt;
}

std::optional<uint32> small_number(const attributes& all, uint16 number) {
  const auto value = all.number<uint16>(number);
  return value ? std::optional<uint32>(*value) : std::nullopt;
}

std::string word_of_state(std::optional<uint8> state) {
  constexpr const char* kWords[] = {"disabled", "listening", "learning", "forwarding", "blocking"};
  if (!state) return {};
  return *state < std::size(kWords) ? kWords[*state] : std::to_string(*state);
}

class bridge_port_reader final : public table_reader {
 public:
  explicit bridge_port_reader(table_devices devices)
      : devices_(std::move(devices)), dump_(NETLINK_ROUTE, link_request(), "bridge ports of the kernel") {}

  bool next(std::vector<table_row>& rows) override {
    std::map<uint32, bridge_state> bridges;
    std::vector<bridge_port> ports;
    const auto visit = [&](const nlmsghdr& message) {
      if (const auto bridge = decode_bridge(message))
        bridges[static_cast<uint32>(record_of<ifinfomsg>(payload_of(message)).ifi_index)] = *bridge;
      if (auto port = decode_bridge_port(message, devices_)) ports.push_back(std::move(*port));
    };
    while (dump_.next(visit)) {
    }
    for (bridge_port& it : ports) {
      if (const auto bridge = bridges.find(it.bridge); bridge != bridges.end())
        it.row.role = role_of(it, bridge->second);
      rows.emplace_back(std::move(it.row));
    }
    return false;
  }
  bool has_changed() const override { return dump_.has_changed(); }

 private:
  static netlink_request link_request() {
    netlink_request request(RTM_GETLINK, NLM_F_DUMP);
    request.extra<ifinfomsg>().ifi_family = AF_UNSPEC;
    mnl_attr_put_u32(&request.head(), IFLA_EXT_MASK, RTEXT_FILTER_SKIP_STATS);
    return request;
  }

  table_devices devices_;
  kernel_dump dump_;
};

}  // namespace

std::optional<bridge_state> decode_bridge(const nlmsghdr& message) {
  const auto parsed = message.nlmsg_type == RTM_NEWLINK ? parse<ifinfomsg>(message, kTreeLinkPolicy) : std::nullopt;
  if (!parsed) return std::nullopt;
  const attributes info = parsed->all.nested(IFLA_LINKINFO, kLinkInfoPolicy);
  if (info.text(IFLA_INFO_KIND) != "bridge") return std::nullopt;
  const attributes data = info.nested(IFLA_INFO_DATA, kTreeBridgePolicy);
  return bridge_state{.runs_spanning_tree = data.number<uint32>(IFLA_BR_STP_STATE) == 1U,
                      .id = bridge_id_in(data, IFLA_BR_BRIDGE_ID),
                      .root_port = small_number(data, IFLA_BR_ROOT_PORT).value_or(0)};
}

std::optional<bridge_port> decode_bridge_port(const nlmsghdr& message, const table_devices& devices) {
  const auto parsed = message.nlmsg_type == RTM_NEWLINK ? parse<ifinfomsg>(message, kTreeLinkPolicy) : std::nullopt;
  if (!parsed || !devices.is_requested(static_cast<uint32>(parsed->head.ifi_index))) return std::nullopt;
  const attributes info = parsed->all.nested(IFLA_LINKINFO, kLinkInfoPolicy);
  if (info.text(IFLA_INFO_SLAVE_KIND) != "bridge") return std::nullopt;
  const attributes data = info.nested(IFLA_INFO_SLAVE_DATA, kTreePortPolicy);
  bridge_port port;
  port.bridge = parsed->all.number<uint32>(IFLA_MASTER).value_or(0);
  port.number = small_number(data, IFLA_BRPORT_NO).value_or(0);
  port.designated_port = small_number(data, IFLA_BRPORT_DESIGNATED_PORT).value_or(0);
  port.row.port = devices.row_of(static_cast<uint32>(parsed->head.ifi_index));
  port.row.bridge = devices.row_of(port.bridge).name;
  port.row.state = word_of_state(data.number<uint8>(IFLA_BRPORT_STATE));
  port.row.path_cost = data.number<uint32>(IFLA_BRPORT_COST);
  port.row.priority = small_number(data, IFLA_BRPORT_PRIORITY);
  port.row.port_id = small_number(data, IFLA_BRPORT_ID);
  port.row.root = bridge_id_in(data, IFLA_BRPORT_ROOT_ID);
  port.row.designated_bridge = bridge_id_in(data, IFLA_BRPORT_BRIDGE_ID);
  return port;
}

std::optional<std::string> role_of(const bridge_port& port, const bridge_state& bridge) {
  if (!bridge.runs_spanning_tree) return std::nullopt;
  if (port.row.state == "disabled") return "disabled";
  if (port.number != 0 && port.number == bridge.root_port) return "root";
  const bool is_designated = bridge.id && port.row.designated_bridge == bridge.id && port.row.port_id &&
                             port.designated_port == *port.row.port_id;
  return is_designated ? "designated" : "alternate";
}

std::unique_ptr<table_reader> read_bridge_ports(table_devices devices) {
  return std::make_unique<bridge_port_reader>(std::move(devices));
}

}  // namespace host
