// The rows of the interface tables: every cell with and without its value, in both forms.
#include <gtest/gtest.h>

#include <cstring>

#include "contract/sample_ports.h"
#include "pmcli/interface.h"
#include "support/both_forms.h"
#include "support/matchers.h"

namespace pmcli_test {
namespace {

using row_printer = void (*)(cmd_rx_handle_t*, pm_port_info_t*, mts_q_handle_t);

template <void (*Print)(cmd_rx_handle_t*, pm_port_info_t*)>
void without_queue(cmd_rx_handle_t* rx, pm_port_info_t* port, mts_q_handle_t) {
  Print(rx, port);
}

constexpr row_printer kBriefRow = print_eth_port_info_brief;
constexpr row_printer kStatusRow = print_eth_port_status_line;
constexpr row_printer kErrorRow = print_eth_port_err_status_line;
constexpr row_printer kDescriptionRow = without_queue<print_eth_port_description>;
constexpr row_printer kMacRow = without_queue<print_eth_port_mac_address>;
constexpr row_printer kIndexRow = without_queue<print_port_ifindex>;
constexpr row_printer kDebounceRow = without_queue<print_port_debounce>;

constexpr row_printer kRows[] = {kBriefRow, kStatusRow, kErrorRow, kDescriptionRow, kMacRow, kIndexRow, kDebounceRow};

std::string shown(RecordingPlatform& platform, row_printer print, if_index_t if_index, const pm_port_info_t& record) {
  pm_port_info_t port = named(if_index, record);
  platform.clear_output();
  print(platform.output(), &port, RecordingPlatform::q());
  return platform.text();
}

// The text of one cell: what the piece printed that bound this tuple.
std::string cell(const RecordingPlatform& platform, uint32 tuple) {
  for (const printed_piece& piece : platform.pieces)
    for (const bound_tuple& bound : piece.tuples)
      if (bound.id == tuple) return piece.text;
  return "(not bound)";
}

pm_port_info_t described(const std::string& text) {
  pm_port_info_t port = port_record();
  set_description(port, text);
  return port;
}

// ---- Brief row -----------------------------------------------------------------------------------------------------

TEST(BriefRow, OfAPortThatIsUpInWhole) {
  RecordingPlatform platform;
  platform.enum_texts[0x01D9] = {{1, "up"}};
  platform.enum_texts[0x0282] = {{1000, "1000"}};
  platform.addresses[kPort] = {ipv4_address(192, 0, 2, 1, 24)};
  EXPECT_EQ(shown(platform, kBriefRow, kPort, port_record()),
            "Ethernet1/1              "
            "up         "
            "192.0.2.1         "
            "1000     "
            "1500  "
            "\n");
  EXPECT_EQ(
      platform.tuples(),
      (Tuples{
          {0x0C2A01D8, kPort}, {0x022A01D9, 1}, {0x1E2A0276, "192.0.2.1"}, {0x022A0282, 1000}, {0x142A0278, 1500}}));
  EXPECT_EQ(platform.terminal(), "");
  EXPECT_EQ(platform.short_rows, 0U);
  EXPECT_EQ(platform.sends, 0U);
}

TEST(BriefRow, OfADownPortWithoutAnythingInWhole) {
  RecordingPlatform platform;
  platform.enum_texts[0x01DA] = {{2, "none"}, {17, "isolated"}};
  pm_port_info_t port{};
  port.oper_port_state = PM_PORT_STATE_DOWN;
  port.oper_state_reason = 25;  // of the family of 17
  EXPECT_EQ(shown(platform, kBriefRow, kPort, port),
            "Ethernet1/1              "
            "isolated   "
            "--                "
            "--       "
            "--    "
            "\n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x0C2A01D8, kPort}, {0x022A01DA, 17}}));
}

TEST(BriefRow, CellsAreCutToTheirWidth) {
  RecordingPlatform platform;
  platform.names[kPort] = "an-interface-with-a-very-long-name";
  platform.enum_texts[0x01D9] = {{1, "administratively"}};
  platform.enum_texts[0x0282] = {{1000, "1000000000"}};
  platform.addresses[kPort] = {ipv4_address(255, 255, 255, 255, 32)};
  pm_port_info_t port = port_record();
  port.admin_rxbufsize = 65535;
  EXPECT_EQ(shown(platform, kBriefRow, kPort, port),
            "an-interface-with-a-very "
            "administra "
            "255.255.255.255   "
            "10000000 "
            "65535 "
            "\n");
}

TEST(BriefRow, SixKindsHaveOne) {
  for (uint32 type = 0; type <= 255; ++type) {
    const bool has_row = type == 2 || type == 4 || type == 5 || type == 20 || type == 22 || type == 31;
    RecordingPlatform platform;
    platform.types[kPort] = static_cast<if_index_type_t>(type);
    const std::string text = shown(platform, kBriefRow, kPort, port_record());
    if (has_row) {
      EXPECT_EQ(text, "Ethernet1/1              1          --                1000     1500  \n") << type;
      continue;
    }
    EXPECT_EQ(text, "error: invalid if index type(" + std::to_string(type) + ")\n");
    EXPECT_EQ(platform.terminal(), text);
    EXPECT_EQ(platform.count("ipconf_get_if_inet_addrs"), 0U);
  }
}

TEST(BriefRow, InterfaceWhoseKindCannotBeReadHasNone) {
  RecordingPlatform platform;
  platform.fail_with("if_index_get_type", PM_ERR_GENERAL);
  EXPECT_EQ(shown(platform, kBriefRow, kPort, port_record()), "error: invalid if index type(0)\n");
}

TEST(BriefRow, LoopbackShowsItsStateAlways) {
  for (const uint8 state : {uint8{0}, uint8{1}, uint8{2}, uint8{255}}) {
    RecordingPlatform platform;
    pm_port_info_t port = port_record();
    port.oper_port_state = state;
    shown(platform, kBriefRow, loopback(0), port);
    EXPECT_EQ(bound_to(platform, 0x022A01D9), tuple_value(state));
    EXPECT_EQ(bound_to(platform, 0x022A01DA), tuple_value("(not bound)"));
  }
}

TEST(BriefRow, OtherKindsShowTheFamilyOfTheReasonUnlessTheyAreUp) {
  struct reason_case {
    uint8 reason;
    uint8 family;
  };
  constexpr reason_case kReasons[] = {
      {0, 0},    {1, 1},   {2, 2},   {11, 1},  {12, 1},   {30, 5},    {194, 5}, {79, 2},    {90, 7},    {33, 14},
      {137, 17}, {48, 47}, {51, 49}, {53, 52}, {68, 104}, {110, 115}, {91, 5},  {195, 195}, {220, 220}, {255, 255},
  };
  for (const reason_case& down : kReasons) {
    for (const if_index_t if_index : {kPort, kChannel, kOldChannel, satellite(100, 1, 1), mgmt()}) {
      for (const uint8 state : {uint8{0}, uint8{2}, uint8{255}}) {
        RecordingPlatform platform;
        pm_port_info_t port = port_record();
        port.oper_port_state = state;
        port.oper_state_reason = down.reason;
        shown(platform, kBriefRow, if_index, port);
        EXPECT_EQ(bound_to(platform, 0x022A01DA), tuple_value(down.family)) << "reason " << int{down.reason};
        EXPECT_EQ(bound_to(platform, 0x022A01D9), tuple_value("(not bound)"));
      }
    }
  }
}

constexpr char kWithoutAddress[] = "Ethernet1/1              1          --                1000     1500  \n";

TEST(BriefRow, OnlyAFirstAddressOfIpv4IsShown) {
  ipconf_if_inet_addr_info_t of_no_family = ipv4_address(10, 0, 0, 1, 8);
  of_no_family.inet_addr.addr_type = INET_ADDR_TYPE_UNKNOWN;
  const std::vector<std::vector<ipconf_if_inet_addr_info_t>> kOthers = {
      {}, {ipv6_address(64)}, {ipv6_address(64), ipv4_address(10, 0, 0, 1, 8)}, {of_no_family}};
  for (const auto& addresses : kOthers) {
    RecordingPlatform platform;
    platform.addresses[kPort] = addresses;
    EXPECT_EQ(shown(platform, kBriefRow, kPort, port_record()), kWithoutAddress);
  }
  RecordingPlatform platform;
  platform.addresses[kPort] = {ipv4_address(10, 0, 0, 1, 8), ipv4_address(10, 0, 0, 2, 8), ipv6_address(64)};
  shown(platform, kBriefRow, kPort, port_record());
  EXPECT_EQ(cell(platform, 0x1E2A0276), "10.0.0.1          ");
}

TEST(BriefRow, FailedAddressQueryShowsDashesAndFreesWhatItGave) {
  RecordingPlatform platform;
  platform.addresses[kPort] = {ipv4_address(10, 0, 0, 1, 8)};
  platform.address_result = PM_ERR_GENERAL;
  EXPECT_EQ(shown(platform, kBriefRow, kPort, port_record()), kWithoutAddress);
  platform.fail_with("ipconf_get_if_inet_addrs", -1);
  EXPECT_EQ(shown(platform, kBriefRow, kPort, port_record()), kWithoutAddress);
}

TEST(BriefRow, SpeedAndMtuThatAreZeroAreAbsent) {
  RecordingPlatform platform;
  pm_port_info_t port = port_record();
  port.oper_port_speed = 0;
  port.admin_port_speed = 100;
  port.admin_rxbufsize = 0;
  EXPECT_EQ(shown(platform, kBriefRow, kPort, port),
            "Ethernet1/1              1          --                --       --    \n");
  port.oper_port_speed = 1;
  port.admin_rxbufsize = 1;
  EXPECT_EQ(shown(platform, kBriefRow, kPort, port),
            "Ethernet1/1              1          --                1        1     \n");
}

// ---- Status row ----------------------------------------------------------------------------------------------------

const if_index_t kSatellitePort = satellite(100, 1, 1);

TEST(StatusRow, OfARoutablePortInWhole) {
  RecordingPlatform platform;
  platform.enum_texts[0x0614] = {{1, "up"}};
  platform.enum_texts[0x0616] = {{11, "full"}};
  platform.capabilities[kRoutablePort] = port_capabilities("10Gbase-SR");
  platform.access_vlans[kRoutablePort] = 100;
  EXPECT_EQ(shown(platform, kStatusRow, kRoutablePort, described("uplink")),
            "Eth1/2         "
            "uplink             "
            "up       "
            "100       "
            "full    "
            "1000    "
            "10Gbase-SR \n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x0C2A0612, kRoutablePort},
                                       {0x302A0613, "uplink"},
                                       {0x022A0614, 1},
                                       {0x302A0615, "100"},
                                       {0x022A0616, 11},
                                       {0x022A0617, 1000},
                                       {0x302A0618, "10Gbase-SR"}}));
  EXPECT_EQ(platform.terminal(), "");
  EXPECT_EQ(platform.short_rows, 1U);
  EXPECT_EQ(platform.sends, 0U);
}

TEST(StatusRow, OfAnEthernetPortHasNoVlanCell) {
  RecordingPlatform platform;
  platform.capabilities[kPort] = port_capabilities("1000base-T");
  EXPECT_EQ(shown(platform, kStatusRow, kPort, port_record()),
            "Eth1/1         "
            "--                 "
            "1        "
            "11      "
            "1000    "
            "1000base-T \n");
  EXPECT_EQ(bound_to(platform, 0x302A0615), tuple_value("(not bound)"));
  EXPECT_THAT(platform.interface_manager_starts, IsEmpty());
}

TEST(StatusRow, OfOtherKindsHasNoType) {
  struct kind_case {
    if_index_t if_index;
    const char* text;
  };
  const kind_case kKinds[] = {
      {kChannel, "Po3            --                 1        1         11      1000    --         \n"},
      {kOldChannel, "Po4            --                 1        1         11      1000    --         \n"},
      {kSatellitePort, "Eth100/1/1     --                 1        1         11      1000    --         \n"},
      {vethernet(7), "Veth7          --                 1        1         11      1000    --         \n"},
      {fibre_channel(1, 1), "fc1/1          --                 1        1         11      1000    --         \n"},
      {mgmt(), "mgmt0          --                 1        routed    11      1000    --         \n"},
      {loopback(0), "Lo0            --                 1        routed    11      1000    --         \n"},
  };
  for (const kind_case& kind : kKinds) {
    RecordingPlatform platform;
    platform.capabilities[kind.if_index] = port_capabilities("1000base-T");
    EXPECT_EQ(shown(platform, kStatusRow, kind.if_index, port_record()), kind.text);
    EXPECT_THAT(platform.loader_events, IsEmpty());
    EXPECT_THAT(platform.port_queries, IsEmpty());
  }
}

TEST(StatusRow, CellsByKind) {
  for (uint32 type = 0; type <= 255; ++type) {
    RecordingPlatform platform;
    platform.types[kPort] = static_cast<if_index_type_t>(type);
    platform.capabilities[kPort] = port_capabilities("1000base-T");
    platform.access_vlans[kPort] = 7;
    shown(platform, kStatusRow, kPort, port_record());
    const char* const vlan = type == 2 ? "(not bound)" : type == 20 || type == 5 ? "routed" : "7";
    EXPECT_EQ(bound_to(platform, 0x302A0615), tuple_value(vlan)) << type;
    EXPECT_EQ(platform.interface_manager_starts.size(), *vlan == '7' ? 1U : 0U) << type;
    EXPECT_EQ(bound_to(platform, 0x302A0618), tuple_value(type == 2 || type == 26 ? "1000base-T" : "--")) << type;
  }
}

TEST(StatusRow, CellsAreCutToTheirWidth) {
  RecordingPlatform platform;
  platform.short_names[kRoutablePort] = "a-rather-long-short-name";
  platform.enum_texts[0x0614] = {{1, "administratively"}};
  platform.enum_texts[0x0616] = {{11, "half-duplex"}};
  platform.enum_texts[0x0617] = {{1000, "1000 Mb/s"}};
  platform.capabilities[kRoutablePort] = port_capabilities("10/100/1000BaseTX");
  EXPECT_EQ(shown(platform, kStatusRow, kRoutablePort, described("a description of 31 characters!")),
            "a-rather-long- "
            "a description of 3 "
            "administ "
            "1         "
            "half-du "
            "1000 Mb "
            "10/100/1000\n");
}

TEST(StatusRow, DuplexIsTheConfiguredOneForIpStorageOnly) {
  for (const uint32 mode : {0x200U, 0U, 0x100U, 0x201U, 0x80000U, 0x100000U}) {
    RecordingPlatform platform;
    shown(platform, kStatusRow, kChannel, port_record_in_mode(mode));
    EXPECT_EQ(bound_to(platform, 0x022A0616), tuple_value(mode == 0x200 ? 12 : 11)) << mode;
  }
}

TEST(StatusRow, ConfiguredModeDoesNotCount) {
  RecordingPlatform platform;
  pm_port_info_t port = port_record();
  port.admin_port_mode = PM_PORT_MODE_IPS;
  shown(platform, kStatusRow, kChannel, port);
  EXPECT_EQ(bound_to(platform, 0x022A0616), tuple_value(11));
  port.admin_port_mode = PM_PORT_MODE_TRUNK;
  shown(platform, kStatusRow, kChannel, port);
  EXPECT_EQ(bound_to(platform, 0x302A0615), tuple_value("1"));
}

TEST(StatusRow, SpeedIsTheConfiguredOneUnlessThePortIsUp) {
  for (const uint8 state : {uint8{0}, uint8{1}, uint8{2}, uint8{255}}) {
    RecordingPlatform platform;
    pm_port_info_t port = port_record();
    port.oper_port_state = state;
    port.admin_port_speed = 100;
    shown(platform, kStatusRow, kPort, port);
    EXPECT_EQ(bound_to(platform, 0x022A0614), tuple_value(state));
    EXPECT_EQ(bound_to(platform, 0x022A0617), tuple_value(state == 1 ? 1000 : 100));
  }
}

// ---- Status row: the VLAN ------------------------------------------------------------------------------------------

std::string vlan_cell(RecordingPlatform& platform, const pm_port_info_t& port = port_record()) {
  shown(platform, kStatusRow, kChannel, port);
  return cell(platform, 0x302A0615);
}

TEST(StatusVlan, LayerDecides) {
  for (const uint32 layer : {0U, 1U, 3U, 4U, 0x20000U, 0xFFFFFFFFU}) {
    RecordingPlatform platform;
    platform.layers[kChannel] = layer;
    EXPECT_EQ(vlan_cell(platform), "routed    ") << layer;
    EXPECT_EQ(vlan_cell(platform, port_record_in_mode(PM_PORT_MODE_TRUNK)), "routed    ") << layer;
  }
}

TEST(StatusVlan, TrunkIsAWord) {
  RecordingPlatform platform;
  platform.access_vlans[kChannel] = 7;
  EXPECT_EQ(vlan_cell(platform, port_record_in_mode(PM_PORT_MODE_TRUNK)), "trunk     ");
  EXPECT_EQ(vlan_cell(platform, port_record_in_mode(PM_PORT_MODE_TRUNK | PM_PORT_MODE_ACCESS)), "7         ");
}

TEST(StatusVlan, AccessVlanIsANumber) {
  for (const uint16 vlan : {uint16{0}, uint16{1}, uint16{4094}, uint16{65535}}) {
    RecordingPlatform platform;
    platform.access_vlans[kChannel] = vlan;
    vlan_cell(platform);
    EXPECT_EQ(bound_to(platform, 0x302A0615), tuple_value(std::to_string(vlan)));
  }
}

TEST(StatusVlan, FailedQueryShowsDashesBehindItsMessage) {
  const std::string before = "Po3            --                 1        ";
  const std::string after = "--        11      1000    --         \n";
  struct failure_case {
    const char* call;
    const char* message;
  };
  constexpr failure_case kFailures[] = {
      {"im_ext_sbcr_init", "im_ext_sbcr_init failed: 0x40290000 (<system error 40290000>)\n"},
      {"im_get_ifindex_layermode_list",
       "layermode query on if_idx 0x5a003000 failed: \nstatus: 0x40290000 - <system error 40290000>\n"
       "if_info_status: 0x0\n"},
      {"im_get_ifindex_access_vlan_list",
       "im_get_ifindex_access_vlan_list failed for 0x5a003000 \nstatus: 0x40290000 - <system error 40290000>\n"
       "if_info_status: 0x0\n"},
  };
  for (const failure_case& failure : kFailures) {
    RecordingPlatform platform;
    platform.fail_with(failure.call, PM_ERR_GENERAL);
    EXPECT_EQ(shown(platform, kStatusRow, kChannel, port_record()), before + failure.message + after);
    EXPECT_EQ(platform.terminal(), failure.message);
  }
}

// A record that the interface manager itself rejects is no failed call.
TEST(StatusVlan, RejectedRecordWithoutALayerShowsRouted) {
  RecordingPlatform platform;
  platform.interface_manager_status = 5;
  platform.layers[kChannel] = 0;
  EXPECT_EQ(vlan_cell(platform), "routed    ");
}

// ---- Status row: the type ------------------------------------------------------------------------------------------

pm_fcot_res_t transceiver(uint8 type, uint8 is_supported = FCOT_SUPPORTED) {
  pm_fcot_res_t response;
  std::memset(&response, 0, sizeof response);
  response.is_fcot_supported = is_supported;
  response.fcot_type = type;
  return response;
}

// Both vendors' texts fill their fields, and what lies behind them is no blank.
pm_fcot_res_t full_transceiver(uint8 type, uint8 is_supported = FCOT_SUPPORTED) {
  pm_fcot_res_t response = transceiver(type, is_supported);
  std::memset(&response.fi, '#', sizeof response.fi);
  if (type == FCOT_TYPE_X2)
    std::memcpy(response.fi.x2_fcot_info.vendor_name, "X2-VENDOR-OF-16-", 16);
  else
    std::memcpy(response.fi.fcot_info.VendorName, "SFP-VENDOR-OF-16", 16);
  return response;
}

octets block_of(const pm_fcot_res_t& response) {
  octets block(sizeof response);
  std::memcpy(block.data(), &response, sizeof response);
  return block;
}

// The value of the cell on a port whose card names no type.
tuple_value transceiver_type(RecordingPlatform& platform, if_index_t if_index = kPort) {
  platform.capabilities[if_index] = port_capabilities("");
  shown(platform, kStatusRow, if_index, port_record());
  return bound_to(platform, 0x302A0618);
}

TEST(StatusType, CardIsAskedForEthernetPortsAlone) {
  for (const if_index_t if_index : {kPort, kRoutablePort}) {
    RecordingPlatform platform;
    platform.capabilities[if_index] = port_capabilities("1000base-T");
    platform.transceivers[if_index] = full_transceiver(FCOT_TYPE_SFP);
    shown(platform, kStatusRow, if_index, port_record());
    EXPECT_EQ(cell(platform, 0x302A0618), "1000base-T \n");
    EXPECT_EQ(platform.loader_events,
              (std::vector<std::string>{"open libcrdcfg.so lazy", "find crdcfg_get_port_cap", "close libcrdcfg.so"}));
    EXPECT_THAT(platform.port_queries, IsEmpty());
  }
}

TEST(StatusType, TextOfTheCardIsBoundWholeUpTo31Characters) {
  RecordingPlatform platform;
  platform.capabilities[kPort] = port_capabilities("0123456789abcdefghijklmnopqrstuv");  // 32, not terminated
  shown(platform, kStatusRow, kPort, port_record());
  EXPECT_EQ(bound_to(platform, 0x302A0618), tuple_value("0123456789abcdefghijklmnopqrstu"));
  EXPECT_EQ(cell(platform, 0x302A0618), "0123456789a\n");
}

TEST(StatusType, TransceiverIsNotAskedWhenTheCardFails) {
  RecordingPlatform platform;
  platform.transceivers[kPort] = full_transceiver(FCOT_TYPE_SFP);
  EXPECT_EQ(shown(platform, kStatusRow, kPort, port_record()),
            "Eth1/1         --                 1        11      1000    "
            "crdcfg_get_port_cap failed with <system error 40290037>\n"
            "--         \n");
  EXPECT_EQ(bound_to(platform, 0x302A0618), tuple_value("--"));
  EXPECT_THAT(platform.port_queries, IsEmpty());

  platform.libraries.erase(CRDCFG_LIBRARY);
  EXPECT_EQ(shown(platform, kStatusRow, kPort, port_record()),
            "Eth1/1         --                 1        11      1000    --         \n");
}

TEST(StatusType, TransceiverIsAskedForOnceAndForThisPort) {
  RecordingPlatform platform;
  platform.transceivers[kPort] = full_transceiver(FCOT_TYPE_SFP);
  EXPECT_EQ(transceiver_type(platform), tuple_value("SFP-VENDOR-OF-16"));
  EXPECT_EQ(cell(platform, 0x302A0618), "SFP-VENDOR-\n");
  expect_one_query(platform, kPort);
}

TEST(StatusType, VendorsOfThreeTypesOfTransceiverAreNamed) {
  for (uint32 type = 0; type <= 255; ++type) {
    for (const if_index_t if_index : {kPort, kRoutablePort}) {
      RecordingPlatform platform;
      platform.transceivers[if_index] = full_transceiver(static_cast<uint8>(type));
      const char* const vendor = type == 1 || type == 4 ? "SFP-VENDOR-OF-16" : type == 2 ? "X2-VENDOR-OF-16-" : "--";
      EXPECT_EQ(transceiver_type(platform, if_index), tuple_value(vendor)) << type;
    }
  }
}

TEST(StatusType, TransceiverWithoutSupportIsNotNamed) {
  for (const uint8 type : {FCOT_TYPE_SFP, FCOT_TYPE_X2, FCOT_TYPE_SFP_PLUS}) {
    RecordingPlatform platform;
    platform.transceivers[kPort] = full_transceiver(type, 0);
    EXPECT_EQ(transceiver_type(platform), tuple_value("--"));
    for (const uint8 supported : {uint8{2}, uint8{255}}) {
      platform.transceivers[kPort] = full_transceiver(type, supported);
      EXPECT_NE(transceiver_type(platform), tuple_value("--"));
    }
  }
}

TEST(StatusType, BlanksOfAVendorStay) {
  RecordingPlatform platform;
  pm_fcot_res_t sfp = transceiver(FCOT_TYPE_SFP);
  std::memcpy(sfp.fi.fcot_info.VendorName, "ACME            ", 16);
  platform.transceivers[kPort] = sfp;
  EXPECT_EQ(transceiver_type(platform), tuple_value("ACME            "));
  EXPECT_EQ(cell(platform, 0x302A0618), "ACME       \n");
}

TEST(StatusType, VendorEndsAtItsEnd) {
  RecordingPlatform platform;
  pm_fcot_res_t x2 = full_transceiver(FCOT_TYPE_X2);
  std::memcpy(x2.fi.x2_fcot_info.vendor_name, "ACME\0hidden", 11);
  platform.transceivers[kPort] = x2;
  EXPECT_EQ(transceiver_type(platform), tuple_value("ACME"));
}

TEST(StatusType, ResponseThatIsTooShortNamesNobody) {
  const octets whole = block_of(full_transceiver(FCOT_TYPE_SFP));
  ASSERT_EQ(whole.size(), 267U);
  for (std::size_t length = 0; length <= whole.size(); ++length) {
    RecordingPlatform platform;
    platform.transceiver_block = octets(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
    EXPECT_EQ(transceiver_type(platform), tuple_value(length < 267 ? "--" : "SFP-VENDOR-OF-16")) << length;
  }
}

TEST(StatusType, OnlyTheFirstOfManyResponsesCounts) {
  RecordingPlatform platform;
  octets block = block_of(full_transceiver(FCOT_TYPE_X2));
  const octets second = block_of(full_transceiver(FCOT_TYPE_SFP));
  block.insert(block.end(), second.begin(), second.end());
  platform.transceiver_block = block;
  EXPECT_EQ(transceiver_type(platform), tuple_value("X2-VENDOR-OF-16-"));
}

TEST(StatusType, FailedTransceiverQueryNamesNobody) {
  for (const int32 error : {-1, int32{PM_ERR_NO_TRANSCEIVER}}) {
    RecordingPlatform platform;
    platform.transceivers[kPort] = full_transceiver(FCOT_TYPE_SFP);
    platform.fail_with("pm_cmi_get_fcot_info", error);
    EXPECT_EQ(transceiver_type(platform), tuple_value("--"));
    EXPECT_EQ(platform.terminal(), "");
  }
}

// ---- Error-status row ----------------------------------------------------------------------------------------------

TEST(ErrorStatusRow, OfAnErrorDisabledPortInWhole) {
  RecordingPlatform platform;
  platform.enum_texts[0x061B] = {{2, "down"}};
  platform.enum_texts[0x061D] = {{46, "BPDU guard"}};
  pm_port_info_t port = down_port_record();
  set_description(port, "uplink");
  port.oper_state_reason = 46;
  EXPECT_EQ(shown(platform, kErrorRow, kPort, port),
            "Eth1/1     "
            "uplink             "
            "down     "
            "BPDU guard\n");
  EXPECT_EQ(platform.tuples(),
            (Tuples{{0x0C2A0619, kPort}, {0x302A061A, "uplink"}, {0x022A061B, 2}, {0x022A061D, 46}}));
  EXPECT_EQ(platform.short_rows, 1U);
  EXPECT_EQ(platform.sends, 0U);
}

TEST(ErrorStatusRow, ReasonsOfOtherFamiliesShowTheValue2) {
  constexpr uint8 kErrorDisabled[] = {5,   30,  31,  32,  37,  41,  42,  45,  46,  64,  78,  91,  103, 126,
                                      143, 144, 145, 146, 151, 157, 163, 164, 165, 166, 192, 193, 194};
  for (uint32 reason = 0; reason <= 255; ++reason) {
    const bool is_error_disabled =
        std::find(std::begin(kErrorDisabled), std::end(kErrorDisabled), reason) != std::end(kErrorDisabled);
    RecordingPlatform platform;
    pm_port_info_t port = down_port_record();
    port.oper_state_reason = static_cast<uint8>(reason);
    EXPECT_EQ(shown(platform, kErrorRow, kPort, port),
              "Eth1/1     --                 2        " + std::to_string(is_error_disabled ? reason : 2) + "\n");
  }
}

TEST(ErrorStatusRow, CellsAreCutToTheirWidthButTheLast) {
  RecordingPlatform platform;
  platform.short_names[kPort] = "a-rather-long-short-name";
  platform.enum_texts[0x061B] = {{1, "administratively"}};
  platform.enum_texts[0x061D] = {{2, "a reason that is longer than any other cell of this table"}};
  EXPECT_EQ(shown(platform, kErrorRow, kPort, described("a description of 31 characters!")),
            "a-rather-l "
            "a description of 3 "
            "administ "
            "a reason that is longer than any other cell of this table\n");
}

// ---- Descriptions --------------------------------------------------------------------------------------------------

TEST(DescriptionRow, InWhole) {
  RecordingPlatform platform;
  EXPECT_EQ(shown(platform, kDescriptionRow, kPort, described("uplink to core")),
            "Ethernet1/1              uplink to core\n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x0C2A0001, kPort}, {0x302A0006, "uplink to core"}}));
  EXPECT_EQ(platform.short_rows, 0U);
  EXPECT_EQ(platform.sends, 0U);
}

TEST(DescriptionRow, EmptyDescriptionShowsDashes) {
  RecordingPlatform platform;
  EXPECT_EQ(shown(platform, kDescriptionRow, kPort, port_record()), "Ethernet1/1              --\n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x0C2A0001, kPort}}));
  EXPECT_EQ(platform.terminal(), "");
}

TEST(DescriptionRow, LongNameOfTheInterfaceIsCut) {
  RecordingPlatform platform;
  platform.names[kPort] = "an-interface-with-a-very-long-name";
  EXPECT_EQ(shown(platform, kDescriptionRow, kPort, port_record()), "an-interface-with-a-very --\n");
}

// Its field of 81 bytes is full, and what follows it in the record is no end.
TEST(Descriptions, EndWithTheirField) {
  const std::string full(81, 'x');
  pm_port_info_t port = described(full);
  port.admin_port_mode = 0x79797979;
  RecordingPlatform platform;
  EXPECT_EQ(shown(platform, kDescriptionRow, kPort, port), "Ethernet1/1              " + full + "\n");
  shown(platform, kStatusRow, kPort, port);
  EXPECT_EQ(bound_to(platform, 0x302A0613), tuple_value(full));
  EXPECT_EQ(cell(platform, 0x302A0613), "xxxxxxxxxxxxxxxxxx ");
  shown(platform, kErrorRow, kPort, port);
  EXPECT_EQ(bound_to(platform, 0x302A061A), tuple_value(full));
}

TEST(Descriptions, AreNoFormats) {
  constexpr char kOddText[] = "100%s %n %d%%";
  RecordingPlatform platform;
  EXPECT_EQ(shown(platform, kDescriptionRow, kPort, described(kOddText)), "Ethernet1/1              100%s %n %d%%\n");
  shown(platform, kStatusRow, kPort, described(kOddText));
  EXPECT_EQ(cell(platform, 0x302A0613), "100%s %n %d%%      ");
  platform.capabilities[kPort] = port_capabilities("%s%n 50%");
  shown(platform, kStatusRow, kPort, port_record());
  EXPECT_EQ(cell(platform, 0x302A0618), "%s%n 50%   \n");
}

// ---- MAC addresses -------------------------------------------------------------------------------------------------

TEST(MacAddressRow, InWhole) {
  RecordingPlatform platform;
  EXPECT_EQ(shown(platform, kMacRow, kPort, port_record()),
            "Ethernet1/1                02aa.bbcc.ddee  0210.2030.4050\n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x0C2A007B, kPort}, {0x0F2A007C, kRouterMac}, {0x0F2A007D, kBurnedInMac}}));
  EXPECT_EQ(platform.short_rows, 0U);
}

TEST(MacAddressRow, LongNameOfTheInterfaceIsCut) {
  RecordingPlatform platform;
  platform.names[kPort] = "an-interface-with-a-very-long-name";
  EXPECT_EQ(shown(platform, kMacRow, kPort, {}), "an-interface-with-a-very-l 0000.0000.0000  0000.0000.0000\n");
}

// ---- Interface indexes ---------------------------------------------------------------------------------------------

TEST(IfIndexRow, InWhole) {
  RecordingPlatform platform;
  platform.short_names[0x1A2B3C4D] = "Eth104/1/11";
  EXPECT_EQ(shown(platform, kIndexRow, 0x1A2B3C4D, port_record()), "Eth104/1/11     439041101  (0x1a2b3c4d)\n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x0C2A05E9, 0x1A2B3C4D}, {0x142A05EB, 0x1A2B3C4D}, {0x222A05EA, 0x1A2B3C4D}}));
  EXPECT_EQ(platform.short_rows, 1U);
}

TEST(IfIndexRow, LongestNumberFillsItsCells) {
  RecordingPlatform platform;
  platform.short_names[0xFFFFFFFF] = "a-rather-long-short-name";
  EXPECT_EQ(shown(platform, kIndexRow, 0xFFFFFFFF, {}), "a-rather-long-  4294967295 (0xffffffff)\n");
}

// ---- Debounce ------------------------------------------------------------------------------------------------------

TEST(DebounceRow, InWhole) {
  RecordingPlatform platform;
  pm_port_info_t port = port_record();
  port.admin_port_link_debounce = 5000;
  EXPECT_EQ(shown(platform, kDebounceRow, kPort, port), "Eth1/1        enable              5000\n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x0C2A05E6, kPort}, {0x302A05E7, "enable"}, {0x142A05E8, 5000}}));
  EXPECT_EQ(platform.short_rows, 1U);
}

TEST(DebounceRow, TimeOfZeroIsDisabled) {
  RecordingPlatform platform;
  EXPECT_EQ(shown(platform, kDebounceRow, kPort, port_record()), "Eth1/1        disable                0\n");
}

TEST(DebounceRow, AnyOtherTimeIsEnabled) {
  for (const uint16 time : {uint16{1}, uint16{256}, uint16{65535}}) {
    RecordingPlatform platform;
    pm_port_info_t port = port_record();
    port.admin_port_link_debounce = time;
    shown(platform, kDebounceRow, kPort, port);
    EXPECT_EQ(bound_to(platform, 0x302A05E7), tuple_value("enable"));
    EXPECT_EQ(bound_to(platform, 0x142A05E8), tuple_value(time));
  }
}

TEST(DebounceRow, LongNameOfTheInterfaceIsCut) {
  RecordingPlatform platform;
  platform.short_names[kPort] = "a-rather-long-short-name";
  EXPECT_EQ(shown(platform, kDebounceRow, kPort, port_record()), "a-rather-long disable                0\n");
}

// ---- All rows ------------------------------------------------------------------------------------------------------

TEST(Rows, EndWithOneNewline) {
  for (const row_printer print : kRows) {
    RecordingPlatform platform;
    platform.capabilities[kPort] = port_capabilities("1000base-T");
    const std::string text = shown(platform, print, kPort, described("uplink"));
    EXPECT_EQ(text.find('\n'), text.size() - 1) << text;
  }
}

TEST(Rows, RecordFullOfOnesIsShown) {
  for (const row_printer print : kRows) {
    for (const if_index_t if_index : {kPort, kRoutablePort, kChannel, mgmt(), loopback(0), kSatellitePort}) {
      pm_port_info_t port;
      std::memset(&port, 0xFF, sizeof port);
      RecordingPlatform platform;
      platform.capabilities[if_index] = port_capabilities("");
      platform.transceiver_block = octets(267, 0xFF);
      const std::string text = shown(platform, print, if_index, port);
      EXPECT_EQ(text.back(), '\n');
    }
  }
}

// ---- Both forms ----------------------------------------------------------------------------------------------------

pm_port_info_t distinct_port() {
  pm_port_info_t port = described("uplink to core");
  port.oper_port_speed = 10000;
  port.admin_port_speed = 40000;
  port.admin_rxbufsize = 9216;
  port.admin_port_link_debounce = 300;
  return port;
}

void show_distinct_row(RecordingPlatform& platform, row_printer print, if_index_t if_index,
                       const pm_port_info_t& port) {
  platform.addresses[if_index] = {ipv4_address(192, 0, 2, 1, 24)};
  platform.access_vlans[if_index] = 4094;
  platform.capabilities[if_index] = port_capabilities("10Gbase-SR");
  shown(platform, print, if_index, port);
}

TEST(BothForms, BriefRows) {
  RecordingPlatform platform;
  show_distinct_row(platform, kBriefRow, kPort, distinct_port());
  expect_both_forms_agree(platform, {0x0C2A01D8, 0x022A01D9, 0x1E2A0276, 0x022A0282, 0x142A0278});

  pm_port_info_t down = distinct_port();
  down.oper_port_state = 3;
  show_distinct_row(platform, kBriefRow, kPort, down);
  expect_both_forms_agree(platform, {0x0C2A01D8, 0x022A01DA, 0x1E2A0276, 0x022A0282, 0x142A0278});
}

TEST(BothForms, StatusRows) {
  RecordingPlatform platform;
  show_distinct_row(platform, kStatusRow, kRoutablePort, distinct_port());
  expect_both_forms_agree(platform,
                          {0x0C2A0612, 0x302A0613, 0x022A0614, 0x302A0615, 0x022A0616, 0x022A0617, 0x302A0618});

  show_distinct_row(platform, kStatusRow, kPort, distinct_port());
  expect_both_forms_agree(platform, {0x0C2A0612, 0x302A0613, 0x022A0614, 0x022A0616, 0x022A0617, 0x302A0618});
}

TEST(BothForms, ErrorStatusRow) {
  RecordingPlatform platform;
  pm_port_info_t port = distinct_port();
  port.oper_state_reason = 30;
  show_distinct_row(platform, kErrorRow, kPort, port);
  expect_both_forms_agree(platform, {0x0C2A0619, 0x302A061A, 0x022A061B, 0x022A061D});
}

TEST(BothForms, OtherRows) {
  RecordingPlatform platform;
  show_distinct_row(platform, kDescriptionRow, kPort, distinct_port());
  expect_both_forms_agree(platform, {0x0C2A0001, 0x302A0006});
  show_distinct_row(platform, kMacRow, kPort, distinct_port());
  expect_both_forms_agree(platform, {0x0C2A007B, 0x0F2A007C, 0x0F2A007D});
  show_distinct_row(platform, kDebounceRow, kPort, distinct_port());
  expect_both_forms_agree(platform, {0x0C2A05E6, 0x302A05E7, 0x142A05E8});
}

// All three cells are of one value.
TEST(BothForms, IfIndexRow) {
  RecordingPlatform platform;
  show_distinct_row(platform, kIndexRow, kPort, distinct_port());
  expect_values_in_text(platform);
  EXPECT_EQ(platform.tuples().size(), 3U);
}

}  // namespace
}  // namespace pmcli_test
