// The transceivers of all ports, and the cabling test.
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <sstream>

#include "contract/sample_ports.h"
#include "contract/transceiver/transceiver_images.h"
#include "pmcli/transceiver.h"
#include "support/failure_walk.h"
#include "support/matchers.h"

namespace pmcli_test {
namespace {

const if_index_t kListedFibre = fibre_channel(1, 1);
const if_index_t kSecondPort = ethernet(1, 5);

octets listing(const std::vector<if_index_t>& interfaces) {
  octets payload;
  const auto put = [&payload](uint32 value) {
    for (const int shift : {24, 16, 8, 0}) payload.push_back(static_cast<uint8>(value >> shift));
  };
  put(static_cast<uint32>(interfaces.size()));
  for (const if_index_t it : interfaces) put(it);
  return payload;
}

// The line card answers about whichever port it is asked.
mts_reply good_state(const mts_request& request) {
  octets answer = misc_info(0, state_entry(kGoodState));
  std::copy_n(request.payload.begin() + 2, 4, answer.begin() + 2);
  return {answer};
}

void equip(RecordingPlatform& platform, if_index_t if_index) {
  platform.ports[if_index] = port_record();
  platform.transceivers[if_index] = sfp_record();
  platform.diagnostics[if_index] = healthy_diagnostics();
}

class Listing : public testing::Test {
 protected:
  Listing() {
    for (const if_index_t port : {kListedFibre, kPort, kSecondPort}) equip(platform, port);
    platform.listings[IF_TYPE_FC] = listing({kListedFibre});
    platform.listings[IF_TYPE_ETHERNET] = listing({kPort, kSecondPort});
    platform.on_request = good_state;
  }

  // Which ports were shown, with the title of what followed.
  std::vector<std::string> shown() {
    std::vector<std::string> lines;
    std::istringstream text(platform.text());
    for (std::string line; std::getline(text, line);)
      if (line.find(" sfp is ") != std::string::npos || line.find("Information (") != std::string::npos)
        lines.push_back(line.substr(line.find_first_not_of(' ')));
    return lines;
  }

