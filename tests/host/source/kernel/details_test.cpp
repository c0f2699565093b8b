// A machine with hardware as a switch: recorded messages of the kernel, from the dumps to the records of the services.
#include <gtest/gtest.h>
#include <linux/ethtool.h>
#include <linux/ethtool_netlink.h>
#include <linux/genetlink.h>
#include <linux/rtnetlink.h>
#include <net/if.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <map>
#include <memory>

#include "host/source/kernel/recorded_switch.h"
#include "host/switch/stopped_clock.h"
#include "messages/card_config_messages.h"
#include "messages/interface_values.h"
#include "messages/port_manager_messages.h"
#include "messages/statistics_messages.h"
#include "platform/card_config.h"
#include "platform/eth_statistics.h"
#include "platform/misc_info.h"
#include "platform/port_manager.h"
#include "platform/transceiver.h"
#include "service/answers.h"
#include "service/services.h"
#include "source/kernel/kernel_source.h"
#include "switch/clock.h"
#include "switch/if_index_layout.h"

namespace host {
namespace {

constexpr question kVlans{NETLINK_ROUTE, RTM_GETLINK, AF_BRIDGE};
constexpr question kAddresses{NETLINK_ROUTE, RTM_GETADDR, AF_UNSPEC};
const question kModes = recorded_kernel::ethtool(ETHTOOL_MSG_LINKMODES_GET);
const question kPauses = recorded_kernel::ethtool(ETHTOOL_MSG_PAUSE_GET);
const question kFaults = recorded_kernel::ethtool(ETHTOOL_MSG_LINKSTATE_GET);
const question kCounters = recorded_kernel::ethtool(ETHTOOL_MSG_STATS_GET);
const question kModules = recorded_kernel::ethtool(ETHTOOL_MSG_MODULE_EEPROM_GET);

enum : uint8 { kNotConnected = 7, kLossOfSync = 84 };

// A port of hardware or a veth: device 3 is ethernet 1/3.
if_index_t port_of(uint32 device) { return ethernet_index(IF_TYPE_ETHERNET, 0, device - 1); }

class KernelRecording : public testing::Test {
 protected:
  KernelRecording() { record_switch(kernel_); }
  ~KernelRecording() override {
    the_machine() = {};
    set_source();
  }

  // The machine as a command finds it.
  void read(const std::string& baseline_file = {}) {
    auto source = std::make_unique<kernel_source>(requested_interfaces{}, baseline_file);
    the_machine() = source->read();
    set_source(std::move(source));
  }
  void next_command() {
    the_source().refresh(the_machine());  // the first one takes what was read
    the_source().refresh(the_machine());
  }

  const interface& device(uint32 number) {
    const interface* const found = std::as_const(the_machine()).find(port_of(number));
    if (found == nullptr) throw std::runtime_error("no interface for device " + std::to_string(number));
    return *found;
  }

