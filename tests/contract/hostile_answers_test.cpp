// Answers of services, and commands of a shell, that no well-behaved one gives.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "contract/sample_ports.h"
#include "pmcli/command.h"
#include "pmcli/interface.h"
#include "support/matchers.h"
#include "support/vlan_libraries.h"

namespace pmcli_test {
namespace {

using show_handler = uint32 (*)(paraminfo_t*);

const show_handler kHandlers[] = {pm_cli_show_eth_port_config, pm_cli_show_sat_eth_port_config,
                                  pm_cli_show_mgmt_port_config, pm_cli_show_loopback_config, pm_cli_show_eth_stat_info};

octets record_block() {
  const pm_port_info_t port = named(kPort, port_record());
  octets block(sizeof port);
  std::memcpy(block.data(), &port, sizeof port);
  return block;
}

// ---- Port records --------------------------------------------------------------------------------------------------

TEST(HostilePortRecord, SuccessWithoutARecordIsAGeneralFailure) {
  const RecordingPlatform::port_config_answer kAnswers[] = {
      {0, std::nullopt}, {1, std::nullopt}, {0xFFFFFFFF, std::nullopt}, {0, record_block()}, {0, octets{}},
  };
  for (const RecordingPlatform::port_config_answer& answer : kAnswers) {
    for (const uint32 command : {1U, 2U, 3U, 13U, 29U, 58U, 104U, 105U}) {
      RecordingPlatform platform;
      platform.port_config = answer;
      pm_cli_show_eth_port_info(platform.output(), RecordingPlatform::q(), command, kPort);
      EXPECT_EQ(platform.text(), "error: <system error 40290000>\n");
    }
    RecordingPlatform platform;
    platform.port_config = answer;
    pm_show_eth_stat_info(platform.output(), RecordingPlatform::q(), 1, kPort);
    EXPECT_EQ(platform.text(), "error: <system error 40290000>\n");
  }
}

TEST(HostilePortRecord, OnlyTheFirstOfManyIsShown) {
  RecordingPlatform platform;
  platform.port_config = {0xFFFFFFFF, record_block()};
  pm_cli_show_eth_port_info(platform.output(), RecordingPlatform::q(), 1, kPort);
  EXPECT_THAT(platform.text(), HasSubstr("Ethernet1/1 is 1\n  Hardware: "));
}

TEST(HostilePortRecord, ErrorWithoutATextPrintsAnEmptyOne) {
  RecordingPlatform platform;
  platform.syserr_texts[0x40290001] = std::nullopt;
  platform.fail_with("pm_cmi_get_port_config", 0x40290001);
  pm_cli_show_eth_port_info(platform.output(), RecordingPlatform::q(), 1, kPort);
  EXPECT_EQ(platform.text(), "error: \n");
}

// Nothing in it is terminated, every number is at its largest.
TEST(HostilePortRecord, RecordFullOfOnesIsShownByEveryDisplay) {
  for (const if_index_t if_index : {kPort, ethernet(1, 1, IF_TYPE_ETHERNET_L3), kChannel, mgmt(), loopback(0),
                                    vethernet(1), port_channel(1, IF_TYPE_PORT_CHANNEL)}) {
    for (const uint32 mode : {0xFFFFFFFFU, uint32{PM_PORT_MODE_TRUNK}, uint32{PM_PORT_MODE_IPS}}) {
      pm_port_info_t port;
      std::memset(&port, 0xFF, sizeof port);
      port.if_index = if_index;
      port.admin_port_mode = port.oper_port_mode = mode;
      RecordingPlatform platform;
      platform.ports[if_index] = port;
      for (uint32 command = 0; command <= 105; ++command)
        pm_cli_show_eth_port_info(platform.output(), RecordingPlatform::q(), command, if_index);
      pm_show_eth_stat_info(platform.output(), RecordingPlatform::q(), 1, if_index);
      EXPECT_THAT(platform.text(), HasSubstr("  Description: " + std::string(81, '\xFF') + "\n"));
    }
  }
}

// Bytes behind the description must not be taken for more of it.
TEST(HostilePortRecord, DescriptionEndsWithItsField) {
  RecordingPlatform platform;
  pm_port_info_t port = named(kPort, port_record());
  set_description(port, std::string(81, 'x'));
  port.admin_port_mode = 0x79797979;  // "yyyy", right behind
  print_eth_port_common_info(platform.output(), &port);
  EXPECT_EQ(bound_to(platform, 0x302A01DC), tuple_value(std::string(81, 'x')));
}

// ---- Texts with percent signs and control bytes --------------------------------------------------------------------

constexpr char kOddText[] = "100%s %n %-5.5s%%\x1b[2J\x07 end";

TEST(HostileText, DescriptionIsShownAsItIs) {
  RecordingPlatform platform;
  pm_port_info_t port = named(kPort, port_record());
  set_description(port, kOddText);
  pm_cli_common_show_intf_data_t data{};
  pm_cli_show_port_info(platform.output(), &port, &data);
  EXPECT_THAT(platform.text(), HasSubstr(std::string("  Description: ") + kOddText + "\n"));
  platform.clear_output();
  print_eth_port_common_info(platform.output(), &port);
  EXPECT_THAT(platform.text(), HasSubstr(std::string("    Port description is ") + kOddText + "\n"));
}

TEST(HostileText, CapabilityTextsAreShownAsTheyAre) {
  RecordingPlatform platform;
  platform.ports[kPort] = port_record();
  platform.capabilities[kPort] = port_capabilities("%s%n%d 50%");
  platform.transceiver_block = octets(267, 1);
  pm_cli_show_eth_port_info(platform.output(), RecordingPlatform::q(), 1, kPort);
  EXPECT_THAT(platform.text(), HasSubstr("  11-duplex, 1000, media type is %s%n%d 50%\n"));
}

TEST(HostileText, HardwareAndTimesAreShownAsTheyAre) {
  RecordingPlatform platform;
  pm_port_info_t port = named(kPort, port_record());
  pm_cli_common_show_intf_data_t data{};
  std::strcpy(data.hardware, "%s hardware");
  std::strcpy(data.last_flapped, "%s ago");
  std::strcpy(data.last_cleared, "%n");
  pm_cli_show_port_info(platform.output(), &port, &data);
  EXPECT_THAT(platform.text(), HasSubstr("  Hardware: %s hardware\n"));
  EXPECT_THAT(platform.text(), HasSubstr("  Last link flapped %s ago\n"));
  EXPECT_THAT(platform.text(), HasSubstr(" counters %n\n"));
}

TEST(HostileText, MultiChassisStatusIsShownAsItIsAndEndsWithItsBuffer) {
  RecordingPlatform platform;
  pm_port_info_t port = named(kChannel, port_record());
  pm_cli_common_show_intf_data_t data{};
  data.port_channel = 1;
  platform.multi_chassis_status[kChannel] = kOddText;
  pm_cli_show_port_info(platform.output(), &port, &data);
  EXPECT_THAT(platform.text(), HasSubstr(std::string("port-channel3 is 1\n ") + kOddText + "\n  Hardware: "));

  platform.clear_output();
  platform.multi_chassis_status[kChannel] = std::string(256, 'm');
  pm_cli_show_port_info(platform.output(), &port, &data);
  EXPECT_EQ(bound_to(platform, 0x302A0272), tuple_value(std::string(255, 'm')));
}

TEST(HostileText, ErrorTextsAreShownAsTheyAre) {
  RecordingPlatform platform;
  platform.syserr_texts[0x40290001] = "%s%n 100%";
  platform.fail_with("pm_cmi_get_port_config", 0x40290001);
  pm_cli_show_eth_port_info(platform.output(), RecordingPlatform::q(), 1, kPort);
  EXPECT_EQ(platform.text(), "error: %s%n 100%\n");

  platform.clear_output();
  pm_port_info_t port = named(kPort, port_record());
  port.status = 0x40290001;
  print_eth_port_status(platform.output(), &port);
  EXPECT_EQ(platform.text(), "Ethernet1/1     Error: 40290001:%s%n 100%\n");
}

TEST(HostileText, NamesAreShownAsTheyAre) {
  RecordingPlatform platform;
  platform.names[kPort] = "port %s %n 5%";
  pm_port_info_t port = named(kPort, port_record());
  port.is_part_of_bundle = 1;
  port.bundle_if_index = kPort;
  print_eth_port_common_info(platform.output(), &port);
  EXPECT_THAT(platform.text(), HasSubstr("    Belongs to port %s %n 5%\n"));

  platform.clear_output();
  pm_cli_show_loopback_config(platform.show_command(3, kPort));
  EXPECT_EQ(platform.text(), "This information is not available for port %s %n 5%\n");

  platform.clear_output();
  platform.chassis_type = CHASSIS_UNKNOWN;
  platform.tracked_ports[kChannel] = {kPort};
  pm_show_tracked_port_info(RecordingPlatform::q(), kChannel);
  EXPECT_EQ(platform.text(), "    Linked to 1 port(s)\n      Port linked to interface port %s %n 5%\n");

  platform.clear_output();
  platform.channel_members[kChannel] = {kPort};
  print_port_channel_members(kChannel);
  EXPECT_EQ(platform.text(), "    Member[1] : port %s %n 5%\n");
}

// ---- Transceiver responses -----------------------------------------------------------------------------------------

TEST(HostileTransceiver, ResponseShorterThanItsAnswerIsNone) {
  for (std::size_t length = 0; length <= 12; ++length) {
    RecordingPlatform platform;
    platform.transceiver_block = octets(length, 1);
    pm_cli_common_show_intf_data_t data;
    std::memset(&data, 0xA5, sizeof data);
    pm_cli_get_port_data(kPort, RecordingPlatform::q(), &data);
    EXPECT_EQ(data.fcot_supported != 0, length >= 9) << "length " << length;
  }
}

// ---- Capabilities --------------------------------------------------------------------------------------------------

TEST(HostileCapabilities, TextsThatFillTheirFieldsLoseTheirLastCharacter) {
  RecordingPlatform platform;
  platform.ports[kPort] = port_record();
  platform.capabilities[kPort] = port_capabilities("abcdefghijklmnopqrstuvwxyz012345", 0xFF);
  std::memset(platform.capabilities[kPort].model, 'M', sizeof platform.capabilities[kPort].model);
  std::memset(platform.capabilities[kPort].reserved4, 'R', sizeof platform.capabilities[kPort].reserved4);
  platform.transceiver_block = octets(267, 1);
  pm_cli_show_eth_port_info(platform.output(), RecordingPlatform::q(), 1, kPort);
  EXPECT_EQ(bound_to(platform, 0x302A0287), tuple_value("abcdefghijklmnopqrstuvwxyz01234"));
  EXPECT_EQ(bound_to(platform, 0x302A0273), tuple_value("10/100/1000/10000 Ethernet"));
}

// ---- Address lists -------------------------------------------------------------------------------------------------

uint32 address_type_from(const std::optional<octets>& block) {
  RecordingPlatform platform;
  platform.address_block = block;
  pm_cli_common_show_intf_data_t data;
  pm_cli_get_port_data(loopback(0), RecordingPlatform::q(), &data);
  EXPECT_EQ(platform.text(), "");
  return data.inet_addr.inet_addr.addr_type;
}

TEST(HostileAddresses, EmptyListsAreNotRead) {
  EXPECT_EQ(address_type_from(std::nullopt), 0U);
  EXPECT_EQ(address_type_from(octets(8)), 0U);  // a head that counts none
}

// A good entry behind a count that promises many more.
TEST(HostileAddresses, OnlyTheFirstEntryIsRead) {
  octets block(8 + 28);
  std::fill(block.begin() + 4, block.begin() + 8, uint8{0xFF});
  block[8 + 7] = INET_ADDR_TYPE_IPV4;
  EXPECT_EQ(address_type_from(block), uint32{INET_ADDR_TYPE_IPV4});
}

// ---- Member lists --------------------------------------------------------------------------------------------------

octets member_answer(std::size_t count_at, uint32 count) {
  octets answer(PORT_CHANNEL_MEMBERS_BYTES);
  const be32 number(count);
  std::copy(std::begin(number.bytes), std::end(number.bytes), answer.begin() + static_cast<std::ptrdiff_t>(count_at));
  return answer;
}

std::size_t lines_in(const std::string& text) {
  return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

TEST(HostileMembers, CountIsBelievedUpTo256) {
  struct count_case {
    uint32 count;
    std::size_t shown;
  };
  constexpr count_case kCases[] = {{1, 1},     {255, 255},        {256, 256},       {257, 256},
                                   {512, 256}, {0x80000000, 256}, {0xFFFFFFFF, 256}};
  for (const count_case& members : kCases) {
    RecordingPlatform classic;
    classic.chassis_type = CHASSIS_UNKNOWN;
    classic.member_block = member_answer(8, members.count);
    print_eth_port_channel_members(classic.output(), kChannel);
    EXPECT_EQ(lines_in(classic.text()), members.shown) << members.count;
    classic.clear_output();
    print_port_channel_members(kChannel);
    EXPECT_EQ(lines_in(classic.text()), members.shown) << members.count;
  }
}

TEST(HostileMembers, EthernetFormIsBelievedUpTo256) {
  for (const uint32 count : {256U, 257U, 0xFFFFFFFFU}) {
    RecordingPlatform platform;
    platform.chassis_type = CHASSIS_11;
    platform.member_block = member_answer(18, count);
    print_port_channel_members(kChannel);
    EXPECT_EQ(lines_in(platform.text()), 256U) << count;
    platform.clear_output();
    print_eth_port_channel_members(platform.output(), kChannel);
    EXPECT_EQ(platform.pieces.back().text.size(), 200U);
  }
}

TEST(HostileMembers, LongestNamesAreCutToTheirBuffer) {
  RecordingPlatform platform;
  platform.short_names[kPort] = std::string(60, 'n');
  platform.channel_members[kChannel] = {kPort};
  print_eth_port_channel_members(platform.output(), kChannel);
  EXPECT_EQ(platform.text(), "  Members in this channel: " + std::string(49, 'n') + "\n");
}

TEST(HostileMembers, SuccessWithoutAListIsNoMembers) {
  RecordingPlatform platform;
  print_eth_port_channel_members(platform.output(), kChannel);
  EXPECT_EQ(platform.text(), "  No members\n");
}

// ---- Tracked ports -------------------------------------------------------------------------------------------------

TEST(HostileTrackedPorts, CountIsBelievedUpTo256) {
  struct count_case {
    uint32 count;
    std::size_t shown;
  };
  constexpr count_case kCases[] = {{1, 1}, {256, 256}, {257, 256}, {0x7FFFFFFF, 256}, {0xFFFFFFFF, 256}};
  for (const count_case& tracked : kCases) {
    RecordingPlatform platform;
    platform.chassis_type = CHASSIS_UNKNOWN;
    octets list(12 + 4 * 256);
    const be32 number(tracked.count);
    std::copy(std::begin(number.bytes), std::end(number.bytes), list.begin() + 8);
    platform.tracked_block = list;
    EXPECT_EQ(pm_show_tracked_port_info(RecordingPlatform::q(), kChannel), 0);
    EXPECT_EQ(platform.text().substr(0, platform.text().find('\n')),
              "    Linked to " + std::to_string(tracked.shown) + " port(s)");
    EXPECT_EQ(lines_in(platform.text()), 1 + tracked.shown);
  }
}

// ---- The interface manager, statistics -----------------------------------------------------------------------------

TEST(HostileStatistics, LargestCountersOfAnIpsPortAreShown) {
  RecordingPlatform platform;
  show_eth_intf_resp_t response;
  std::memset(&response, 0xFF, sizeof response);
  platform.eth_stats[kPort] = response;
  pm_port_info_t port = named(kPort, port_record_in_mode(PM_PORT_MODE_IPS));
  print_eth_stat_info(platform.output(), RecordingPlatform::q(), &port);
  EXPECT_THAT(platform.text(), HasSubstr("    4294967295 packets input, 18446744073709551615 bytes\n"));
  EXPECT_THAT(platform.text(), HasSubstr("    5 minutes input rate 0 bits/sec, 0 bytes/sec, 0 frames/sec\n"));
}

TEST(HostileStatistics, NamesOfTheLoaderArePrintedAsTheyAre) {
  RecordingPlatform platform;
  platform.libraries[IP_STATS_LIBRARY] = {};
  platform.loader_error = "%s %n 7%";
  pm_port_info_t port = named(loopback(0), port_record());
  print_eth_stat_info(platform.output(), RecordingPlatform::q(), &port);
  EXPECT_EQ(platform.text(), "error: %s %n 7% in dlsym for ip_get_loopback_counters\n");
}

// ---- Parameter blocks ----------------------------------------------------------------------------------------------

TEST(HostileCommand, NullParameterBlockReturnsZero) {
  for (const show_handler handler : kHandlers) {
    RecordingPlatform platform;
    EXPECT_EQ(handler(nullptr), 0U);
    EXPECT_EQ(platform.text(), "");
    EXPECT_EQ(platform.count("cmd_paraminfo_to_rxhandle"), 0U);
  }
}

TEST(HostileCommand, MissingInterfaceReturnsZeroWithoutAHandle) {
  for (const show_handler handler : kHandlers) {
    for (uint32 command = 0; command <= 110; ++command) {
      for (const bool has_entry : {false, true}) {
        RecordingPlatform platform;
        paraminfo_t* const param = platform.show_command(command, kPort);
        if (has_entry)
          param->arg_list[0]->arg = nullptr;
        else
          param->arg_list[0] = nullptr;
        EXPECT_EQ(handler(param), 0U);
        EXPECT_EQ(platform.text(), "");
        EXPECT_EQ(platform.count("cmd_paraminfo_to_rxhandle"), 0U);
        EXPECT_EQ(platform.sends, 0U);
      }
    }
  }
}

TEST(HostileCommand, MissingFilterShowsNothing) {
  enum class missing { entry, value };
  for (const uint32 command : {27U, 30U, 31U, 32U, 33U, 34U, 35U, 42U, 43U, 50U, 51U}) {
    for (const missing what : {missing::entry, missing::value}) {
      RecordingPlatform platform;
      platform.ports[kPort] = port_record();
      uint32 module = 1;
      paraminfo_t* const param = platform.show_command(command, kPort);
      platform.add_argument(param, command == 31 ? PARAM_TYPE_INT_RANGES : PARAM_TYPE_UINT32, &module);
      if (what == missing::entry) param->arg_list[1] = nullptr;
      if (what == missing::value) param->arg_list[1]->arg = nullptr;
      EXPECT_EQ(pm_cli_show_eth_port_config(param), 0U);
      EXPECT_EQ(platform.text(), "");
      EXPECT_THAT(platform.port_queries, IsEmpty());
      EXPECT_THAT(platform.loader_events, IsEmpty());
      EXPECT_EQ(platform.sends, 1U);
    }
  }
}

TEST(HostileCommand, InterfaceIsTakenWhateverTheCountSays) {
  for (const uint8 count : {uint8{0}, uint8{1}, uint8{32}, uint8{33}, uint8{255}}) {
    RecordingPlatform platform;
    platform.ports[kPort] = port_record();
    paraminfo_t* const param = platform.show_command(16, kPort);
    param->parameter_count = count;
    EXPECT_EQ(pm_cli_show_eth_port_config(param), 0U);
    EXPECT_EQ(platform.text(), "Option not supported\n") << int{count};
  }
}

TEST(HostileCommand, ModuleFilterIsTakenWhateverTheCountSays) {
  for (const uint8 count : {uint8{0}, uint8{1}, uint8{2}, uint8{255}}) {
    RecordingPlatform platform;
    uint32 module = 1;
    paraminfo_t* const param = platform.show_command(42, kPort);
    platform.add_argument(param, PARAM_TYPE_UINT32, &module);
    param->parameter_count = count;
    platform.ports[kPort] = port_record();
    EXPECT_EQ(pm_cli_show_eth_port_config(param), 0U);
    EXPECT_EQ(platform.port_queries.size(), 1U) << int{count};
  }
}

TEST(HostileCommand, VlanFilterIsTakenWhateverTheCountSays) {
  for (const uint8 count : {uint8{0}, uint8{1}, uint8{2}, uint8{255}}) {
    RecordingPlatform platform;
    install_vlan_libraries(platform);
    answers_of_vlans.memberships = {membership(kPort, 10, {10})};
    platform.ports[kPort] = port_record();
    vsh_int_multi_range_t list{};
    list.range_count = 1;
    list.range[0] = {10, 10};
    paraminfo_t* const param = platform.show_command(31, kPort);
    platform.add_argument(param, PARAM_TYPE_INT_RANGES, &list);
    param->parameter_count = count;
    EXPECT_EQ(pm_cli_show_eth_port_config(param), 0U);
    EXPECT_EQ(platform.port_queries.size(), 1U) << int{count};
  }
}

// As long as there is no membership, no range shows the port; none may be read past the 64th either.
TEST(HostileCommand, RangeCountsBeyondTheListAreNotFollowed) {
  for (const uint32 count : {0U, 64U, 65U, 0xFFFFFFFFU}) {
    RecordingPlatform platform;
    platform.ports[kPort] = port_record();
    auto list = std::make_unique<vsh_int_multi_range_t>();
    *list = {};
    list->range_count = count;
    for (vsh_int_mono_range_t& range : list->range) range = {4095, 1};
    paraminfo_t* const param = platform.show_command(31, kPort);
    platform.add_argument(param, PARAM_TYPE_INT_RANGES, list.get());
    EXPECT_EQ(pm_cli_show_eth_port_config(param), 0U);
    EXPECT_THAT(platform.port_queries, IsEmpty());
    EXPECT_EQ(platform.sends, 1U);
  }
}

}  // namespace
}  // namespace pmcli_test