  RecordingPlatform platform;
  paraminfo_t* param = platform.show_command(0, kPort);
};

using Lines = std::vector<std::string>;

TEST_F(Listing, ShowsBothKindsWithDiagnosticsInShort) {
  EXPECT_EQ(pm_show_interface_tranceiver(param), 0);
  EXPECT_EQ(shown(), (Lines{"fc1/1 sfp is present ", "SFP Diagnostics Information (internal calibration)",
                            "Ethernet1/1 sfp is present ", "SFP Diagnostics Information (internal calibration)",
                            "Ethernet1/5 sfp is present ", "SFP Diagnostics Information (internal calibration)"}));
}

TEST_F(Listing, ShowsDetails) {
  EXPECT_EQ(pm_show_interface_tranceiver_details(param), 0);
  EXPECT_EQ(shown().size(), 6U);
  EXPECT_EQ(shown().back(), "SFP Detail Diagnostics Information (internal calibration)");
}

// The answers stay with the transport, which is intended; the test drops them.
TEST_F(Listing, ShowsCalibrationsAndLeavesTheAnswers) {
  EXPECT_EQ(pm_show_interface_tranceiver_calibrations(param), 0);
  EXPECT_EQ(shown().size(), 6U);
  EXPECT_EQ(shown().back(), "SFP Calibration Information (internal calibration)");
  EXPECT_EQ(platform.unreleased().size(), 2U) << "one for each kind";
  platform.drop_messages();
}

TEST_F(Listing, DiagnosticsThatThereAreNoneEndWithTheIdentity) {
  platform.fail_with("pm_get_sfp_diag_info", PM_ERR_SFP_NOT_PRESENT);
  EXPECT_EQ(pm_show_interface_transceiver_for_if_type(param, IF_TYPE_FC), 0);
  EXPECT_THAT(platform.text(), EndsWith("Diag mon type 104\n"));
  platform.clear_output();
  platform.fail_with("pm_get_sfp_diag_info", PM_ERR_SFP_NO_DIAGNOSTICS);
  EXPECT_EQ(pm_show_interface_transceiver_for_if_type(param, IF_TYPE_FC), 0);
  EXPECT_THAT(platform.text(), EndsWith("Diag mon type 104\n    Digital diagnostics feature not supported in SFP\n\n"));
}

TEST_F(Listing, PassesPortsThatMayNotBeSeenOrHaveNoRecord) {
  platform.ports.erase(kPort);
  EXPECT_EQ(pm_show_interface_transceiver_for_if_type(param, IF_TYPE_ETHERNET), 0);
  EXPECT_EQ(shown(), (Lines{"Ethernet1/5 sfp is present ", "SFP Diagnostics Information (internal calibration)"}));
}

TEST_F(Listing, HidesWhatTheUserMayNotSee) {
  vsan_bitset_t vsans;
  bitset_clear_all(&vsans);
  platform.port_vsans[kListedFibre] = vsans;
  platform.is_permitted = [](const vsh_fc_intf_perm_check_info_t&) { return boolean{0}; };
  EXPECT_EQ(pm_show_interface_transceiver_for_if_type(param, IF_TYPE_FC), 0);
  EXPECT_THAT(shown(), IsEmpty());
}

TEST_F(Listing, AFailedListingIsToldAndTheOtherKindShown) {
  platform.listings.erase(IF_TYPE_FC);
  EXPECT_EQ(pm_show_interface_transceiver_for_if_type(param, IF_TYPE_FC), 1);
  EXPECT_EQ(pm_show_interface_tranceiver_details_for_if_type(param, IF_TYPE_FC), 1);
  EXPECT_EQ(pm_show_interface_tranceiver_calibrations_for_if_type(param, IF_TYPE_FC), 1);
  EXPECT_EQ(platform.mts_errors.size(), 3U);
  EXPECT_EQ(platform.mts_errors.front().first, 1);
  platform.clear_output();
  EXPECT_EQ(pm_show_interface_tranceiver(param), 0);
  EXPECT_EQ(shown().size(), 4U);
}

TEST_F(Listing, AnAnswerThatCannotBeDroppedIsToldOfTwo) {
  platform.listings[IF_TYPE_FC] = listing({});
  platform.fail_with("mts_drop");
  EXPECT_EQ(pm_show_interface_transceiver_for_if_type(param, IF_TYPE_FC), -1);
  EXPECT_EQ(pm_show_interface_tranceiver_details_for_if_type(param, IF_TYPE_FC), -1);
  EXPECT_EQ(platform.mts_errors.size(), 2U);
}

TEST_F(Listing, HostileListingsShowWhatTheyHold) {
  for (const std::size_t size : {0U, 3U, 4U}) {
    octets payload = listing({kListedFibre});
    payload.resize(size);
    platform.listings[IF_TYPE_FC] = payload;
    EXPECT_EQ(pm_show_interface_transceiver_for_if_type(param, IF_TYPE_FC), 0) << size;
  }
  octets lying = listing({kListedFibre});
  std::fill_n(lying.begin(), 4, uint8{0xFF});
  platform.listings[IF_TYPE_FC] = lying;
  EXPECT_EQ(pm_show_interface_transceiver_for_if_type(param, IF_TYPE_FC), 0);
  EXPECT_EQ(shown().size(), 2U);
}

TEST_F(Listing, NeedsAParameterBlock) {
  EXPECT_EQ(pm_show_interface_transceiver_for_if_type(nullptr, IF_TYPE_FC), 1);
  EXPECT_EQ(pm_show_interface_tranceiver_details_for_if_type(nullptr, IF_TYPE_FC), 1);
  EXPECT_EQ(pm_show_interface_tranceiver_calibrations_for_if_type(nullptr, IF_TYPE_FC), 1);
  EXPECT_EQ(pm_show_interface_tranceiver(nullptr), 0);
  EXPECT_EQ(pm_show_interface_tranceiver_details(nullptr), 0);
  EXPECT_EQ(pm_show_interface_tranceiver_calibrations(nullptr), 0);
}

TEST_F(Listing, EthernetPortsAreLeftOutWhereAMultiplexerIs) {
  for (const char* const path : {"/tmp/fc_nport_mux", "/mnt/pss/fc_nport_mux"}) {
    platform.files = {path};
    platform.clear_output();
    EXPECT_EQ(pm_show_interface_tranceiver(param), 0);
    EXPECT_EQ(shown().size(), 2U) << path;
    platform.clear_output();
    EXPECT_EQ(pm_show_interface_tranceiver_details(param), 0);
    EXPECT_EQ(shown().size(), 6U) << path;
  }
}

TEST_F(Listing, AsksForEachKindInTurn) {
  using Queries = std::vector<RecordingPlatform::listing_query>;
  const Queries both = {{IF_TYPE_FC, RecordingPlatform::q(), 60, {}},
                        {IF_TYPE_ETHERNET, RecordingPlatform::q(), 60, {}}};
  platform.listings = {{IF_TYPE_FC, listing({})}, {IF_TYPE_ETHERNET, listing({kPort})}};
  platform.ports.clear();
  for (const auto show : {pm_show_interface_tranceiver, pm_show_interface_tranceiver_details}) {
    platform.listing_queries.clear();
    platform.port_queries.clear();
    EXPECT_EQ(show(param), 0);
    EXPECT_EQ(platform.listing_queries, both);
    ASSERT_EQ(platform.port_queries.size(), 1U);
    EXPECT_EQ(platform.port_queries.front().range.low, kPort);
    EXPECT_EQ(platform.port_queries.front().range.high, kPort);
    EXPECT_EQ(platform.port_queries.front().timeout, 60);
  }
  EXPECT_EQ(platform.text(), "") << "a port without a record is passed in silence";
}

// No identity, or none of its state: no diagnostics are asked for, and the next port follows.
TEST_F(Listing, AsksForDiagnosticsOnlyBehindAWholeIdentity) {
  platform.transceivers[kPort].status = PM_ERR_SFP_NOT_PRESENT;
  EXPECT_EQ(pm_show_interface_transceiver_for_if_type(param, IF_TYPE_ETHERNET), 0);
  EXPECT_THAT(platform.text(), StartsWith("Ethernet1/1 sfp not present\nEthernet1/5 sfp is present \n"));
  EXPECT_EQ(platform.count("pm_get_sfp_diag_info"), 1U);

  platform.clear_output();
  platform.fail_with("mts_send");
  EXPECT_EQ(pm_show_interface_tranceiver_details_for_if_type(param, IF_TYPE_ETHERNET), 0);
  EXPECT_EQ(shown(), (Lines{"Ethernet1/5 sfp is present "}));
  EXPECT_EQ(platform.count("pm_get_sfp_diag_info"), 1U) << "not again";
}

TEST_F(Listing, PassesAPortWhosePermissionCannotBeRead) {
  platform.listings[IF_TYPE_FC] = listing({kListedFibre, kPort});
  platform.fail_with("pm_get_port_info_range");
  EXPECT_EQ(pm_show_interface_transceiver_for_if_type(param, IF_TYPE_FC), 0);
  EXPECT_THAT(platform.text(), StartsWith("error: getting port info range\nEthernet1/1 sfp is present \n"));
}

// The kind that counts is the port's own, whatever was asked for.
TEST_F(Listing, OtherKindsInAListingAreRefusedOneByOne) {
  platform.ports[kChannel] = port_record();
  platform.listings[IF_TYPE_ETHERNET] = listing({0xFFFFFFFF, kChannel, kPort});
  EXPECT_EQ(pm_show_interface_transceiver_for_if_type(param, IF_TYPE_ETHERNET), 0);
  EXPECT_THAT(platform.text(), StartsWith("error: invalid if index type(22)\nEthernet1/1 sfp is present \n"));
}

// ---- With each call failing in turn -------------------------------------------------------------------------------

constexpr char kIdentity[] =
    "Ethernet1/1 sfp is present \n"
    "    name is LIGHTWORKS      \n"
    "    part number is LW-10G-SR       \n"
    "    revision is A1  \n"
    "    serial number is LW0123456789    \n"
    "    Nominal bit rate is 10300 MBits/sec\n"
    "    tarno extended id is none (0x0)\n"
    "\n";
constexpr char kState[] = "    no tx fault, no rx loss, in sync state, Diag mon type 104\n";
constexpr char kConstants[] =
    "           SFP Calibration Information (internal calibration)\n"
    "  ----------------------------------------------------------------------------\n"
    "  No external calibration constants\n"
    "  ----------------------------------------------------------------------------\n"
    "\n";

using walker = int32 (*)(paraminfo_t*, if_index_type_t);

struct outcome {
  int32 result;
  std::string text;
  bool operator==(const outcome&) const = default;
};

void PrintTo(const outcome& run, std::ostream* out) { *out << '{' << run.result << ", \"" << run.text << "\"}"; }

// By the call that failed, in order; under "" the run in which none failed.
std::map<std::string, std::vector<outcome>> walk(walker show) {
  std::map<std::string, std::vector<outcome>> all;
  outcome run{};
  walk_failures(
      [&](RecordingPlatform& platform) {
        equip(platform, kPort);
        platform.listings[IF_TYPE_ETHERNET] = listing({kPort});
        platform.on_request = good_state;
        run.result = show(platform.show_command(0, kPort), IF_TYPE_ETHERNET);
        run.text = platform.text();
        if (show == pm_show_interface_tranceiver_calibrations_for_if_type) platform.drop_messages();
      },
      [&](const walk_run& walked) { all[walked.platform.failed_call()].push_back(run); });
  return all;
}

TEST(ListingWalk, EveryCallOfTheCalibrationsMayFail) {
  const std::string identity = kIdentity;
  const outcome whole{0, identity + kState + kConstants};
  auto all = walk(pm_show_interface_tranceiver_calibrations_for_if_type);
  using Runs = std::vector<outcome>;
  EXPECT_EQ(all[""], Runs{whole});
  EXPECT_EQ(all["pm_get_if_index_listing"], (Runs{{1, "<transport failure 1 110>\n"}}));
  // The walk's own query, then that of the identity.
  EXPECT_EQ(all["pm_cmi_get_port_config"], (Runs{{0, ""}, whole}));
  EXPECT_EQ(all["pm_cmi_get_fcot_info"],
            (Runs{{0, "Ethernet1/1 error in retrieving sfp information - <system error FFFFFFFF>\n"}}));
  EXPECT_EQ(all["mts_send"], (Runs{{0, identity + "MTS send failed for xcvr misc info.\n"}}));
  EXPECT_EQ(all["mts_recv"], (Runs{{0, identity + "<transport failure 1 110>\n"}}));
  EXPECT_EQ(all["mts_is_reject"], (Runs{{0, identity}}));
  EXPECT_EQ(all["pm_get_sfp_diag_info"], (Runs{{0, identity + kState + "    unknown error 0xffffffff\n\n"}}));
  // The request, the answer of the line card, and the listing, which only the test drops.
  EXPECT_EQ(all["mts_drop"], (Runs{whole, {0, identity + kState + "error: in dropping message\n"}, whole}));
}

TEST(ListingWalk, EveryCallOfTheOthersMayFail) {
  for (const walker show :
       {pm_show_interface_transceiver_for_if_type, pm_show_interface_tranceiver_details_for_if_type}) {
    auto all = walk(show);
    ASSERT_EQ(all[""].size(), 1U);
    const outcome whole = all[""].front();
    EXPECT_EQ(whole.result, 0);
    EXPECT_THAT(whole.text, StartsWith(std::string(kIdentity) + kState));
    EXPECT_EQ(all["pm_get_if_index_listing"].front().result, 1);
    ASSERT_EQ(all["mts_drop"].size(), 3U);
    EXPECT_EQ(all["mts_drop"].back(), (outcome{-1, whole.text + "<transport failure 1 110>\n"}));
    EXPECT_EQ(all["pm_get_sfp_diag_info"].front(),
              (outcome{0, std::string(kIdentity) + kState + "    unknown error 0xffffffff\n\n"}));
  }
}

// ---- The cabling test ---------------------------------------------------------------------------------------------

class CablingTest : public testing::Test {
 protected:
  paraminfo_t* command(char* name) {
    paraminfo_t* const param = platform.show_command(0, kPort);
    param->arg_list[0]->arg = name;
    return param;
  }

