// The VLAN services through their client libraries' builders and parsers.
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

#include "client/library_functions.h"
#include "host/client/client_fixture.h"
#include "platform/port_channel.h"
#include "platform/port_manager.h"
#include "service/services.h"
#include "support/heap_block.h"

namespace host {
namespace {

std::vector<uint32> ids_of(const vlan_bitset_t& set) {
  std::vector<uint32> ids;
  for (uint32 id = 0; id < 4096; ++id)
    if (set.bits[id / 8] & (0x80 >> id % 8)) ids.push_back(id);
  return ids;
}

using Ids = std::vector<uint32>;

class VlanServices : public Clients {
 protected:
  interface& port() {
    return *the_machine().find(names_.third_port);
  }

  // Asks a service as a display does.
  reply ask(service_function serve, mts_opc_t opcode, void* payload, uint32 size) {
    const heap_block<void> owned(payload);
    return serve(opcode, {static_cast<const std::byte*>(payload), size});
  }
};

TEST_F(VlanServices, MembershipsAreOfThePortsThatAreThere) {
  port().settings.native_vlan = 7;
  port().settings.allowed_vlans = {1, 7, 4094};
  const if_index_t ports[] = {names_.third_port, names_.nobody, names_.routed_port};
  void* payload = nullptr;
  uint32 size = 0;
  ASSERT_EQ(build_membership_question(ports, 3, &payload, &size), 0);
  const reply got = ask(serve_vlan_manager, MTS_OPC_VLAN_TRUNKING_MEMBERSHIP, payload, size);
  trunk_port_memb_t* records = nullptr;
  uint32 count = 0;
  ASSERT_EQ(parse_memberships(got.payload.data(), static_cast<uint32>(got.payload.size()), &records, &count), 0);
  const heap_block<trunk_port_memb_t> owned(records);
  ASSERT_EQ(count, 2u);
  EXPECT_EQ(records[0].port, names_.third_port);
  EXPECT_EQ(records[0].native_trunk.vlan_id, 7);
  EXPECT_EQ(ids_of(records[0].allowed_vlan_list), (Ids{1, 7, 4094}));
  EXPECT_EQ(records[1].port, names_.routed_port);
}

TEST_F(VlanServices, VlansAreThoseThatAreDescribedOrUsed) {
  port().settings.layer = 2;
  port().settings.access_vlan = 42;
  the_machine().vlans = {{.id = 300, .name = "guests", .kind = VLAN_TYPE_PRIMARY, .is_shut = true}};
  const auto info = [this](uint16 id) -> std::optional<vlan_info_resp_t> {
    vdc_vlan_id_t vlan{};
    vlan.vdc_id = 1;
    vlan.vlan_id = id;
    void* payload = nullptr;
    uint32 size = 0;
    EXPECT_EQ(build_vlan_question(&vlan, &payload, &size), 0);
    const reply got = ask(serve_vlan_manager, MTS_OPC_VLAN_INFO, payload, size);
    vlan_info_resp_t record;
    if (got.what != reply::kind::answer) return std::nullopt;
    EXPECT_EQ(parse_vlan(&record, got.payload.data(), static_cast<uint32>(got.payload.size())), 0);
    return record;
  };
  ASSERT_TRUE(info(300));
  EXPECT_STREQ(info(300)->vlan_name, "guests");
  EXPECT_EQ(info(300)->vtype, uint32{VLAN_TYPE_PRIMARY});
  EXPECT_EQ(info(300)->shut_state, 2u);
  ASSERT_TRUE(info(42));
  EXPECT_STREQ(info(42)->vlan_name, "VLAN0042");
  EXPECT_FALSE(info(43));
}

TEST_F(VlanServices, AllVlansAreListedOnceAndById) {
  for (interface& it : the_machine().interfaces) it.settings.layer = 3;
  port().settings.layer = 2;
  port().settings.access_vlan = 300;
  interface& trunk = *the_machine().find(names_.first_port);
  trunk.settings.layer = 2;
  trunk.oper_mode = PM_PORT_MODE_TRUNK;
  trunk.settings.native_vlan = 42;
  trunk.settings.access_vlan = 43;
  the_machine().vlans = {{.id = 4094, .name = "last"}, {.id = 300, .name = "guests"}};
  vlan_info_resp_t* list = nullptr;
  uint32 count = 0;
  ASSERT_EQ(vlan_get_all_vlans(&list, &count), 0);
  const heap_block<vlan_info_resp_t> owned(list);

  std::vector<std::pair<uint32, std::string>> shown;
  for (const vlan_info_resp_t& it : std::span(list, count)) shown.emplace_back(it.vdc_vlan.vlan_id, it.vlan_name);
  EXPECT_EQ(shown, (std::vector<std::pair<uint32, std::string>>{{42, "VLAN0042"}, {300, "guests"}, {4094, "last"}}));
}

TEST_F(VlanServices, PrivateVlansAreThoseOfThePort) {
  port().oper_state = PM_PORT_STATE_UP;
  port().private_vlan = {.host_primary = 100, .host_secondary = 101, .mapping_primary = 0, .mapping_secondary = {5, 6}};
  pvlan_get_switchport_info_req_t question{names_.third_port};
  void* payload = nullptr;
  uint32 size = 0;
  ASSERT_EQ(build_private_vlan_question(&question, &payload, &size), 0);
  const reply got = ask(serve_private_vlans, MTS_OPC_PVLAN_GET_SWITCHPORT_INFO, payload, size);
  pvlan_switchport_info_t record;
  ASSERT_EQ(parse_private_vlans(got.payload.data(), static_cast<uint32>(got.payload.size()), &record), 0);
  EXPECT_EQ(record.host_primary, 100u);
  EXPECT_EQ(record.host_secondary, 101u);
  EXPECT_EQ(record.mapping_primary, 0u);
  EXPECT_EQ(ids_of(record.mapping_secondary), (Ids{5, 6}));
  EXPECT_EQ(ids_of(record.operational), (Ids{5, 6, 100, 101}));
}

TEST_F(VlanServices, PortsForwardWhereNothingBlocksThem) {
  interface& trunk = port();
  trunk.settings.layer = 2;
  trunk.oper_mode = PM_PORT_MODE_TRUNK;
  trunk.oper_state = PM_PORT_STATE_UP;
  trunk.settings.allowed_vlans = {1, 2, 3, 4};
  trunk.blocked_vlans = {2};
  trunk.errored_vlans = {4};
  const auto forwarding = [this]() -> Ids {
    mts_msg_ref_t sent{}, got{};
    if_index_t ports[] = {names_.third_port};
    EXPECT_EQ(send_forwarding_question(q_, 1, ports, &sent), 0);
    mts_recv_options_t options{};
    options.version = 1;
    options.timeout = 1;
    options.rr_token = mts_rr_token_get(&sent);
    EXPECT_EQ(mts_recv(q_, &got, &options), 0);
    stp_port_state_t* states = nullptr;
    uint32 count = 0;
    EXPECT_EQ(parse_forwarding(&got, &states, &count), 0);
    const heap_block<stp_port_state_t> owned(states);
    mts_drop(q_, &sent);
    mts_drop(q_, &got);
    EXPECT_EQ(count, 1u);
    return count == 1 ? ids_of(states->forwarding) : Ids{};
  };
  EXPECT_EQ(forwarding(), (Ids{1, 3}));
  trunk.oper_mode = PM_PORT_MODE_ACCESS;
  trunk.settings.access_vlan = 9;
  EXPECT_EQ(forwarding(), (Ids{9}));
  trunk.oper_state = PM_PORT_STATE_DOWN;
  EXPECT_EQ(forwarding(), Ids{});
}

TEST_F(VlanServices, ShortAnswersAreRefused) {
  const std::vector<std::byte> bytes(3);
  vlan_info_resp_t info;
  pvlan_switchport_info_t private_vlans;
  EXPECT_NE(parse_vlan(&info, bytes.data(), 3), 0);
  EXPECT_NE(parse_private_vlans(bytes.data(), 3, &private_vlans), 0);
  trunk_port_memb_t* records = nullptr;
  uint32 count = 9;
  EXPECT_EQ(parse_memberships(bytes.data(), 3, &records, &count), 0);
  EXPECT_EQ(count, 0u);
  EXPECT_EQ(serve_vlan_manager(MTS_OPC_VLAN_INFO, bytes).what, reply::kind::reject);
  EXPECT_EQ(serve_vlan_manager(MTS_OPC_VLAN_TRUNKING_MEMBERSHIP, bytes).what, reply::kind::reject);
  EXPECT_EQ(serve_private_vlans(MTS_OPC_PVLAN_GET_SWITCHPORT_INFO, bytes).what, reply::kind::reject);
}

TEST_F(VlanServices, ChannelsOfMembers) {
  port_channel_info_t info{};
  EXPECT_EQ(get_port_channel_info(names_.first_port, &info), 0);
  EXPECT_EQ(info.if_index, names_.channel);
  EXPECT_EQ(get_port_channel_info(names_.third_port, &info), 0);
  EXPECT_EQ(info.if_index, 0u);
}

}  // namespace
}  // namespace host
