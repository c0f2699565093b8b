// Modules in ports: their pages, what they measure, what the line card and the port manager say of them.
#include <gtest/gtest.h>

#include <fstream>

#include "host/base/temporary_file.h"
#include "host/client/client_fixture.h"
#include "host/source/kernel/module_page.h"
#include "host/switch/stopped_clock.h"
#include "messages/calls/module_resources.h"
#include "platform/misc_info.h"
#include "platform/module_resources.h"
#include "platform/platform_data.h"
#include "platform/satellite.h"
#include "platform/syserr.h"
#include "platform/transceiver.h"
#include "platform/uri.h"
#include "service/answers.h"
#include "service/services.h"
#include "source/chassis/module_image.h"
#include "source/chassis/switch_file.h"
#include "switch/interface_name.h"

namespace host {
namespace {

constexpr uint32 kDriftBegins = 1'800'000'000 / 21'600 * 21'600;  // the drift begins anew

// ---- Pages ----------------------------------------------------------------------------------------------------------

TEST(ModulePage, OfAUsualSfpHasItsFieldsAndSums) {
  const std::vector<uint8> page = module_image("10Gbase-SR", 0x1234);
  ASSERT_EQ(page.size(), 128u);
  EXPECT_EQ(page[12], 103);
  EXPECT_EQ(page[16], 8) << "82 m";
  EXPECT_EQ(text_at(page, 20, 16), "LIGHTWORKS      ");
  EXPECT_EQ(text_at(page, 68, 16), "LW1234          ");
  EXPECT_EQ(page[63], sum_of(page, 0, 63));
  EXPECT_EQ(page[95], sum_of(page, 64, 95));
  EXPECT_TRUE(has_diagnostics(page));
  EXPECT_FALSE(has_diagnostics(module_image("10Gbase-CU", 1)));
}

TEST(ModulePage, OfAnX2HasItsLayout) {
  const std::vector<uint8> page = module_image("10Gbase-LX4", 0x77);
  ASSERT_EQ(page.size(), 245u);
  EXPECT_EQ(text_at(page, 40, 10), "LIGHTWORKS");
  EXPECT_EQ(text_at(page, 56, 9), "LW-X2-LX4");
  EXPECT_EQ(text_at(page, 74, 4), "LW77");
  EXPECT_FALSE(has_diagnostics(page));
}

TEST(ModulePage, OfNoMediumIsNone) { EXPECT_TRUE(module_image("carrier pigeon", 1).empty()); }

TEST(ModulePage, IsReadFromFiles) {
  const std::string directory = testing::TempDir();
  std::ofstream(directory + "page.hex") << "# a page\n03 04 fF # an id\n\n0a0B\n";
  EXPECT_EQ(read_image(directory + "page.hex"), (std::vector<uint8>{3, 4, 255, 10, 11}));
  std::ofstream(directory + "page.bin", std::ios::binary) << "#\n";
  EXPECT_EQ(read_image(directory + "page.bin"), (std::vector<uint8>{'#', '\n'}));
  for (const char* const wrong : {"0", "0g", "zz"}) {
    std::ofstream(directory + "page.hex") << wrong;
    EXPECT_THROW(read_image(directory + "page.hex"), std::runtime_error) << wrong;
  }
  EXPECT_THROW(read_image("/nowhere/page.hex"), std::runtime_error);
}

// ---- Measurements ---------------------------------------------------------------------------------------------------

class Modules : public Clients {
 protected:
  Modules() {
    interface& port = *the_machine().find(names_.third_port);
    port.module_in_port = transceiver{.supported = true, .type = FCOT_TYPE_SFP};
    port.module_in_port->eeprom = module_image("10Gbase-SR", port.if_index);
    port.module_in_port->diagnostics.calibration = 1;
    port.oper_state = 1;
    port.settings.admin_state = 1;
    port.oper_speed_mbps = 10'000;
  }
  interface& port() {
    return *the_machine().find(names_.third_port);
  }
  optical_diagnostics& module() { return port().module_in_port->diagnostics; }