  RecordingPlatform platform;
};

using Commands = std::vector<std::string>;

TEST_F(CablingTest, RunsOnTheFileThatIsNamed) {
  platform.paths["bootflash:cable.txt"] = "/bootflash/cable.txt";
  char name[] = "bootflash:cable.txt";
  EXPECT_EQ(pm_cli_test_snake(command(name)), 0);
  EXPECT_EQ(platform.shell_commands, (Commands{"/vexa/bin/test_snake /bootflash/cable.txt"}));
}

TEST_F(CablingTest, RunsWithoutAFile) {
  EXPECT_EQ(pm_cli_test_snake(command(nullptr)), 0);
  paraminfo_t* const param = command(nullptr);
  param->parameter_count = 0;
  EXPECT_EQ(pm_cli_test_snake(param), 0);
  param->parameter_count = 255;
  param->arg_list[0] = nullptr;
  EXPECT_EQ(pm_cli_test_snake(param), 0);
  EXPECT_EQ(platform.shell_commands, Commands(3, "/vexa/bin/test_snake "));
}

TEST_F(CablingTest, RefusesNamesThatCannotBeMapped) {
  char name[] = "ftp:cable.txt";
  EXPECT_EQ(pm_cli_test_snake(command(name)), 1);
  EXPECT_EQ(platform.text(), "Unknown URI scheme\n");
  EXPECT_THAT(platform.shell_commands, IsEmpty());
  EXPECT_EQ(pm_cli_test_snake(nullptr), 1);
}

TEST_F(CablingTest, CutsACommandThatIsTooLong) {
  platform.paths["long"] = std::string(120, 'x');
  char name[] = "long";
  EXPECT_EQ(pm_cli_test_snake(command(name)), 0);
  EXPECT_EQ(platform.shell_commands, (Commands{"/vexa/bin/test_snake " + std::string(127 - 21, 'x')}));
}

}  // namespace
}  // namespace pmcli_test
