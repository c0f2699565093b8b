#include "source/kernel/creation.h"

#include <linux/if_link.h>
#include <linux/rtnetlink.h>
#include <net/if.h>

#include "source/kernel/settings.h"
#include "switch/if_index_layout.h"

namespace host {
namespace {

netlink_request creation_request(uint32 number, bool is_up, const std::string& name) {
  netlink_request request(RTM_NEWLINK, NLM_F_CREATE | NLM_F_EXCL | NLM_F_ACK);
  auto& head = request.extra<ifinfomsg>();
  head.ifi_family = AF_UNSPEC;
  head.ifi_index = static_cast<int>(number);
  head.ifi_flags = is_up ? unsigned{IFF_UP} : 0U;
  head.ifi_change = IFF_UP;
  // The kernel chooses a name when this one is too long.
  if (name.size() < IFNAMSIZ) mnl_attr_put_strz(&request.head(), IFLA_IFNAME, name.c_str());
  return request;
}

}  // namespace

bool is_created_by_command(const kernel_link& link, if_index_t if_index) {
  const if_index_type_t type = decode_index(if_index).type;
  if (link.kind == "dummy") return if_index == numbered_index(IF_TYPE_LOOPBACK, link.number);
  return link.kind == "vlan" && (type == IF_TYPE_ETHERNET || type == IF_TYPE_ETHERNET_L3) &&
         decode_index(if_index).sub_interface == link.vlan;
}

uint32 create_dummy(uint32 number) {
  netlink_request request = creation_request(number, true, "lo" + std::to_string(number));
  nlattr* const info = mnl_attr_nest_start(&request.head(), IFLA_LINKINFO);
  mnl_attr_put_strz(&request.head(), IFLA_INFO_KIND, "dummy");
  mnl_attr_nest_end(&request.head(), info);
  return send_link_request(request);
}

uint32 create_vlan_device(const kernel_link& parent, uint16 vlan) {
  netlink_request request = creation_request(0, (parent.flags & IFF_UP) != 0, parent.name + "." + std::to_string(vlan));
  mnl_attr_put_u32(&request.head(), IFLA_LINK, parent.number);
  nlattr* const info = mnl_attr_nest_start(&request.head(), IFLA_LINKINFO);
  mnl_attr_put_strz(&request.head(), IFLA_INFO_KIND, "vlan");
  nlattr* const data = mnl_attr_nest_start(&request.head(), IFLA_INFO_DATA);
  mnl_attr_put_u16(&request.head(), IFLA_VLAN_ID, vlan);
  mnl_attr_nest_end(&request.head(), data);
  mnl_attr_nest_end(&request.head(), info);
  return send_link_request(request);
}

uint32 delete_device(uint32 number) {
  netlink_request request(RTM_DELLINK, NLM_F_ACK);
  auto& head = request.extra<ifinfomsg>();
  head.ifi_family = AF_UNSPEC;
  head.ifi_index = static_cast<int>(number);
  return send_link_request(request);
}

}  // namespace host