  recorded_kernel kernel_;
};

template <typename Request>
std::span<const std::byte> request_bytes(const Request& request) {
  return std::as_bytes(std::span(&request, 1));
}

// The only record of an answer; its head alone when there is an error.
template <typename Record>
Record record_of(const reply& answer) {
  Record record{};
  if (answer.payload.size() == sizeof(reply_head) + sizeof record)
    std::memcpy(&record, answer.payload.data() + sizeof(reply_head), sizeof record);
  else
    ADD_FAILURE() << "an answer of " << answer.payload.size() << " bytes";
  return record;
}

syserr_t status_of(const reply& answer) {
  reply_head head{};
  if (answer.payload.size() >= sizeof head) std::memcpy(&head, answer.payload.data(), sizeof head);
  return head.status;
}

pm_port_info_t port_record_of(uint32 device) {
  return record_of<pm_port_info_t>(
      serve_port_manager(PM_OPC_PORT_CONFIG, request_bytes(range_request{port_of(device), port_of(device)})));
}

pm_fcot_res_t transceiver_of(uint32 device) {
  return record_of<pm_fcot_res_t>(
      serve_port_manager(PM_OPC_TRANSCEIVER, request_bytes(range_request{port_of(device), port_of(device)})));
}

reply diagnostics_of(uint32 device) {
  return serve_port_manager(PM_OPC_DIAGNOSTICS, request_bytes(interface_request{port_of(device)}));
}

statscl_portcl_stats_msg_t statistics_of(uint32 device) {
  return record_of<statscl_portcl_stats_msg_t>(
      serve_statistics(STATS_OPC_PORT, request_bytes(interface_request{port_of(device)})));
}

crdcfg_port_cap_t capability_of(uint32 device) {
  return record_of<crdcfg_port_cap_t>(
      serve_card_config(CRDCFG_OPC_PORT_CAPABILITY, request_bytes(range_request{port_of(device), port_of(device)})));
}

std::string vendor_in(const pm_fcot_res_t& record) {
  return {record.fi.fcot_info.VendorName, sizeof record.fi.fcot_info.VendorName};
}

// ---- The machine ----------------------------------------------------------------------------------------------------

TEST_F(KernelRecording, DevicesAreInterfaces) {
  read();
  EXPECT_EQ(the_machine().mgmt_device, "eth0");
  EXPECT_EQ(the_machine().interfaces.size(), 12U);
  const if_index_t bond = channel_index(IF_TYPE_ETH_PORT_CHANNEL, kBond0);
  EXPECT_EQ(the_machine().members_of(bond), (std::vector<if_index_t>{port_of(kSwp1), port_of(kSwp2)}));
  EXPECT_EQ(device(kSwp3).oper_mode, PM_PORT_MODE_TRUNK);
  EXPECT_EQ(device(kSwp3).settings.native_vlan, 10);
  EXPECT_EQ(device(kSwp3).settings.allowed_vlans, (std::vector<uint16>{10, 20, 21, 22, 30}));
  const interface* const sub = the_machine().find(ethernet_index(IF_TYPE_ETHERNET, 0, kSwp3 - 1, 100));
  ASSERT_NE(sub, nullptr);
  EXPECT_EQ(sub->encapsulation_vlan, 100);
  const interface* const mgmt = the_machine().find(ethernet_index(IF_TYPE_MGMT, 0, 0));
  ASSERT_NE(mgmt, nullptr);
  ASSERT_EQ(mgmt->addresses.size(), 1U);
  EXPECT_EQ(mgmt->addresses[0].bytes[3], kEth0);
}

TEST_F(KernelRecording, ASpeedIsSetOrNegotiated) {
  read();
  EXPECT_EQ(device(kSwp1).oper_speed_mbps, 10'000U);
  EXPECT_EQ(device(kSwp1).settings.admin_speed_mbps, 10'000U);
  EXPECT_EQ(device(kSwp1).settings.admin_duplex, PM_PORT_DUPLEX_FULL);
  EXPECT_EQ(device(kSwp3).oper_speed_mbps, 40'000U);
  EXPECT_EQ(device(kSwp3).settings.admin_speed_mbps, 0U);
  EXPECT_EQ(device(kSwp3).settings.admin_duplex, PM_PORT_DUPLEX_AUTO);
  EXPECT_EQ(device(kSwp4).oper_speed_mbps, std::nullopt);
  EXPECT_EQ(device(kSwp4).settings.admin_speed_mbps, 0U);
}

TEST_F(KernelRecording, CapabilitiesAreTheSupportedModes) {
  read();
  const interface* const copper = the_machine().find(ethernet_index(IF_TYPE_MGMT, 0, 0));
  ASSERT_NE(copper, nullptr);
  EXPECT_EQ(copper->capabilities.speeds, CRDCFG_SPEED_10M | CRDCFG_SPEED_100M | CRDCFG_SPEED_1G | CRDCFG_SPEED_AUTO);
  EXPECT_EQ(copper->capabilities.duplexes, CRDCFG_DUPLEX_HALF | CRDCFG_DUPLEX_FULL | CRDCFG_DUPLEX_AUTO);
  EXPECT_FALSE(copper->capabilities.transceiver);
  const crdcfg_port_cap_t optical = capability_of(kSwp1);
  EXPECT_EQ(optical.speed, CRDCFG_SPEED_1G | CRDCFG_SPEED_10G);
  EXPECT_EQ(optical.duplex, CRDCFG_DUPLEX_FULL);
  EXPECT_EQ(optical.rx_flowcontrol, CRDCFG_FLOW_OFF | CRDCFG_FLOW_ON);
  EXPECT_EQ(optical.fcot_capable, 1);
  EXPECT_EQ(capability_of(kSwp3).speed, CRDCFG_SPEED_AUTO) << "40 Gbit/s has no bit";
  EXPECT_EQ(capability_of(kSwp3).tx_flowcontrol, CRDCFG_FLOW_OFF | CRDCFG_FLOW_ON | CRDCFG_FLOW_DESIRED);
  EXPECT_EQ(capability_of(kSwp4).speed, 0);
  EXPECT_EQ(capability_of(kVeth0).fcot_capable, 0);
}

TEST_F(KernelRecording, EverySupportedSpeedIsListed) {
  kernel_.answer(kModes, [](const nlmsghdr&) {
    const recorded_modes modes = {
        .supported = {ETHTOOL_LINK_MODE_1000baseX_Full_BIT, ETHTOOL_LINK_MODE_10000baseSR_Full_BIT,
                      ETHTOOL_LINK_MODE_25000baseSR_Full_BIT, ETHTOOL_LINK_MODE_100000baseSR4_Full_BIT,
                      ETHTOOL_LINK_MODE_400000baseSR8_Full_BIT}};
    return recorded_answer{0, {recorded(modes_message(kSwp3, modes))}};
  });
  read();
  EXPECT_EQ(device(kSwp3).capabilities.speeds,
            speed_bit(1000) | speed_bit(10'000) | speed_bit(25'000) | speed_bit(100'000) | speed_bit(400'000));
  EXPECT_EQ(capability_of(kSwp3).speed, CRDCFG_SPEED_1G | CRDCFG_SPEED_10G) << "of the others the record has no bit";
}

TEST_F(KernelRecording, FlowControlIsSetOrAgreedOn) {
  constexpr uint16 kReceiveOn = 2, kReceiveDesired = 8, kSendDesired = 4;
  read();
  EXPECT_EQ(port_record_of(kSwp1).admin_port_flow_ctrl, kReceiveOn);
  EXPECT_EQ(port_record_of(kSwp1).oper_port_flow_ctrl, kReceiveOn);
  EXPECT_EQ(port_record_of(kSwp3).admin_port_flow_ctrl, kReceiveDesired | kSendDesired);
  EXPECT_EQ(port_record_of(kSwp3).oper_port_flow_ctrl, kReceiveOn) << "the partner only sends";
  EXPECT_EQ(port_record_of(kSwp2).admin_port_flow_ctrl, 0);
}

// The table of the negotiation: what the sides advertise (pause, asymmetric) and where pauses then work.
TEST(KernelFlowControl, FollowsTheTableOfTheNegotiation) {
  constexpr uint16 kReceives = 2, kSends = 1;
  enum : unsigned { kNoPause = 0, kPause = 1, kAsymmetric = 2, kBoth = 3 };
  const auto oper_of = [](unsigned ours, unsigned theirs) {
    kernel_link link;
    link.number = 2;
    link.flags = 1;
    link.operation = 6;
    link.pause = pause_settings{.negotiates = true, .receives = true, .sends = true};
    link.advertised = link_modes(ours) << 13;
    link.partner = link_modes(theirs) << 13;
    return machine_of_devices({link}, {{"a", 2, port_of(2)}}).interfaces.at(0).oper_flow_control;
  };
  EXPECT_EQ(oper_of(kPause, kPause), kReceives | kSends);
  EXPECT_EQ(oper_of(kBoth, kPause), kReceives | kSends);
  EXPECT_EQ(oper_of(kBoth, kBoth), kReceives | kSends);
  EXPECT_EQ(oper_of(kBoth, kAsymmetric), kReceives);
  EXPECT_EQ(oper_of(kAsymmetric, kBoth), kSends);
  EXPECT_EQ(oper_of(kAsymmetric, kAsymmetric), 0);
  EXPECT_EQ(oper_of(kAsymmetric, kPause), 0);
  EXPECT_EQ(oper_of(kPause, kAsymmetric), 0);
  EXPECT_EQ(oper_of(kBoth, kNoPause), 0);
}

// ---- Why links are down ---------------------------------------------------------------------------------------------

TEST_F(KernelRecording, ALinkThatIsDownHasTheReasonOfItsDriver) {
  read();
  EXPECT_EQ(port_record_of(kSwp4).oper_state_reason, kLossOfSync);
  EXPECT_EQ(port_record_of(kSwp5).oper_state_reason, kNotConnected);
  EXPECT_EQ(port_record_of(kSwp6).oper_state_reason, PM_REASON_ADMIN_DOWN);
}

TEST_F(KernelRecording, FaultsAreAskedForOnceAndOnlyWhereALinkIsMissing) {
  read();
  for (const uint32 it : {kSwp1, kSwp2, kSwp3, kSwp6, kVeth0}) port_record_of(it);
  EXPECT_EQ(kernel_.times_asked(kFaults), 0U);
  for (const uint32 it : {kSwp4, kSwp5, kSwp4}) port_record_of(it);
  EXPECT_EQ(kernel_.times_asked(kFaults), 1U);
  next_command();
  EXPECT_EQ(device(kSwp4).state_reason, kNotConnected);
  EXPECT_EQ(port_record_of(kSwp4).oper_state_reason, kLossOfSync);
  EXPECT_EQ(kernel_.times_asked(kFaults), 2U);
}

TEST_F(KernelRecording, FaultsHaveTheReasonThatFits) {
  struct fault {
    uint8 state, substate, reason;
  };
  for (const fault& it : std::initializer_list<fault>{
           {ETHTOOL_LINK_EXT_STATE_AUTONEG, ETHTOOL_LINK_EXT_SUBSTATE_AN_NO_PARTNER_DETECTED, kNotConnected},
           {ETHTOOL_LINK_EXT_STATE_LINK_TRAINING_FAILURE, 0, 81},
           {ETHTOOL_LINK_EXT_STATE_BAD_SIGNAL_INTEGRITY, ETHTOOL_LINK_EXT_SUBSTATE_BSI_SERDES_ALOS, 83},
           {ETHTOOL_LINK_EXT_STATE_BAD_SIGNAL_INTEGRITY, 0, kNotConnected},
           {ETHTOOL_LINK_EXT_STATE_EEPROM_ISSUE, 0, 141},
           {ETHTOOL_LINK_EXT_STATE_CALIBRATION_FAILURE, 0, 3},
           {ETHTOOL_LINK_EXT_STATE_OVERHEAT, 0, 3},
           {ETHTOOL_LINK_EXT_STATE_MODULE, ETHTOOL_LINK_EXT_SUBSTATE_MODULE_CMIS_NOT_READY, 10},
           {ETHTOOL_LINK_EXT_STATE_MODULE, 0, kNotConnected},
           {200, 0, kNotConnected},
       }) {
    kernel_.answer(kFaults, [&it](const nlmsghdr&) {
      return recorded_answer{0, {recorded(fault_message(kSwp5, it.state, it.substate))}};
    });
    read();
    EXPECT_EQ(port_record_of(kSwp5).oper_state_reason, it.reason) << unsigned{it.state} << '/' << unsigned{it.substate};
  }
}

// ---- Modules --------------------------------------------------------------------------------------------------------

TEST_F(KernelRecording, AModuleHasItsIdentity) {
  read();
  const pm_fcot_res_t record = transceiver_of(kSwp1);
  EXPECT_EQ(record.status, 0U);
  EXPECT_EQ(record.is_fcot_supported, FCOT_SUPPORTED);
  EXPECT_EQ(record.fcot_type, FCOT_TYPE_SFP);
  EXPECT_EQ(vendor_in(record), "FAR LIGHT       ");
  EXPECT_EQ(record.fi.fcot_info.gigaEthCC, record.fi.fcot_info.xcvrCode[3]);
  EXPECT_EQ(vendor_in(transceiver_of(kSwp3)), "WIDE LIGHT      ");
}

TEST_F(KernelRecording, AnEmptyCageHasNoModule) {
  read();
  EXPECT_EQ(transceiver_of(kSwp2).status, uint32{PM_ERR_NO_TRANSCEIVER});
  EXPECT_EQ(status_of(diagnostics_of(kSwp2)), PM_ERR_SFP_NOT_PRESENT);
  for (const int error : {EOPNOTSUPP, ENODEV, EIO, EINVAL}) {
    kernel_.answer(kModules, [error](const nlmsghdr&) { return recorded_answer{error}; });
    read();
    EXPECT_EQ(transceiver_of(kSwp1).status, uint32{PM_ERR_NO_TRANSCEIVER}) << error;
  }
}

TEST_F(KernelRecording, OnlyHardwareIsAskedForModules) {
  read();
  EXPECT_EQ(transceiver_of(kVeth0).status, uint32{PM_ERR_NO_TRANSCEIVER});
  EXPECT_EQ(kernel_.times_asked(kModules), 0U);
}

TEST_F(KernelRecording, AModuleIsReadOnceForACommand) {
  read();
  EXPECT_EQ(kernel_.times_asked(kModules), 0U);
  for (int again = 0; again < 3; ++again) transceiver_of(kSwp1);
  EXPECT_EQ(kernel_.times_asked(kModules), 1U);
  for (int again = 0; again < 3; ++again) diagnostics_of(kSwp1);
  EXPECT_EQ(kernel_.times_asked(kModules), 2U);
  for (int again = 0; again < 3; ++again) transceiver_of(kSwp2);
  EXPECT_EQ(kernel_.times_asked(kModules), 3U);
  next_command();
  EXPECT_FALSE(device(kSwp1).module_in_port);
  transceiver_of(kSwp1);
  EXPECT_EQ(kernel_.times_asked(kModules), 4U);
}

TEST_F(KernelRecording, AModuleThatIsPulledIsGoneForTheNextCommand) {
  read();
  EXPECT_EQ(transceiver_of(kSwp1).is_fcot_supported, FCOT_SUPPORTED);
  record_modules(kernel_, {});
  next_command();
  EXPECT_EQ(transceiver_of(kSwp1).status, uint32{PM_ERR_NO_TRANSCEIVER});
}

TEST_F(KernelRecording, DiagnosticsAreMeasured) {
  read();
  const auto record = record_of<sfp_diagnostics>(diagnostics_of(kSwp1)).values;
  EXPECT_EQ(record.calib_type, 1U);
  EXPECT_EQ(record.temp, 38'500);
  EXPECT_EQ(record.volt, 3'300'000U);
  EXPECT_EQ(record.curr, 6'000U);
  EXPECT_EQ(record.tx_pwr, 500U);
  EXPECT_EQ(record.rx_pwr, 400U);
  EXPECT_EQ(record.temp_lo_alarm, -5'000);
  EXPECT_EQ(record.volt_hi_warn, 3'465'000U);
  EXPECT_EQ(record.current_lo_alarm, 4'000U);
  EXPECT_EQ(record.tx_pwr_hi_alarm, 1'479U);
  EXPECT_EQ(record.alarm_flags, 0U);
  EXPECT_EQ(record.warn_flags, 0x100U) << "400 uW are more than 399";
}

// Lets swp1 have a module with the pages of the recording, changed.
void change_module(recorded_kernel& kernel,
                   const std::function<void(std::vector<uint8>& identity, std::vector<uint8>& diagnostics)>& change) {
  std::vector<uint8> identity = sfp_identity(), diagnostics = sfp_diagnostics_page();
  change(identity, diagnostics);
  record_modules(kernel, {{kSwp1, {{{0x50, 0, 0}, identity}, {{0x51, 0, 0}, diagnostics}}}});
}

TEST_F(KernelRecording, ConstantsOfAnExternalCalibrationAreThoseOfTheModule) {
  change_module(kernel_, [](std::vector<uint8>& identity, std::vector<uint8>& diagnostics) {
    identity[92] = 0x58;
    for (std::size_t at = 76; at < 92; at += 2) put_word(diagnostics, at, static_cast<uint16>(at));
    put_word(diagnostics, 56, 0x4040);  // 3.0, the highest order of received power
    put_word(diagnostics, 72, 0x40A0);  // 5.0, the lowest
  });
  read();
  const auto record = record_of<sfp_diagnostics>(diagnostics_of(kSwp1)).values;
  EXPECT_EQ(record.calib_type, 2U);
  EXPECT_EQ(record.calib_current_slope, 76U);
  EXPECT_EQ(record.calib_current_offset, 78U);
  EXPECT_EQ(record.calib_tx_pwr_slope, 80U);
  EXPECT_EQ(record.calib_tx_pwr_offset, 82U);
  EXPECT_EQ(record.calib_temp_slope, 84U);
  EXPECT_EQ(record.calib_temp_offset, 86U);
  EXPECT_EQ(record.calib_volt_slope, 88U);
  EXPECT_EQ(record.calib_volt_offset, 90U);
  EXPECT_EQ(record.calib_rx_pwr_4, 3U);
  EXPECT_EQ(record.calib_rx_pwr_1, 0U);
  EXPECT_EQ(record.calib_rx_pwr_0, 5U);
}

TEST_F(KernelRecording, AModuleThatIsNotReadyHasNoInformation) {
  change_module(kernel_, [](std::vector<uint8>&, std::vector<uint8>& diagnostics) { diagnostics[110] = 0x01; });
  read();
  EXPECT_EQ(status_of(diagnostics_of(kSwp1)), PM_ERR_SFP_NO_INFORMATION);
}

TEST_F(KernelRecording, TheStateOfAModuleIsItsOwn) {
  const auto state_of_swp1 = [this](uint8 status) {
    change_module(kernel_,
                  [status](std::vector<uint8>&, std::vector<uint8>& diagnostics) { diagnostics[110] = status; });
    read();
    const port_misc_info_req_t request{0, 1, port_of(kSwp1), 1, {MISC_INFO_TRANSCEIVER_STATE}};
    const reply answer = serve_line_card(MTS_OPC_PORT_MISC_INFO, request_bytes(request));
    port_xcvr_info_t state{};
    if (answer.payload.size() > sizeof state)
      std::memcpy(&state, answer.payload.data() + answer.payload.size() - sizeof state, sizeof state);
    return state;
  };
  const port_xcvr_info_t good = state_of_swp1(0);
  EXPECT_EQ(good.xcvr_present, 1);
  EXPECT_EQ(good.csum_base_ok, 1);
  EXPECT_EQ(good.csum_ext_ok, 1);
  EXPECT_EQ(good.diag_mon_type, 0x68);
  EXPECT_EQ(good.rx_loss, 0);
  EXPECT_EQ(good.tx_fault, 0);
  EXPECT_EQ(state_of_swp1(0x02).rx_loss, 1) << "the link is up, the module says otherwise";
  EXPECT_EQ(state_of_swp1(0x04).tx_fault, 1);
}

TEST_F(KernelRecording, DiagnosticsOfAQsfpAreThoseOfItsFirstLane) {
  read();
  const auto record = record_of<sfp_diagnostics>(diagnostics_of(kSwp3)).values;
  EXPECT_EQ(record.calib_type, 1U);
  EXPECT_EQ(record.temp, 25'250);
  EXPECT_EQ(record.volt, 3'250'000U);
  EXPECT_EQ(record.curr, 7'000U);
  EXPECT_EQ(record.tx_pwr, 700U);
  EXPECT_EQ(record.rx_pwr, 600U);
  EXPECT_EQ(record.temp_hi_alarm, 80'000);
  EXPECT_EQ(record.volt_lo_alarm, 3'000'000U);
  EXPECT_EQ(record.current_hi_warn, 9'000U);
  EXPECT_EQ(record.tx_pwr_lo_warn, 40U);
  EXPECT_EQ(record.rx_pwr_hi_alarm, 599U);
  EXPECT_EQ(record.alarm_flags, 0x100U);
}

TEST_F(KernelRecording, WhoMayNotReadModulesIsToldSoOnce) {
  kernel_.answer(kModules, [](const nlmsghdr&) { return recorded_answer{EPERM}; });
  read();
  for (const uint32 it : {kSwp1, kSwp2, kSwp3})
    EXPECT_EQ(transceiver_of(it).status, uint32{PM_ERR_NO_TRANSCEIVER}) << it;
  EXPECT_EQ(kernel_.times_asked(kModules), 1U);
  EXPECT_EQ(kernel_.ioctls(), 0U);
}

// What an older kernel gives by ioctl: the pages behind each other.
std::vector<uint8> behind_each_other(std::vector<uint8> first, const std::vector<uint8>& second, std::size_t at) {
  first.resize(at);
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

TEST_F(KernelRecording, AnOlderKernelIsAskedByIoctl) {
  const std::vector<uint8> sfp = behind_each_other(sfp_identity(), sfp_diagnostics_page(), 256);
  const module_pages qsfp = qsfp_pages();
  const std::vector<uint8> identity = behind_each_other(qsfp.at({0x50, 0, 0}), qsfp.at({0x50, 0, 128}), 128);
  const std::vector<uint8> optics = behind_each_other(identity, qsfp.at({0x50, 3, 128}), 512);
  kernel_.answer(kModules, [](const nlmsghdr&) { return recorded_answer{EOPNOTSUPP}; });
  kernel_.plug("swp1", {static_cast<uint32>(sfp.size()), sfp});
  kernel_.plug("swp3", {static_cast<uint32>(optics.size()), optics});
  for (const bool has_ethtool : {true, false}) {
    kernel_.has_ethtool = has_ethtool;
    read();
    EXPECT_EQ(vendor_in(transceiver_of(kSwp1)), "FAR LIGHT       ");
    EXPECT_EQ(record_of<sfp_diagnostics>(diagnostics_of(kSwp1)).values.temp, 38'500);
    EXPECT_EQ(vendor_in(transceiver_of(kSwp3)), "WIDE LIGHT      ");
    EXPECT_EQ(record_of<sfp_diagnostics>(diagnostics_of(kSwp3)).values.rx_pwr_hi_alarm, 599U);
    EXPECT_EQ(transceiver_of(kSwp2).status, uint32{PM_ERR_NO_TRANSCEIVER});
  }
}

TEST_F(KernelRecording, AnIoctlThatClaimsMoreThanItHasGivesNothing) {
  kernel_.answer(kModules, [](const nlmsghdr&) { return recorded_answer{EOPNOTSUPP}; });
  for (const uint32 length : {0U, 256U, 0xFFFFFFFFU}) {
    kernel_.plug("swp1", {length, std::vector<uint8>(100, 3)});
    read();
    EXPECT_EQ(transceiver_of(kSwp1).status, uint32{PM_ERR_NO_TRANSCEIVER}) << length;
  }
  kernel_.plug("swp1", {100, std::vector<uint8>(100, 3)});
  read();
  EXPECT_EQ(transceiver_of(kSwp1).status, 0U) << "a short page is one";
}

// ---- Counters -------------------------------------------------------------------------------------------------------

TEST_F(KernelRecording, CountersThatADriverTellsAreInTheRecord) {
  read();
  const statscl_portcl_stats_msg_t record = statistics_of(kSwp1);
  EXPECT_EQ(record.mac.errors.symbol_err, 101U);
  EXPECT_EQ(record.mac.errors.crc, 102U);
  EXPECT_EQ(record.mac.errors.giants_rx, 103U);
  EXPECT_EQ(record.mac.errors.deferred, 0U);
  EXPECT_EQ(record.mac.ctrl.rx_pause, 71U);
  EXPECT_EQ(record.mac.ctrl.tx_pause, 72U);
  EXPECT_EQ(record.mac.pktflow.ingress_pkts, 3000U);
  EXPECT_EQ(record.mac.pktflow.unicast_pkts, 0U) << "the driver does not separate them";
  EXPECT_EQ(statistics_of(kSwp2).mac.errors.symbol_err, 0U);
}

// ---- Values that are absent -----------------------------------------------------------------------------------------

// Of the properties asked for, those that are absent, and why.
std::map<property, absence> absent_of(if_index_t if_index, const std::vector<property>& asked) {
  std::map<property, absence> absent;
  const reply answer = serve_interface_values(VALUES_OPC_INTERFACE, values_request_for(if_index, asked, true));
  if (answer.what != reply::kind::answer || status_of(answer) != 0) {
    ADD_FAILURE() << "no values";
    return absent;
  }
  const auto values = read_values(std::span(answer.payload).subspan(sizeof(reply_head)));
  if (!values) ADD_FAILURE() << "a damaged answer";
  for (const interface_value& value : values.value_or(std::vector<interface_value>{}))
    absent[value.of] = value.why_absent();
  return absent;
}

bool is_unknown(uint32 device, property of) {
  const auto absent = absent_of(port_of(device), {of});
  return absent.contains(of) && absent.at(of) == absence::not_supported;
}

TEST_F(KernelRecording, WhatADriverDoesNotCountIsUnknown) {
  read();
  EXPECT_FALSE(is_unknown(kSwp1, property::symbol_errors));
  EXPECT_FALSE(is_unknown(kSwp1, property::giants));
  EXPECT_FALSE(is_unknown(kSwp1, property::input_pause_frames));
  EXPECT_TRUE(is_unknown(kSwp1, property::deferred));
  EXPECT_TRUE(is_unknown(kSwp2, property::symbol_errors));
  EXPECT_TRUE(is_unknown(kVeth0, property::symbol_errors));
  EXPECT_TRUE(is_unknown(kVeth0, property::output_packets_65_to_127_bytes));
}

TEST_F(KernelRecording, WhatNoDeviceHasIsUnknownOfAll) {
  read();
  for (const property of :
       {property::delay_usec, property::debounce_msec, property::last_link_flapped, property::output_cos3_lost,
        property::layer3_input_routed_bytes, property::unicast_level_percent}) {
    EXPECT_TRUE(is_unknown(kSwp1, of)) << static_cast<int>(of);
  }
}

TEST_F(KernelRecording, WhatEveryDeviceReportsIsKnown) {
  read();
  for (const property of : {property::input_bytes, property::input_packets, property::output_errors,
                            property::input_discards, property::collisions, property::lost_carrier_errors,
                            property::state, property::description, property::input_multicast_packets}) {
    EXPECT_FALSE(is_unknown(kVeth0, of)) << static_cast<int>(of);
  }
}

TEST_F(KernelRecording, ASpeedIsKnownWhereTheDeviceHasOne) {
  read();
  EXPECT_FALSE(is_unknown(kSwp3, property::speed_mbps));
  EXPECT_FALSE(is_unknown(kSwp3, property::bandwidth_kbps));
  EXPECT_FALSE(is_unknown(kSwp3, property::duplex));
  EXPECT_FALSE(is_unknown(kSwp3, property::mtu_bytes));
}

TEST_F(KernelRecording, RatesAreKnownFromTheSecondReadingOn) {
  const stopped_clock at(1'800'000'000);
  read();
  statistics_of(kSwp6);
  EXPECT_TRUE(is_unknown(kSwp6, property::input_packets_per_second));
  clock_advance(10);
  statistics_of(kSwp6);
  EXPECT_TRUE(is_unknown(kSwp6, property::input_packets_per_second)) << "of the same reading";
  next_command();
  EXPECT_FALSE(is_unknown(kSwp6, property::input_packets_per_second));
}

// ---- Readings -------------------------------------------------------------------------------------------------------

std::optional<uint64> number_of(uint32 device, property of) {
  const reply answer =
      serve_interface_values(VALUES_OPC_INTERFACE, values_request_for(port_of(device), std::span(&of, 1), false));
  const auto values =
      read_values(std::span(answer.payload).subspan(std::min(sizeof(reply_head), answer.payload.size())));
  if (!values || values->size() != 1 || (*values)[0].kind == value_kind::absent) return std::nullopt;
  return (*values)[0].number();
}

// The only device: how often its link changed, and what it received.
class KernelReadings : public KernelRecording {
 protected:
  void set(std::optional<uint32> changes, uint64 packets) {
    netlink_request message = link_message({.number = kVeth0, .name = "veth0", .kind = "veth", .flags = IFF_UP});
    if (changes) mnl_attr_put_u32(&message.head(), IFLA_CARRIER_CHANGES, *changes);
    rtnl_link_stats64 stats{};
    stats.rx_packets = packets;
    stats.rx_bytes = packets * 100;
    mnl_attr_put(&message.head(), IFLA_STATS64, sizeof stats, &stats);  // the last one holds
    kernel_.answer(kLinks, [bytes = recorded(std::move(message))](const nlmsghdr&) {
      return recorded_answer{0, {bytes}};
    });
  }
  void after(std::time_t seconds, std::optional<uint32> changes, uint64 packets) {
    clock_advance(seconds);
    set(changes, packets);
    next_command();
  }

  stopped_clock clock_{kMoment};
  static constexpr uint32 kMoment = 1'800'000'000;
};

TEST_F(KernelReadings, RatesAreThoseOfTheTimeBetweenThem) {
  set(0, 1000);
  read();
  EXPECT_EQ(number_of(kVeth0, property::rate_interval_seconds), std::nullopt);
  EXPECT_EQ(the_source().rate_seconds(), std::nullopt);
  after(10, 0, 1070);
  EXPECT_EQ(number_of(kVeth0, property::input_packets_per_second), 7U);
  EXPECT_EQ(number_of(kVeth0, property::input_bytes_per_second), 700U);
  EXPECT_EQ(number_of(kVeth0, property::rate_interval_seconds), 10U);
  EXPECT_EQ(the_source().rate_seconds(), 10.0);
}

TEST_F(KernelReadings, WithinTheSameSecondThereAreNoRates) {
  set(0, 1000);
  read();
  after(0, 0, 1070);
  EXPECT_TRUE(is_unknown(kVeth0, property::input_packets_per_second));
  EXPECT_TRUE(is_unknown(kVeth0, property::rate_interval_seconds));
}

// A reading that is older than a minute counts only until there is a later one of that age.
TEST_F(KernelReadings, RatesCoverAMinuteWhereThereAreSoMany) {
  set(0, 0);
  read();
  for (uint32 i = 1; i <= 12; ++i) after(10, 0, i * 100);
  EXPECT_EQ(number_of(kVeth0, property::rate_interval_seconds), 60U);
  after(600, 0, 1260);
  EXPECT_EQ(number_of(kVeth0, property::rate_interval_seconds), 600U);
  EXPECT_EQ(number_of(kVeth0, property::input_bytes_per_second), 10U);
}

TEST_F(KernelReadings, ADeviceThatCountsFromItsStartAgainHasNoRates) {
  set(0, 1000);
  read();
  after(10, 0, 5);
  EXPECT_TRUE(is_unknown(kVeth0, property::input_packets_per_second));
  after(10, 0, 25);
  EXPECT_EQ(number_of(kVeth0, property::input_packets_per_second), 2U);
  EXPECT_EQ(number_of(kVeth0, property::rate_interval_seconds), 10U);
}

TEST_F(KernelReadings, LinkChangesHaveTheirTimeWhenTheSessionSawThem) {
  set(4, 0);
  read();
  EXPECT_EQ(number_of(kVeth0, property::link_changes), 4U);
  EXPECT_TRUE(is_unknown(kVeth0, property::last_link_flapped));
  after(10, 6, 0);
  EXPECT_EQ(number_of(kVeth0, property::link_changes), 6U);
  EXPECT_EQ(number_of(kVeth0, property::last_link_flapped), kMoment + 10);
  after(10, 6, 0);
  EXPECT_EQ(number_of(kVeth0, property::last_link_flapped), kMoment + 10);
  after(10, 1, 0);
  EXPECT_TRUE(is_unknown(kVeth0, property::last_link_flapped)) << "another device with the same number";
}

TEST_F(KernelReadings, LinkChangesAreUnknownWhereTheKernelDoesNotCountThem) {
  set(std::nullopt, 0);
  read();
  EXPECT_TRUE(is_unknown(kVeth0, property::link_changes));
  after(10, 3, 0);
  EXPECT_TRUE(is_unknown(kVeth0, property::last_link_flapped));
}

TEST_F(KernelReadings, AnEventHasTheTimeOfTheChangeBeforeTheNextReading) {
  set(4, 0);
  read();
  const auto events = the_source().open_events();
  ASSERT_NE(events, nullptr);
  clock_advance(7);
  netlink_request message = link_message({.number = kVeth0, .name = "veth0", .kind = "veth", .operation = 6});
  mnl_attr_put_u32(&message.head(), IFLA_CARRIER_CHANGES, 5);
  kernel_.publish(NETLINK_ROUTE, std::move(message));
  std::vector<switch_event> read_events;
  EXPECT_TRUE(events->read(read_events));
  after(10, 5, 0);
  EXPECT_EQ(number_of(kVeth0, property::last_link_flapped), kMoment + 7);
}

void expect_not_supported(uint32 device, const std::vector<property>& expected) {
  const auto absent = absent_of(port_of(device), expected);
  for (const property of : expected) {
    const auto found = absent.find(of);
    EXPECT_TRUE(found != absent.end() && found->second == absence::not_supported)
        << device << ": " << static_cast<int>(of);
  }
}

void expect_present(uint32 device, const std::vector<property>& expected) {
  for (const auto& [of, why] : absent_of(port_of(device), expected))
    ADD_FAILURE() << device << ": " << static_cast<int>(of) << " is absent";
}

TEST_F(KernelRecording, WhatNoDeviceReportsIsNotSupported) {
  read();
  for (const uint32 device : {uint32{kSwp1}, uint32{kSwp3}, uint32{kVeth0}})
    expect_not_supported(device, {property::delay_usec,
                                  property::debounce,
                                  property::debounce_msec,
                                  property::last_link_flapped,
                                  property::interface_resets,
                                  property::auto_mdix,
                                  property::rate_mode,
                                  property::switchport_monitor,
                                  property::unicast_level_percent,
                                  property::broadcast_level_percent,
                                  property::input_trunk_packets,
                                  property::output_trunk_packets,
                                  property::output_cos3_lost,
                                  property::storm_suppressed_packets,
                                  property::layer3_input_routed_bytes,
                                  property::input_internal_mac_errors,
                                  property::runts,
                                  property::alignment_errors,
                                  property::input_overruns,
                                  property::output_underruns,
                                  property::input_drop_events,
                                  property::rate_modes,
                                  property::qos_scheduling,
                                  property::broadcast_suppression,
                                  property::interval_input_bytes,
                                  property::input_bits_per_second,
                                  property::output_packets_per_second});
}

TEST_F(KernelRecording, WhatEveryDeviceReportsIsPresent) {
  read();
  for (const uint32 device : {uint32{kSwp1}, uint32{kSwp3}, uint32{kVeth0}})
    expect_present(
        device, {property::interface, property::device, property::ifindex, property::state, property::mtu_bytes,
                 property::input_packets, property::input_multicast_packets, property::input_bytes,
                 property::output_packets, property::output_bytes, property::input_errors, property::output_errors,
                 property::input_discards, property::collisions, property::carrier_errors, property::input_compressed,
                 property::input_fifo_errors, property::reliability_per_255});
}

TEST_F(KernelRecording, UnicastsAreKnownFromDriversThatSeparateThem) {
  read();
  const std::vector<property> unicasts = {property::input_unicast_packets, property::output_unicast_packets};
  for (const uint32 device : {uint32{kSwp1}, uint32{kSwp2}, uint32{kVeth0}}) expect_not_supported(device, unicasts);
  expect_not_supported(kSwp1, {property::output_multicast_packets, property::input_broadcast_packets});

  kernel_.answer(kCounters, [bytes = recorded(counters_message(kSwp1, {{ETHTOOL_STATS_ETH_MAC,
                                                                        {{ETHTOOL_A_STATS_ETH_MAC_18_TX_MCAST, 500},
                                                                         {ETHTOOL_A_STATS_ETH_MAC_19_TX_BCAST, 40},
                                                                         {ETHTOOL_A_STATS_ETH_MAC_21_RX_MCAST, 3}}}}))](
                                const nlmsghdr&) {
    return recorded_answer{0, {bytes}};
  });
  read();
  expect_present(kSwp1, {property::output_unicast_packets, property::output_multicast_packets});
  expect_not_supported(kSwp1, {property::input_unicast_packets});
}

TEST_F(KernelRecording, FlowControlIsKnownWhereTheKernelReportsIt) {
  read();
  const std::vector<property> both = {property::input_flow_control, property::output_flow_control,
                                      property::admin_input_flow_control, property::admin_output_flow_control};
  expect_present(kSwp1, both);
  expect_present(kSwp3, both);
  expect_not_supported(kSwp2, both);
  expect_not_supported(kVeth0, both);
}

TEST_F(KernelRecording, CapabilitiesAreKnownWhereTheKernelReportsModes) {
  read();
  const std::vector<property> abilities = {property::speeds_mbps, property::duplex_modes, property::flow_control_modes,
                                           property::hardware};
  expect_present(kSwp1, abilities);
  expect_not_supported(kSwp4, abilities);
  expect_not_supported(kVeth0, abilities);
}

TEST_F(KernelRecording, PortModeAndVlansAreThoseOfABridge) {
  read();
  const std::vector<property> vlans = {property::port_mode,     property::vlan,         property::native_vlan,
                                       property::allowed_vlans, property::trunk_status, property::forwarding_vlans};
  expect_present(kSwp3, vlans);
  expect_not_supported(kSwp4, vlans);
  expect_not_supported(kVeth0, vlans);
}

TEST_F(KernelRecording, SpeedAndDuplexAreKnownWhereTheKernelReportsThem) {
  read();
  const std::vector<property> of_link = {property::speed_mbps, property::bandwidth_kbps, property::duplex};
  expect_present(kSwp3, of_link);
  expect_not_supported(kSwp4, of_link);
  expect_not_supported(kVeth0, of_link);
}

// As a veth device: it reports a speed, but supports no modes that it could be set to.
TEST_F(KernelRecording, ADeviceWithoutModesHasNoSpeedWithoutALink) {
  for (const uint32 device : {kVeth0, kSwp6})
    kernel_.tell(kModes, modes_message(device, {.negotiates = 0, .speed_mbps = 10000, .duplex = 1}));
  read();
  const std::vector<property> of_link = {property::speed_mbps, property::duplex};
  expect_present(kVeth0, of_link);
  expect_not_supported(kSwp6, of_link);
}

TEST_F(KernelRecording, LoadsAreKnownOnceTheyAreMeasured) {
  const std::vector<property> measured = {property::rx_load_per_255, property::tx_load_per_255,
                                          property::input_megabytes_per_second, property::input_bytes_per_second};
  const stopped_clock at(1'800'000'000);
  read();
  expect_not_supported(kSwp3, measured);
  clock_advance(10);
  next_command();
  expect_present(kSwp3, measured);
}

TEST_F(KernelRecording, CountersOfADriverAreKnownWhereItHasThem) {
  read();
  expect_present(kSwp1, {property::symbol_errors, property::giants, property::input_crc_errors,
                         property::input_pause_frames, property::output_pause_frames});
  expect_not_supported(kSwp1, {property::deferred, property::input_packets_65_to_127_bytes});
  expect_not_supported(kSwp2, {property::symbol_errors, property::input_pause_frames});
  expect_not_supported(kVeth0, {property::symbol_errors, property::output_pause_frames});
}

TEST_F(KernelRecording, AnMtuBeyondWhatPortsCountIsNotSupported) {
  netlink_request loopback = link_message({.number = kVeth0, .name = "veth0", .kind = "veth", .flags = IFF_UP});
  mnl_attr_put_u32(&loopback.head(), IFLA_MTU, 65'536);  // the last one holds
  kernel_.answer(kLinks, [bytes = recorded(std::move(loopback))](const nlmsghdr&) {
    return recorded_answer{0, {bytes}};
  });
  read();
  expect_not_supported(kVeth0, {property::mtu_bytes});
}

TEST_F(KernelRecording, ModulesThatTheUserMayNotReadAreSaidToBeSo) {
  kernel_.answer(kModules, [](const nlmsghdr&) { return recorded_answer{EPERM}; });
  read();
  for (const uint32 device : {uint32{kSwp1}, uint32{kSwp2}, uint32{kSwp3}})
    EXPECT_EQ(absent_of(port_of(device), {property::presence, property::vendor}),
              (std::map{std::pair(property::presence, absence::no_permission),
                        std::pair(property::vendor, absence::no_permission)}));
  EXPECT_EQ(absent_of(port_of(kVeth0), {property::vendor}), (std::map{std::pair(property::vendor, absence::none)}));
}

TEST_F(KernelRecording, AnEmptyCageAndAPortInNoChannelHaveNone) {
  read();
  EXPECT_EQ(absent_of(port_of(kSwp2), {property::vendor, property::member_of, property::presence}),
            (std::map{std::pair(property::vendor, absence::none)}));
  EXPECT_EQ(absent_of(port_of(kVeth0), {property::member_of, property::description}),
            (std::map{std::pair(property::member_of, absence::none), std::pair(property::description, absence::none)}));
}

// Lets the driver of swp1 tell these counters and nothing else.
void tell_counters(recorded_kernel& kernel, const std::vector<recorded_group>& groups) {
  kernel.answer(kCounters, [bytes = recorded(counters_message(kSwp1, groups))](const nlmsghdr&) {
    return recorded_answer{0, {bytes}};
  });
}

TEST_F(KernelRecording, EachCounterHasItsPlace) {
  tell_counters(kernel_, {{ETHTOOL_STATS_ETH_MAC,
                           {{ETHTOOL_A_STATS_ETH_MAC_3_SINGLE_COL, 1},
                            {ETHTOOL_A_STATS_ETH_MAC_4_MULTI_COL, 2},
                            {ETHTOOL_A_STATS_ETH_MAC_9_TX_DEFER, 3},
                            {ETHTOOL_A_STATS_ETH_MAC_10_LATE_COL, 4},
                            {ETHTOOL_A_STATS_ETH_MAC_11_XS_COL, 5},
                            {ETHTOOL_A_STATS_ETH_MAC_13_CS_ERR, 6},
                            {ETHTOOL_A_STATS_ETH_MAC_20_XS_DEFER, 7},
                            {ETHTOOL_A_STATS_ETH_MAC_2_TX_PKT, 999}}},
                          {ETHTOOL_STATS_RMON,
                           {{ETHTOOL_A_STATS_RMON_UNDERSIZE, 8},
                            {ETHTOOL_A_STATS_RMON_JABBER, 9},
                            {ETHTOOL_A_STATS_RMON_OVERSIZE, 999},
                            {ETHTOOL_A_STATS_RMON_FRAG, 999}}}});
  read();
  const auto errors = statistics_of(kSwp1).mac.errors;
  EXPECT_EQ(errors.single_collision, 1U);
  EXPECT_EQ(errors.multi_collision, 2U);
  EXPECT_EQ(errors.deferred, 3U);
  EXPECT_EQ(errors.late_collision, 4U);
  EXPECT_EQ(errors.excessive_collision, 5U);
  EXPECT_EQ(errors.lost_carrier, 6U);
  EXPECT_EQ(errors.deffered, 7U);
  EXPECT_EQ(errors.shortframe, 8U);
  EXPECT_EQ(errors.jabber, 9U);
  EXPECT_EQ(errors.giants_rx, 0U);
  EXPECT_EQ(errors.runt, 0U);
}

TEST_F(KernelRecording, MulticastsAndBroadcastsAreTakenOutOfThePackets) {
  tell_counters(kernel_, {{ETHTOOL_STATS_ETH_MAC,
                           {{ETHTOOL_A_STATS_ETH_MAC_18_TX_MCAST, 500},
                            {ETHTOOL_A_STATS_ETH_MAC_19_TX_BCAST, 40},
                            {ETHTOOL_A_STATS_ETH_MAC_21_RX_MCAST, 3},
                            {ETHTOOL_A_STATS_ETH_MAC_22_RX_BCAST, 999'999}}}});
  read();
  for (int again = 0; again < 2; ++again) {
    const auto flow = statistics_of(kSwp1).mac.pktflow;
    EXPECT_EQ(flow.egress_pkts, 6000U);
    EXPECT_EQ(flow.multicast_pkts_tx, 500U);
    EXPECT_EQ(flow.broadcast_pkts_tx, 40U);
    EXPECT_EQ(flow.unicast_pkts_tx, 5460U);
    EXPECT_EQ(flow.ingress_pkts, 3000U);
    EXPECT_EQ(flow.multicast_pkts, 3U);
    EXPECT_EQ(flow.broadcast_pkts, 2997U) << "never more than there are packets";
    EXPECT_EQ(flow.unicast_pkts, 0U);
  }
}

TEST_F(KernelRecording, OnlySizesOfTheSameBoundsAreSizes) {
  tell_counters(kernel_,
                {{ETHTOOL_STATS_RMON,
                  {},
                  {{0, 64, 20}, {65, 127, 21}, {128, 255, 22}, {256, 511, 23}, {1024, 1518, 25}, {1519, 2047, 99}},
                  {{64, 64, 30},
                   {100, 127, 99},
                   {0, 255, 99},
                   {512, 1023, 34},
                   {1024, 1522, 99},
                   {1519, 1548, 36},
                   {1549, 9216, 37}}}});
  read();
  const auto flow = statistics_of(kSwp1).mac.pktflow;
  EXPECT_EQ(flow.b64_rx, 20U);
  EXPECT_EQ(flow.b65_127_rx, 21U);
  EXPECT_EQ(flow.b128_255_rx, 22U);
  EXPECT_EQ(flow.b256_511_rx, 23U);
  EXPECT_EQ(flow.b512_1023_rx, 0U);
  EXPECT_EQ(flow.b1024_1518_rx, 25U);
  EXPECT_EQ(flow.b1519_1548_rx, 0U);
  EXPECT_EQ(flow.jumbo_pkts, 0U);
  EXPECT_EQ(flow.b64_tx, 30U);
  EXPECT_EQ(flow.b65_127_tx, 0U);
  EXPECT_EQ(flow.b128_255_tx, 0U);
  EXPECT_EQ(flow.b512_1023_tx, 34U);
  EXPECT_EQ(flow.b1024_1518_tx, 0U);
  EXPECT_EQ(flow.b1519_1548_tx, 36U);
  EXPECT_EQ(flow.jumbo_pkts_tx, 37U);
}

TEST_F(KernelRecording, CountersAreAskedForOnceForAllPorts) {
  read();
  EXPECT_EQ(kernel_.times_asked(kCounters), 0U);
  for (const uint32 it : {kSwp1, kSwp2, kSwp3, kSwp1}) statistics_of(it);
  EXPECT_EQ(kernel_.times_asked(kCounters), 1U);
  next_command();
  statistics_of(kSwp1);
  EXPECT_EQ(kernel_.times_asked(kCounters), 2U);
}

// By the file that other shells read too, so that nothing stays cleared behind the test.
TEST_F(KernelRecording, CountersThatAreClearedCountFromThereOn) {
  const std::string path = testing::TempDir() + "details-" + std::to_string(getpid());
  const auto tell_symbols = [this](uint64 errors) {
    tell_counters(kernel_, {{ETHTOOL_STATS_ETH_PHY, {{ETHTOOL_A_STATS_ETH_PHY_5_SYM_ERR, errors}}}});
    next_command();
  };
  read(path);
  tell_symbols(50);
  EXPECT_EQ(statistics_of(kSwp1).mac.errors.symbol_err, 50U);
  EXPECT_EQ(status_of(serve_statistics(STATS_OPC_CLEAR_PORT, request_bytes(interface_request{port_of(kSwp1)}))), 0);
  EXPECT_EQ(statistics_of(kSwp1).mac.errors.symbol_err, 0U);
  EXPECT_EQ(statistics_of(kSwp1).mac.ctrl.rx_pause, 0U);
  EXPECT_EQ(the_source().write_baselines(), 0);
  tell_symbols(57);
  EXPECT_EQ(statistics_of(kSwp1).mac.errors.symbol_err, 7U);
  EXPECT_EQ(statistics_of(kSwp1).mac.ctrl.rx_pause, 0U);
  tell_symbols(3);
  EXPECT_EQ(statistics_of(kSwp1).mac.errors.symbol_err, 3U) << "the device was made anew";
  std::remove(path.c_str());
  tell_symbols(58);
  EXPECT_EQ(statistics_of(kSwp1).mac.errors.symbol_err, 58U);
}

// ---- A kernel in trouble --------------------------------------------------------------------------------------------

// What the dumps of a command reported, by a value of each.
void expect_whole(const machine& made) {
  EXPECT_EQ(made.interfaces.size(), 12U);
  const interface* const trunk = made.find(port_of(kSwp3));
  ASSERT_NE(trunk, nullptr);
  EXPECT_EQ(trunk->settings.allowed_vlans, (std::vector<uint16>{10, 20, 21, 22, 30}));
  EXPECT_EQ(trunk->oper_speed_mbps, 40'000U);
  EXPECT_EQ(trunk->settings.admin_flow_control, 12);
  const interface* const mgmt = made.find(ethernet_index(IF_TYPE_MGMT, 0, 0));
  ASSERT_NE(mgmt, nullptr);
  EXPECT_EQ(mgmt->addresses.size(), 1U);
}

TEST_F(KernelRecording, ADumpThatWasDisturbedIsAskedForAgain) {
  for (const question& asked : {kLinks, kVlans, kAddresses, kModes, kPauses})
    for (const disturbance how : {disturbance::lost, disturbance::interrupted}) {
      const uint32 before = kernel_.times_asked(asked);
      kernel_.disturb(asked, how);
      read();
      expect_whole(the_machine());
      EXPECT_EQ(kernel_.times_asked(asked), before + 2) << asked.type << '/' << unsigned{asked.what};
    }
}

TEST_F(KernelRecording, ADumpOfDetailsThatWasDisturbedIsAskedForAgain) {
  for (const disturbance how : {disturbance::lost, disturbance::interrupted}) {
    kernel_.disturb(kFaults, how);
    kernel_.disturb(kCounters, how);
    read();
    EXPECT_EQ(port_record_of(kSwp4).oper_state_reason, kLossOfSync);
    EXPECT_EQ(statistics_of(kSwp1).mac.errors.symbol_err, 101U);
  }
}

TEST_F(KernelRecording, DevicesThatAlwaysChangeAreAnError) {
  kernel_.disturb(kLinks, disturbance::interrupted, 100);
  EXPECT_THROW(read(), kernel_error);
  EXPECT_LT(kernel_.times_asked(kLinks), 10U);
}

TEST_F(KernelRecording, VlansThatAlwaysChangeAreAbsent) {
  kernel_.disturb(kVlans, disturbance::interrupted, 100);
  read();
  EXPECT_EQ(the_machine().interfaces.size(), 12U);
  EXPECT_TRUE(device(kSwp3).settings.allowed_vlans.empty());
}

TEST_F(KernelRecording, DevicesThatAreRefusedAreAnError) {
  kernel_.refuse(kLinks, EPERM);
  try {
    read();
    ADD_FAILURE() << "a machine without its devices";
  } catch (const kernel_error& error) {
    EXPECT_EQ(std::string(error.what()), "cannot read the devices of the kernel: Operation not permitted");
  }
}

TEST_F(KernelRecording, WhatElseIsRefusedIsAbsent) {
  for (const question& asked : {kVlans, kAddresses, kModes, kPauses, kFaults, kCounters}) kernel_.refuse(asked, EPERM);
  read();
  EXPECT_EQ(the_machine().interfaces.size(), 12U);
  EXPECT_TRUE(device(kSwp3).settings.allowed_vlans.empty());
  EXPECT_EQ(device(kSwp3).oper_speed_mbps, std::nullopt);
  EXPECT_EQ(device(kSwp3).settings.admin_flow_control, std::nullopt);
  EXPECT_EQ(device(kSwp3).oper_flow_control, std::nullopt);
  EXPECT_EQ(device(kSwp3).oper_mode, std::nullopt);
  EXPECT_EQ(device(kSwp3).settings.native_vlan, std::nullopt);
  EXPECT_EQ(device(kSwp3).capabilities.speeds, std::nullopt);
  EXPECT_EQ(port_record_of(kSwp4).oper_state_reason, kNotConnected);
  EXPECT_EQ(statistics_of(kSwp1).mac.errors.symbol_err, 0U);
  EXPECT_EQ(statistics_of(kSwp1).mac.pktflow.ingress_pkts, 3000U);
}

TEST_F(KernelRecording, AKernelWithoutEthtoolHasPortsAllTheSame) {
  kernel_.has_ethtool = false;
  read();
  EXPECT_EQ(the_machine().interfaces.size(), 12U);
  EXPECT_EQ(device(kSwp1).oper_speed_mbps, std::nullopt);
  EXPECT_EQ(port_record_of(kSwp4).oper_state_reason, kNotConnected);
  EXPECT_EQ(statistics_of(kSwp1).mac.errors.symbol_err, 0U);
  EXPECT_EQ(transceiver_of(kSwp1).status, uint32{PM_ERR_NO_TRANSCEIVER});
  EXPECT_EQ(kernel_.times_asked(kModes) + kernel_.times_asked(kPauses) + kernel_.times_asked(kModules), 0U);
}

TEST_F(KernelRecording, AKernelWithoutEthtoolIsAskedForSpeedsByIoctl) {
  kernel_.has_ethtool = false;
  ethtool_cmd copper{};
  copper.cmd = ETHTOOL_GSET;
  copper.supported = SUPPORTED_100baseT_Full | SUPPORTED_1000baseT_Full | SUPPORTED_Autoneg;
  copper.duplex = DUPLEX_FULL;
  copper.autoneg = AUTONEG_ENABLE;
  ethtool_cmd_speed_set(&copper, 1000);
  kernel_.answer_by_ioctl("swp1", copper);
  ethtool_cmd without_link = copper;
  without_link.duplex = DUPLEX_UNKNOWN;
  ethtool_cmd_speed_set(&without_link, 0xFFFFFFFF);
  kernel_.answer_by_ioctl("swp2", without_link);
  ethtool_pauseparam pause{};
  pause.cmd = ETHTOOL_GPAUSEPARAM;
  pause.rx_pause = 1;
  kernel_.answer_by_ioctl("swp1", pause);
  read();
  EXPECT_EQ(device(kSwp1).oper_speed_mbps, 1000U);
  EXPECT_EQ(device(kSwp1).settings.admin_speed_mbps, 0U);
  EXPECT_EQ(device(kSwp1).oper_duplex, PM_PORT_DUPLEX_FULL);
  EXPECT_EQ(device(kSwp1).capabilities.speeds, CRDCFG_SPEED_100M | CRDCFG_SPEED_1G | CRDCFG_SPEED_AUTO);
  EXPECT_EQ(device(kSwp1).settings.admin_flow_control, 0x0002);
  EXPECT_EQ(device(kSwp2).oper_speed_mbps, std::nullopt);
  EXPECT_TRUE(is_unknown(kSwp2, property::speed_mbps));
  EXPECT_TRUE(is_unknown(kSwp2, property::duplex));
  EXPECT_FALSE(is_unknown(kSwp1, property::speed_mbps));
}

TEST_F(KernelRecording, TheModelOfAPortIsItsDriver) {
  ethtool_drvinfo driver{};
  driver.cmd = ETHTOOL_GDRVINFO;
  std::strcpy(driver.driver, "fastnic");
  kernel_.answer_by_ioctl("swp1", driver);
  std::memset(driver.driver, 'x', sizeof driver.driver);  // without an end
  kernel_.answer_by_ioctl("swp3", driver);
  read();
  EXPECT_STREQ(reinterpret_cast<const char*>(capability_of(kSwp1).model), "fastnic");
  capability_of(kSwp3);
  EXPECT_EQ(device(kSwp3).capabilities.model, std::string(32, 'x'));
  capability_of(kSwp2);
  EXPECT_EQ(device(kSwp2).capabilities.model, "");
}

// The recording answers for a device that no dump of links has: nothing of it is anywhere.
TEST_F(KernelRecording, AnswersForADeviceThatIsGoneAreLeftOut) {
  read();
  EXPECT_EQ(std::as_const(the_machine()).find(port_of(kVanished)), nullptr);
  port_record_of(kSwp4);
  statistics_of(kSwp1);
  for (const interface& it : the_machine().interfaces) {
    EXPECT_NE(it.settings.native_vlan, 66);
    EXPECT_NE(it.oper_speed_mbps, 66U);
    EXPECT_NE(it.stats.errors.symbol, 66U);
    EXPECT_NE(it.stats.errors.pause_sent, 66U);
  }
}

TEST_F(KernelRecording, ADeviceThatIsGoneForTheNextCommandHasNoDetails) {
  read();
  const if_index_t gone = port_of(kSwp1);
  kernel_.answer(kLinks, [](const nlmsghdr&) {
    return recorded_answer{0, {recorded(link_message({.number = kSwp5, .name = "swp5", .flags = 1, .operation = 2}))}};
  });
  next_command();
  EXPECT_EQ(std::as_const(the_machine()).find(gone), nullptr);
  interface left_over;
  left_over.if_index = gone;
  for (const detail requested : {detail::link_fault, detail::module, detail::diagnostics, detail::counters})
    the_source().complete(left_over, requested);
  EXPECT_FALSE(left_over.module_in_port);
  EXPECT_EQ(kernel_.times_asked(kModules) + kernel_.times_asked(kCounters), 0U);
}

// Every message of every answer cut at each of its bytes, and everything read from what is left.
TEST_F(KernelRecording, AnswersThatAreCutAtEachByteAreSafe) {
  constexpr std::size_t kLongest = 700;
  for (kernel_.longest = sizeof(nlmsghdr); kernel_.longest < kLongest; ++kernel_.longest) {
    read();
    for (interface& it : the_machine().interfaces) {
      for (const detail requested : {detail::link_fault, detail::module, detail::diagnostics, detail::counters})
        the_source().complete(it, requested);
      EXPECT_TRUE(!it.oper_speed_mbps || it.oper_speed_mbps == 1000 || it.oper_speed_mbps == 10'000 ||
                  it.oper_speed_mbps == 40'000)
          << kernel_.longest;
      EXPECT_TRUE(!it.stats.errors.symbol || it.stats.errors.symbol == 101) << kernel_.longest;
    }
  }
  kernel_.longest = SIZE_MAX;
  read();
  expect_whole(the_machine());
}

// The same by each decoder, with nothing behind the cut: sanitizers see each read behind the end.
TEST(KernelMessages, OfEthtoolCutAtEachByteKeepWhatIsWhole) {
  std::vector<recorded_message> messages;
  messages.push_back(recorded(modes_message(kSwp1, {.negotiates = 1, .supported = {1, 92}, .partner = {13}})));
  messages.push_back(recorded(pause_message(kSwp1, true, true, true, 5, 6)));
  messages.push_back(recorded(fault_message(kSwp1, 2, 1)));
  messages.push_back(recorded(counters_message(
      kSwp1, {{ETHTOOL_STATS_ETH_PHY, {{0, 7}}}, {ETHTOOL_STATS_RMON, {{0, 8}}, {{0, 64, 9}}, {{65, 127, 10}}}})));
  messages.push_back(recorded(ethtool_message(
      ETHTOOL_MSG_MODULE_EEPROM_GET_REPLY, ETHTOOL_A_MODULE_EEPROM_HEADER, kSwp1,
      [](nlmsghdr& it) { mnl_attr_put(&it, ETHTOOL_A_MODULE_EEPROM_DATA, 128, std::vector<uint8>(128, 3).data()); })));
  for (const recorded_message& whole : messages)
    for (std::size_t length = sizeof(nlmsghdr); length <= whole.size(); ++length) {
      std::vector<char> cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
      auto& head = *reinterpret_cast<nlmsghdr*>(cut.data());
      head.nlmsg_len = static_cast<uint32>(length);
      std::vector<kernel_link> links(1);
      links[0].number = kSwp1;
      link_faults faults;
      std::map<uint32, driver_counter_values> counted;
      decode_link_modes(head, links);
      decode_pause(head, links);
      decode_link_fault(head, faults);
      decode_driver_counters(head, counted);
      EXPECT_LE(decode_module_page(head, kSwp1).size(), kModulePageBytes);
      EXPECT_LE(faults.size(), 1U);
      EXPECT_TRUE(links[0].supported.none() || links[0].supported == (link_modes(2) | link_modes(1) << 92)) << length;
      for (const auto& [device, counters] : counted) {
        EXPECT_EQ(device, kSwp1);
        for (const auto& counter : counters) EXPECT_TRUE(!counter || (*counter >= 7 && *counter <= 10)) << length;
      }
    }
}

}  // namespace
}  // namespace host