  int32 ask(mts_get_sfp_diag_info_t* record) {
    sfp_diag_info_ddm_tlvs_t further{};
    *record = {};
    return pm_get_sfp_diag_info(q_, names_.third_port, record, &further);
  }

  const stopped_clock at_ = stopped_clock(kDriftBegins);
};

TEST_F(Modules, MeasureAtRest) {
  mts_get_sfp_diag_info_t record;
  ASSERT_EQ(ask(&record), 0);
  EXPECT_EQ(record.calib_type, 1u);
  EXPECT_EQ(record.temp, 34'000);
  EXPECT_EQ(record.volt, 3'295'000u);
  EXPECT_EQ(record.curr, 6'600u);
  EXPECT_EQ(record.tx_pwr, 590u);
  EXPECT_EQ(record.rx_pwr, 420u);
  EXPECT_EQ(record.alarm_flags, 0u);
  EXPECT_EQ(record.warn_flags, 0u);
  EXPECT_EQ(record.temp_lo_alarm, -5'000);
  EXPECT_EQ(record.rx_pwr_lo_warn, 63u);
}

TEST_F(Modules, DriftWithTheRoomAndWarmUpUnderLoad) {
  EXPECT_EQ(read_optics(port(), kDriftBegins + 5'400).temperature_mc, 36'500) << "a quarter of six hours";
  EXPECT_EQ(read_optics(port(), kDriftBegins + 16'200).temperature_mc, 31'500);
  port().stats.in_bytes_per_second = port().stats.out_bytes_per_second = 625'000'000;  // half of the line
  EXPECT_EQ(read_optics(port(), kDriftBegins).temperature_mc, 37'000);
  port().stats.in_bytes_per_second = 1'000'000'000'000;
  EXPECT_EQ(read_optics(port(), kDriftBegins).temperature_mc, 40'000) << "no more than all of it";
}

TEST_F(Modules, AlarmsComeAndGo) {
  module().temperature_mc = 69'000;
  EXPECT_EQ(read_optics(port(), kDriftBegins).warnings, 0u);
  EXPECT_EQ(read_optics(port(), kDriftBegins + 5'400).warnings, 0x001u);
  EXPECT_EQ(read_optics(port(), kDriftBegins + 5'400).alarms, 0u);
  module().temperature_mc = -6'000;
  EXPECT_EQ(read_optics(port(), kDriftBegins).alarms, 0x002u);
  EXPECT_EQ(read_optics(port(), kDriftBegins).warnings, 0x002u);
  module().temperature_mc = 34'000;
  module().voltage_uv = 3'700'000;
  module().bias_ua = 3'000;
  module().tx_uw = 1;
  module().rx_uw = 2'000;
  EXPECT_EQ(read_optics(port(), kDriftBegins).alarms, 0x004u | 0x020u | 0x080u | 0x100u);
}

TEST_F(Modules, SendNothingWhenSwitchedOffAndReceiveNothingWithoutALink) {
  port().oper_state = 2;
  EXPECT_EQ(read_optics(port(), kDriftBegins).rx_uw, 0u);
  EXPECT_EQ(read_optics(port(), kDriftBegins).tx_uw, 590u);
  port().settings.admin_state = 2;
  EXPECT_EQ(read_optics(port(), kDriftBegins).tx_uw, 0u);
  EXPECT_EQ(read_optics(port(), kDriftBegins).bias_ua, 0u);
}

TEST_F(Modules, WithoutDiagnosticsSayWhy) {
  mts_get_sfp_diag_info_t record;
  port().module_in_port->is_initializing = true;
  EXPECT_EQ(ask(&record), PM_ERR_SFP_NO_INFORMATION);
  module().calibration = 0;
  EXPECT_EQ(ask(&record), PM_ERR_SFP_NO_DIAGNOSTICS);
  port().module_in_port.reset();
  EXPECT_EQ(ask(&record), PM_ERR_SFP_NOT_PRESENT);
}

// ---- The line card --------------------------------------------------------------------------------------------------

class LineCard : public Modules {
 protected:
  std::optional<port_xcvr_info_t> state(uint32 node = 1) {
    port_misc_info_req_t request{0, 1, names_.third_port, 1, {MISC_INFO_TRANSCEIVER_STATE}};
    const mts_addr_t to{node, MTS_SAP_PORT_MISC_INFO};
    mts_msg_ref_t sent{}, got{};
    if (mts_send(q_, &to, MTS_OPC_PORT_MISC_INFO, &request, sizeof request, &sent, 0, 0) != 0) return std::nullopt;
    mts_recv_options_t options{};
    options.version = 1;
    options.timeout = 1;
    options.rr_token = mts_rr_token_get(&sent);
    EXPECT_EQ(mts_recv(q_, &got, &options), 0);
    EXPECT_EQ(mts_payload_size(&got), 2u + 10u + 4u + 9u);
    port_xcvr_info_t found;
    std::memcpy(&found, static_cast<const char*>(mts_payload_get(&got)) + 16, sizeof found);
    mts_drop(q_, &sent);
    mts_drop(q_, &got);
    return found;
  }
};

TEST_F(LineCard, TellsTheState) {
  const auto found = state();
  ASSERT_TRUE(found);
  EXPECT_EQ(found->op_status, 0);
  EXPECT_EQ(found->read_ok, 1);
  EXPECT_EQ(found->rx_loss, 0);
  EXPECT_EQ(found->sync_state, 1);
  EXPECT_EQ(found->csum_base_ok, 1);
  EXPECT_EQ(found->csum_ext_ok, 1);
  EXPECT_EQ(found->diag_mon_type, 0x68);
}

TEST_F(LineCard, AddsUpTheSums) {
  port().module_in_port->eeprom[20] ^= 1;
  EXPECT_EQ(state()->csum_base_ok, 0);
  EXPECT_EQ(state()->csum_ext_ok, 1);
  port().module_in_port->eeprom[68] ^= 1;
  EXPECT_EQ(state()->csum_ext_ok, 0);
  port().module_in_port->eeprom.clear();
  EXPECT_EQ(state()->csum_base_ok, 1) << "the sum of nothing is 0";
}

TEST_F(LineCard, IsReachedAtItsNodeOnly) {
  EXPECT_TRUE(state(2)) << "any card answers for all ports";
  EXPECT_FALSE(state(0));
  EXPECT_FALSE(state(256));
  const mts_addr_t local{MTS_NODE_LOCAL, MTS_SAP_PORT_MISC_INFO};
  mts_msg_ref_t sent{};
  uint8 nothing = 0;
  ASSERT_EQ(mts_send(q_, &local, MTS_OPC_PORT_MISC_INFO, &nothing, 1, &sent, 0, 0), 0) << "the port manager";
  mts_drop(q_, &sent);
}

// ---- Satellites -----------------------------------------------------------------------------------------------------

TEST_F(Modules, OfSatellitesAreAskedOfTheirUnit) {
  interface added = port();
  added.if_index = index_of(IF_TYPE_SATELLITE, {.unit = 101, .slot = 1, .port = 3});
  the_machine().add(added);
  satmgr_fport_info_t fport{};
  EXPECT_EQ(satmgr_get_fport_info(q_, added.if_index, &fport), 0);
  EXPECT_EQ(fport.sat_id, 101u);
  satmgr_slot_info_t slot{};
  EXPECT_EQ(satmgr_get_slot_info(q_, &fport, &slot), 0);
  EXPECT_EQ(slot.slot_id, fport.slot);
  mts_get_sfp_diag_info_t record{};
  sfp_diag_info_ddm_tlvs_t further{};
  EXPECT_EQ(pm_get_sat_sfp_diag_info(q_, fport.sat_id, slot.slot_id, added.if_index, &record, &further), 0);
  EXPECT_EQ(record.if_index, added.if_index);
  EXPECT_EQ(satmgr_get_fport_info(q_, names_.third_port, &fport), PM_ERR_NOT_ALLOWED_ON_INTERFACE);
}

// ---- Module resources -----------------------------------------------------------------------------------------------

TEST_F(Modules, CardsShareOutResources) {
  the_machine().cards = {{.slot = 3, .card_type = 1, .model = "", .shares_resources = true}};
  EXPECT_NE(pdb_is_module_tamber(4 * 256 + 2), 0u);
  EXPECT_EQ(pdb_is_module_tamber(3 * 256 + 2), 0u);
  for (uint32 number = 1; number <= 7; ++number) {
    interface fibre;
    fibre.if_index = index_of(IF_TYPE_FC, {.slot = 4, .port = number});
    fibre.oper_speed_mbps = 4'000;
    the_machine().add(fibre);
  }
  const pm_mod_resource_category_t category{PM_RESOURCE_MODULE, 3};
  mts_msg_ref_t got{};
  ASSERT_EQ(pm_get_module_resources(q_, 1, &category, 65535, 4 * 256 + 2, &got), 0);
  const std::span<const std::byte> payload(static_cast<const std::byte*>(mts_payload_get(&got)),
                                           mts_payload_size(&got));
  // Head; module; a global group with four values; two port groups with two, two buffer groups with two, seven ports
  // with four.
  EXPECT_EQ(payload.size(), 4u + 12 + (12 + 4 * 8) + 2 * (12 + 2 * 8) + 2 * (12 + 2 * 8) + 7 * (12 + 4 * 8));
  be32 error;
  std::memcpy(&error, payload.data(), sizeof error);
  EXPECT_EQ(error, 0u);
  mts_drop(q_, &got);
}

TEST_F(Modules, ResourcesOfAModuleAreTakenApartAsAWhole) {
  the_machine().cards = {{.slot = 3, .card_type = 1, .model = "", .shares_resources = true}};
  interface fibre;
  fibre.if_index = index_of(IF_TYPE_FC, {.slot = 4, .port = 1});
  fibre.oper_speed_mbps = 4'000;
  the_machine().add(fibre);
  // Head; module; a global group with four values; a port group with two; a buffer group with two; a port with four.
  constexpr uint32 kBytes = 4 + 12 + (12 + 4 * 8) + (12 + 2 * 8) + (12 + 2 * 8) + (12 + 4 * 8);

  const auto whole = ask_module_resources(q_, 4);
  ASSERT_TRUE(whole);
  ASSERT_EQ(whole->size(), 5u);
  EXPECT_EQ(whole->front().category, uint32{PM_RESOURCE_MODULE});
  EXPECT_EQ(whole->front().buffers, std::nullopt);
  EXPECT_EQ(whole->back().id, fibre.if_index);
  EXPECT_EQ(whole->back().port_group, 1u);
  EXPECT_EQ(whole->back().buffer_group, 1u);
  EXPECT_EQ(whole->back().bandwidth_mbps, 4'000u);
  for (uint32 left = 0; left < kBytes; ++left) {
    ASSERT_TRUE(transport_inject_fault("port-manager", {injected_fault::kind::cut, left}));
    EXPECT_FALSE(ask_module_resources(q_, 4)) << "cut to " << left;
  }
  ASSERT_TRUE(transport_inject_fault("port-manager", {injected_fault::kind::none}));
  EXPECT_FALSE(ask_module_resources(q_, 5)) << "its card shares nothing out";
}

// ---- Names of files -------------------------------------------------------------------------------------------------

TEST(FileName, IsMappedWhenItIsPlain) {
  char path[128] = "";
  EXPECT_EQ(uri_map_targetfs_path_get("bootflash:cable/list-1.txt", path, sizeof path), 0);
  EXPECT_STREQ(path, "cable/list-1.txt");
  EXPECT_EQ(uri_map_targetfs_path_get("/tmp/x", path, sizeof path), 0);
  EXPECT_STREQ(path, "/tmp/x");
  for (const std::string& wrong :
       {std::string("ftp:x"), std::string("x"), std::string("bootflash:"), std::string("bootflash:a;b"),
        std::string("bootflash:$(x)"), std::string("bootflash:a b"), "bootflash:" + std::string(101, 'x')})
    EXPECT_NE(uri_map_targetfs_path_get(wrong.c_str(), path, sizeof path), 0) << wrong;
  char small[4];
  EXPECT_NE(uri_map_targetfs_path_get("/tmp/x", small, sizeof small), 0);
}

}  // namespace
}  // namespace host
