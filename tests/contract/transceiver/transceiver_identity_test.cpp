// The identity of transceivers: as plain text with the run-time state, and with tags.
#include <gtest/gtest.h>

#include <cstring>

#include "contract/sample_ports.h"
#include "contract/transceiver/transceiver_images.h"
#include "platform/misc_info.h"
#include "pmcli/transceiver.h"
#include "support/both_forms.h"
#include "support/failure_walk.h"
#include "support/matchers.h"

namespace pmcli_test {
namespace {

const if_index_t kFibre = fibre_channel(1, 3);

constexpr char kSfpTexts[] =
    "    name is LIGHTWORKS      \n"
    "    part number is LW-10G-SR       \n"
    "    revision is A1  \n"
    "    serial number is LW0123456789    \n";
constexpr char kX2Texts[] =
    "    name is WAVEMAKERS      \n"
    "    part number is WM-X2-LR        \n"
    "    revision is B \n"
    "    serial number is WM987           \n";

std::string sfp_block(lc_fcot_info_t image, bool is_fc = false, bool supported = false) {
  RecordingPlatform platform;
  print_transceiver_info(reinterpret_cast<uint8*>(&image), is_fc, supported);
  return platform.terminal();
}

std::string x2_block(lc_fcot_x2_info_t image, bool is_fc = false, bool supported = false) {
  RecordingPlatform platform;
  print_x2_transceiver_info(reinterpret_cast<uint8*>(&image), is_fc, supported);
  return platform.terminal();
}

// ---- The block of one image ---------------------------------------------------------------------------------------

TEST(TransceiverBlock, NamesAnSfp) {
  EXPECT_EQ(sfp_block(sfp_image()), std::string(kSfpTexts) + "    Nominal bit rate is 10300 MBits/sec\n\n");
}

TEST(TransceiverBlock, NamesTheTransmitterOfFibreChannel) {
  EXPECT_EQ(sfp_block(sfp_image(), true), std::string(kSfpTexts) +
                                              "    <transmitter of an SFP with id 3>\n"
                                              "    Nominal bit rate is 10300 MBits/sec\n\n");
  EXPECT_EQ(x2_block(x2_image(), true), std::string(kX2Texts) + "    <transmitter of an X2 with id 1>\n\n");
}

TEST(TransceiverBlock, ShowsTheVendorsCodeOfSupportedModules) {
  lc_fcot_info_t sfp = sfp_image();
  sfp.vendorData[0] = 0x1F;
  EXPECT_EQ(sfp_block(sfp, false, true), std::string(kSfpTexts) +
                                             "    Nominal bit rate is 10300 MBits/sec\n"
                                             "    tarno extended id is gbic code (0x1f)\n\n");
  lc_fcot_x2_info_t x2 = x2_image();
  x2.extnd_vendor_specific[50] = 0xAB;  // 206 of the image
  EXPECT_EQ(x2_block(x2, false, true), std::string(kX2Texts) + "    tarno extended id is xenpak code (0xab)\n\n");
}

TEST(TransceiverBlock, ShowsTheLengthsThatAreNotZero) {
  lc_fcot_info_t image = sfp_image();
  image.distInKmFor9u = 40;
  image.distaneIn100mFor9u = 100;
  image.distaneIn10mFor50u = 55;
  image.distaneIn10mFor60u = 27;
  EXPECT_EQ(sfp_block(image), std::string(kSfpTexts) +
                                  "    Nominal bit rate is 10300 MBits/sec\n"
                                  "    Link length supported for 9/125mm fiber is 40.100 km(s)\n"
                                  "    Link length supported for 50/125mm fiber is 550 m(s)\n"
                                  "    Link length supported for 62.5/125mm fiber is 270 m(s)\n\n");
  image = sfp_image();
  image.distaneIn100mFor9u = 7;
  EXPECT_THAT(sfp_block(image), HasSubstr("9/125mm fiber is 0.7 km(s)\n\n"));
}

TEST(TransceiverBlock, CutsTextsAtTheirField) {
  lc_fcot_info_t image = sfp_image();
  std::memset(image.VendorName, 'N', sizeof image.VendorName);
  std::memset(image.VendorPN, 'P', sizeof image.VendorPN);
  std::memset(image.VendorRev, 'R', sizeof image.VendorRev);
  std::memset(image.VendorSN, 0, sizeof image.VendorSN);
  EXPECT_EQ(sfp_block(image),
            "    name is NNNNNNNNNNNNNNNN\n    part number is PPPPPPPPPPPPPPPP\n    revision is RRRR\n"
            "    serial number is \n    Nominal bit rate is 10300 MBits/sec\n\n");
}

TEST(TransceiverBlock, OfNothingIsNothing) {
  RecordingPlatform platform;
  print_transceiver_info(nullptr, true, true);
  print_x2_transceiver_info(nullptr, true, true);
  EXPECT_EQ(platform.text(), "");
}

// ---- The plain display --------------------------------------------------------------------------------------------

class PortTransceiver : public testing::Test {
 protected:
  PortTransceiver() { answer(misc_info(kPort, state_entry(kGoodState))); }

  void answer(const octets& payload) {
    platform.on_request = [payload](const mts_request&) { return mts_reply{payload}; };
  }
  syserr_t show(if_index_t if_index = kPort) {
    pm_port_info_t port = named(if_index, port_record());
    return print_port_fcot_info(RecordingPlatform::q(), &port, 1);
  }
  // What is printed behind the identity.
  std::string state_after(const octets& payload) {
    platform.transceivers[kPort] = sfp_record();
    answer(payload);
    EXPECT_EQ(show(), 0);
    const std::string text = platform.text();
    const std::size_t end = text.find("\n\n");
    return end == std::string::npos ? "?" : text.substr(end + 2);
  }

  RecordingPlatform platform;
};

constexpr char kGoodStateLine[] = "    no tx fault, no rx loss, in sync state, Diag mon type 104\n";

TEST_F(PortTransceiver, ShowsIdentityAndState) {
  platform.transceivers[kPort] = sfp_record();
  EXPECT_EQ(show(), 0);
  EXPECT_EQ(platform.text(), std::string("Ethernet1/1 sfp is present \n") + kSfpTexts +
                                 "    Nominal bit rate is 10300 MBits/sec\n    tarno extended id is none (0x0)\n\n" +
                                 kGoodStateLine);
  ASSERT_EQ(platform.requests.size(), 1U);
  EXPECT_EQ(platform.requests[0].node, 0x00000102U);
  EXPECT_EQ(platform.requests[0].sap, 179U);
  EXPECT_EQ(platform.requests[0].opcode, 902U);
  const if_index_t i = kPort;
  EXPECT_EQ(platform.requests[0].payload, (octets{0, 1, static_cast<uint8>(i >> 24), static_cast<uint8>(i >> 16),
                                                  static_cast<uint8>(i >> 8), static_cast<uint8>(i), 0, 1, 0, 1}));
  EXPECT_EQ(platform.receives.at(0).timeout, 60);
}

TEST_F(PortTransceiver, UnsupportedModulesAreNamedAllTheSame) {
  platform.transceivers[kPort] = sfp_record(FCOT_TYPE_SFP, 2);
  EXPECT_EQ(show(), 0);
  EXPECT_EQ(platform.text().substr(0, platform.text().find('\n')), "Ethernet1/1 sfp is present but not supported");
  EXPECT_THAT(platform.text(), HasSubstr("tarno extended id")) << "2 is not 0";
}

TEST_F(PortTransceiver, OnlyTypeOneHasTheLayoutOfAnSfp) {
  platform.transceivers[kPort] = sfp_record(FCOT_TYPE_SFP_PLUS);
  EXPECT_EQ(show(), 0);
  EXPECT_THAT(platform.text(), Not(HasSubstr("LIGHTWORKS"))) << "read at the places of an X2 module";
  platform.clear_output();
  platform.transceivers[kPort] = x2_record();
  EXPECT_EQ(show(), 0);
  EXPECT_THAT(platform.text(), HasSubstr(kX2Texts));
}

TEST_F(PortTransceiver, FibreChannelHasItsTransmitter) {
  platform.transceivers[kFibre] = sfp_record();
  answer(misc_info(kFibre, state_entry(kGoodState)));
  EXPECT_EQ(show(kFibre), 0);
  EXPECT_THAT(platform.text(), HasSubstr("fc1/3 sfp is present \n"));
  EXPECT_THAT(platform.text(), HasSubstr("<transmitter of an SFP with id 3>"));
}

TEST_F(PortTransceiver, OtherKindsHaveNone) {
  EXPECT_EQ(show(kRoutablePort), PM_ERR_GENERAL);
  EXPECT_EQ(platform.text(), "error: invalid if index type(26)\n");
  platform.clear_output();
  EXPECT_EQ(show(kChannel), PM_ERR_GENERAL);
  EXPECT_EQ(platform.text(), "error: invalid if index type(22)\n");
  platform.clear_output();
  const if_index_t storage_channel = port_channel(5, IF_TYPE_PORT_CHANNEL, PC_SUBTYPE_XGFC);
  platform.transceivers[storage_channel] = sfp_record();
  platform.nodes[storage_channel] = 0x102;
  answer(misc_info(storage_channel, {}, 0));
  EXPECT_EQ(show(storage_channel), 0);
}

TEST_F(PortTransceiver, InitializingModulesAreNotShown) {
  pm_port_info_t record = port_record();
  record.sfp_initializing_state = 1;
  platform.ports[kPort] = record;
  platform.transceivers[kPort] = sfp_record();
  EXPECT_EQ(show(), PM_ERR_GENERAL);
  EXPECT_EQ(platform.text(), "error: SFP Ethernet1/1 is inserted and is initializing\n");
}

TEST_F(PortTransceiver, ErrorsOfTheRecordAreTold) {
  const std::pair<uint32, const char*> kTexts[] = {
      {0x4029002A, "Ethernet1/1 sfp not present\n"},
      {0x40290043, "Ethernet1/1 sfp read error\n"},
      {0x40290037, "Ethernet1/1 error in retrieving sfp information - <system error 40290037>\n"},
  };
  for (const auto& [status, text] : kTexts) {
    platform.clear_output();
    platform.transceivers[kPort] = sfp_record();
    platform.transceivers[kPort].status = status;
    EXPECT_EQ(show(), PM_ERR_GENERAL);
    EXPECT_EQ(platform.text(), text);
  }
}

TEST_F(PortTransceiver, FailedQueriesAreTold) {
  EXPECT_EQ(show(), PM_ERR_GENERAL);  // unknown to the service
  EXPECT_EQ(platform.text(), "Ethernet1/1 error in retrieving sfp information - <system error 40290037>\n");
  platform.clear_output();
  platform.syserr_texts[0x40290037] = std::nullopt;
  EXPECT_EQ(show(), PM_ERR_GENERAL);
  EXPECT_EQ(platform.text(), "Ethernet1/1 error in retrieving sfp information - \n");
}

// What an answer that is too short leaves out is 0, which is no layout of an SFP.
TEST_F(PortTransceiver, ShortRecordsAreFilledUp) {
  for (const std::size_t size : {8U, 9U, 200U}) {
    platform.clear_output();
    const pm_fcot_res_t record = sfp_record();
    const auto* const bytes = reinterpret_cast<const uint8*>(&record);
    platform.transceiver_block = octets(bytes, bytes + size);
    EXPECT_EQ(show(), 0) << size;
    const char* const first =
        size > 8 ? "Ethernet1/1 sfp is present \n" : "Ethernet1/1 sfp is present but not supported\n";
    EXPECT_EQ(platform.text().substr(0, platform.text().find('\n') + 1), first);
  }
}

TEST_F(PortTransceiver, SuccessWithoutABlockOrALengthIsAFailure) {
  const std::pair<octets, uint32> kAnswers[] = {{{}, 0}, {{}, 267}, {octets(267, 1), 0}};
  for (const auto& [block, length] : kAnswers) {
    platform.clear_output();
    platform.transceiver_block = block;
    platform.transceiver_length = length;
    EXPECT_EQ(show(), PM_ERR_GENERAL);
    EXPECT_EQ(platform.text(), "Ethernet1/1 error in retrieving sfp information - <system error 40290000>\n");
  }
}

TEST_F(PortTransceiver, AnyBytesAreShown) {
  platform.transceiver_block = octets(267, 0xFF);
  EXPECT_EQ(show(), PM_ERR_GENERAL) << "the status is 0xFFFFFFFF";
  platform.clear_output();
  octets block(267, 0xFF);
  std::fill_n(block.begin() + 4, 4, uint8{0});
  platform.transceiver_block = block;
  EXPECT_EQ(show(), 0);
  EXPECT_THAT(platform.text(), HasSubstr("    name is " + std::string(16, '\xFF') + "\n"));
}

// ---- The run-time state -------------------------------------------------------------------------------------------

TEST_F(PortTransceiver, FlagsOfTheStateAreWords) {
  EXPECT_EQ(state_after(misc_info(kPort, state_entry({0, 1, 1, 1, 0, 1, 1, 1, 0}))),
            "    tx fault, rx loss, no sync exists, Diag mon type 0\n");
}

TEST_F(PortTransceiver, BadChecksumsTakeTheStatesPlace) {
  EXPECT_EQ(state_after(misc_info(kPort, state_entry({0, 1, 0, 0, 1, 1, 0, 1, 9}))), "    Base checksum not OK.\n");
  platform.clear_output();
  EXPECT_EQ(state_after(misc_info(kPort, state_entry({0, 1, 0, 0, 1, 1, 1, 0, 9}))), "    Extended checksum not OK.\n");
  platform.clear_output();
  EXPECT_EQ(state_after(misc_info(kPort, state_entry({0, 1, 0, 0, 1, 1, 0, 0, 9}))),
            "    Base checksum not OK.\n    Extended checksum not OK.\n");
}

TEST_F(PortTransceiver, AStateThatWasNotReadIsSaidSo) {
  for (const octets& state : {octets{1, 1, 0, 0, 1, 1, 1, 1, 9}, octets{0, 1, 0, 0, 1, 0, 1, 1, 9},
                              octets{0, 1, 0, 0, 1, 2, 1, 1, 9}, octets{0}, octets{0, 1, 0, 0, 1}}) {
    platform.clear_output();
    EXPECT_EQ(state_after(misc_info(kPort, state_entry(state))), "    Failed to get runtime SFP state info.\n");
  }
}

TEST_F(PortTransceiver, AStateThatIsShorterEndsInZeros) {
  EXPECT_EQ(state_after(misc_info(kPort, state_entry({0, 1, 0, 0, 1, 1, 1, 1}))),
            "    no tx fault, no rx loss, in sync state, Diag mon type 0\n");
}

TEST_F(PortTransceiver, TheFirstStateAmongTheEntriesCounts) {
  octets entries = {0, 7, 0, 3, 1, 2, 3};
  const octets state = state_entry(kGoodState), other = state_entry({1, 0, 0, 0, 0, 0, 0, 0, 0});
  entries.insert(entries.end(), state.begin(), state.end());
  entries.insert(entries.end(), other.begin(), other.end());
  EXPECT_EQ(state_after(misc_info(kPort, entries, 3)), kGoodStateLine);
  platform.clear_output();
  EXPECT_EQ(state_after(misc_info(kPort, entries, 1)), "") << "only one entry is counted";
  platform.clear_output();
  EXPECT_EQ(state_after(misc_info(kPort, entries, 65535)), kGoodStateLine);
}

TEST_F(PortTransceiver, AnswersForOthersAndErrorsAreTold) {
  char expected[80];
  std::snprintf(expected, sizeof expected, "Xcvr misc info received for wrong ifindex 0x%x.\n", kRoutablePort);
  EXPECT_EQ(state_after(misc_info(kRoutablePort, state_entry(kGoodState))), expected);
  platform.clear_output();
  EXPECT_EQ(state_after(misc_info(kPort, state_entry(kGoodState), 1, 0x40290043)),
            "Error (0x40290043)<system error 40290043> in Xcvr misc info response.\n");
}

// Whatever is cut off says nothing; nothing is read behind the end.
TEST_F(PortTransceiver, AnswersCutAtAnyByteSayNothing) {
  const octets whole = misc_info(kPort, state_entry(kGoodState));
  for (std::size_t size = 0; size < whole.size(); ++size) {
    platform.clear_output();
    EXPECT_EQ(state_after(octets(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size))), "") << size;
  }
}

TEST_F(PortTransceiver, LyingAnswersSayNothing) {
  octets no_ports = misc_info(kPort, state_entry(kGoodState));
  no_ports[1] = 0;
  EXPECT_EQ(state_after(no_ports), "");
  platform.clear_output();
  EXPECT_EQ(state_after(misc_info(kPort, {0, 1, 0xFF, 0xFF, 0, 1, 0}, 65535)), "");
}

TEST_F(PortTransceiver, AnEmptyStateIsPassedOver) {
  octets entries = {0, 1, 0, 0, 0, 1, 0, 0};
  EXPECT_EQ(state_after(misc_info(kPort, entries, 2)), "");
  platform.clear_output();
  const octets state = state_entry(kGoodState);
  entries.insert(entries.end(), state.begin(), state.end());
  EXPECT_EQ(state_after(misc_info(kPort, entries, 3)), kGoodStateLine);
  platform.clear_output();
  EXPECT_EQ(state_after(misc_info(kPort, entries, 2)), "") << "the state is not counted";
}

TEST_F(PortTransceiver, FailuresOfTheStateAreTold) {
  platform.transceivers[kPort] = sfp_record();
  const auto failing = [&](const char* function, int32 result = -1) {
    platform.clear_output();
    platform.fail_with(function, result);
    EXPECT_EQ(show(), 1) << function;
    const std::string text = platform.text();
    platform.fail_with(function, 0);
    return text.substr(text.find("\n\n") + 2);
  };
  char lookup[80];
  std::snprintf(lookup, sizeof lookup, "IDX lookup error for ifindex 0x%x.\n", kPort);
  EXPECT_EQ(failing("idxmap_node_by_if_index"), lookup);
  EXPECT_EQ(failing("mts_send"), "MTS send failed for xcvr misc info.\n");
  EXPECT_EQ(failing("mts_recv"), "<transport failure 1 110>\n");
  EXPECT_EQ(failing("mts_is_reject"), "");
}

TEST_F(PortTransceiver, AnAnswerThatCannotBeDroppedIsAFailure) {
  platform.transceivers[kPort] = sfp_record();
  platform.fail_with("mts_drop");
  EXPECT_EQ(show(), 1);
  EXPECT_THAT(platform.text(), EndsWith("error: in dropping message\n"));
}

TEST(TransceiverWalk, EveryCallMayFail) {
  const auto scenario = [](RecordingPlatform& platform) {
    platform.ports[kPort] = port_record();
    platform.transceivers[kPort] = sfp_record();
    platform.on_request = [](const mts_request&) { return mts_reply{misc_info(kPort, state_entry(kGoodState))}; };
    pm_port_info_t port = named(kPort, port_record());
    print_port_fcot_info(RecordingPlatform::q(), &port, 1);
  };
  EXPECT_GE(walk_failures(scenario), 7U);
  EXPECT_GE(walk_failures(scenario, {}, PM_ERR_GENERAL), 7U);
}

// ---- With tags ----------------------------------------------------------------------------------------------------

class TaggedTransceiver : public testing::Test {
 protected:
  TaggedTransceiver() { capability.fcot_capable = 1; }

  std::string show(pm_fcot_res_t record) {
    platform.clear_output();
    pm_port_info_t port = named(kPort, port_record());
    pm_cli_show_port_transceiver(platform.output(), &port, &capability, &record);
    return platform.text();
  }

  RecordingPlatform platform;
  pm_cli_common_capability_t capability{};
};

TEST_F(TaggedTransceiver, ShowsAnSfp) {
  pm_fcot_res_t record = sfp_record();
  record.fi.fcot_info.distInKmFor9u = 40;
  record.fi.fcot_info.distaneIn10mFor50u = 8;
  record.fi.fcot_info.distaneIn10mFor60u = 3;
  EXPECT_EQ(show(record),
            "Ethernet1/1\n"
            "    sfp is present\n"
            "    name is LIGHTWORKS      \n"
            "    part number is LW-10G-SR       \n"
            "    revision is A1  \n"
            "    serial number is LW0123456789    \n"
            "    nominal bitrate is 10300 MBits/sec\n"
            "    Link length supported for 9/125um fiber is 40 km(s)\n"
            "    Link length supported for 50/125um fiber is 82 m(s)\n"
            "    Link length supported for 62.5/125um fiber is 26 m(s)\n"
            "    tarno id is --\n"
            "    tarno extended id number is 4\n"
            "\n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x0C2A0007, kPort},
                                       {0x302A0008, "present"},
                                       {0x302A0009, "LIGHTWORKS      "},
                                       {0x302A000A, "LW-10G-SR       "},
                                       {0x302A000B, "A1  "},
                                       {0x302A000C, "LW0123456789    "},
                                       {0x142A000D, 10300},
                                       {0x142A000E, 40},
                                       {0x142A000F, 82},
                                       {0x142A0010, 26},
                                       {0x302A0011, "--"},
                                       {0x142A0012, 4}}));
  expect_values_in_text(platform);
}

TEST_F(TaggedTransceiver, ShowsTheSecondTypeOfSfpToo) {
  EXPECT_THAT(show(sfp_record(FCOT_TYPE_SFP_PLUS)), HasSubstr("    name is LIGHTWORKS"));
}

TEST_F(TaggedTransceiver, ShowsAnX2ModuleWithoutLengths) {
  EXPECT_EQ(show(x2_record()),
            "Ethernet1/1\n"
            "    sfp is present\n"
            "    name is WAVEMAKERS      \n"
            "    part number is WM-X2-LR        \n"
            "    revision is B \n"
            "    serial number is WM987           \n"
            "    nominal bitrate is 10000 MBits/sec\n"
            "    tarno id is --\n"
            "    tarno extended id number is 0\n"
            "\n");
}

TEST_F(TaggedTransceiver, SaysWhyThereIsNothingToShow) {
  pm_fcot_res_t none;
  std::memset(&none, 0, sizeof none);
  EXPECT_EQ(show(none), "Ethernet1/1\n    sfp is not present\n\n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x0C2A0007, kPort}, {0x302A0008, "not present"}}));
  for (const uint8 type : {uint8{0}, uint8{3}, uint8{5}, uint8{255}})
    EXPECT_EQ(show(sfp_record(type)), "Ethernet1/1\n    sfp is present but not supported\n");
  capability.fcot_capable = 0;
  EXPECT_EQ(show(sfp_record()), "Ethernet1/1\n    sfp is not applicable\n\n");
}

TEST_F(TaggedTransceiver, EmptyTextsAreDashesAndHighBitsOfTheNameBlanks) {
  pm_fcot_res_t record = sfp_record();
  lc_fcot_info_t& image = record.fi.fcot_info;
  std::memset(image.VendorName, 'a', sizeof image.VendorName);
  image.VendorName[1] = '\xA0';
  image.VendorName[15] = '\xFF';
  std::memset(image.VendorPN, 0, sizeof image.VendorPN);
  std::memset(image.VendorRev, 0, sizeof image.VendorRev);
  std::memset(image.VendorSN, 0, sizeof image.VendorSN);
  const std::string text = show(record);
  EXPECT_THAT(text, HasSubstr("    name is a aaaaaaaaaaaaa \n    part number is --\n    revision is --\n"
                              "    serial number is --\n"));
  std::memset(image.VendorName, 0, sizeof image.VendorName);
  EXPECT_THAT(show(record), HasSubstr("    name is --\n"));
}

struct length_case {
  uint8 km, hundreds, tens_50, tens_625;
  const char* lines;
};

TEST_F(TaggedTransceiver, LengthsFollowTheCodes) {
  const length_case kCases[] = {
      {40, 100, 0, 0, "9/125um fiber is 10 km(s)\n"},
      {0, 55, 0, 0, "9/125um fiber is 5 km(s)\n"},
      {2, 55, 0, 0, "9/125um fiber is 2 km(s)\n"},
      {0, 9, 0, 0, ""},
      {0, 0, 22, 22, "50/125um fiber is 220 m(s)\n|62.5/125um fiber is 220 m(s)\n"},
      {0, 0, 5, 5, "50/125um fiber is 50 m(s)\n|62.5/125um fiber is 50 m(s)\n"},
      {0, 0, 255, 2, "50/125um fiber is 2550 m(s)\n|62.5/125um fiber is 26 m(s)\n"},
      {0, 0, 2, 8, "50/125um fiber is 20 m(s)\n|62.5/125um fiber is 80 m(s)\n"},
  };
  for (const length_case& it : kCases) {
    pm_fcot_res_t record = sfp_record();
    record.fi.fcot_info.distInKmFor9u = it.km;
    record.fi.fcot_info.distaneIn100mFor9u = it.hundreds;
    record.fi.fcot_info.distaneIn10mFor50u = it.tens_50;
    record.fi.fcot_info.distaneIn10mFor60u = it.tens_625;
    std::string expected;
    std::string lines = it.lines;
    while (!lines.empty()) {
      const std::size_t end = std::min(lines.find('|'), lines.size());
      expected += "    Link length supported for " + lines.substr(0, end);
      lines.erase(0, end + 1);
    }
    const std::string text = show(record);
    const std::size_t from = text.find("MBits/sec\n") + 10;
    EXPECT_EQ(text.substr(from, text.find("    tarno id") - from), expected) << it.lines;
  }
}

// ---- Classes ------------------------------------------------------------------------------------------------------

TEST(TransmitterType, HasATextWithinItsBound) {
  const std::pair<uint8, const char*> kTexts[] = {
      {0, "unknown"},
      {1, "unknown"},
      {2, "Longwave Laser"},
      {3, "Shortwave Laser"},
      {4, "Longwave Laser Cost Reduced"},
      {5, "Electrical"},
      {6, "10GBase-SR"},
      {7, "10GBase-LR"},
      {8, "10GBase-ER"},
      {9, "10GBase-LX4"},
      {10, "10GBase-SW"},
      {11, "10GBase-LW"},
      {12, "10GBase-EW"},
      {13, "unknown"},
      {255, "Not Present"},
  };
  for (const auto& [type, text] : kTexts) {
    char buffer[40] = "";
    pm_port_type_string(buffer, sizeof buffer, type);
    EXPECT_STREQ(buffer, text) << int{type};
  }
  char small[6] = "xxxxx";
  pm_port_type_string(small, 5, 6);
  EXPECT_STREQ(small, "10GB");
  pm_port_type_string(small, 0, 7);
  EXPECT_STREQ(small, "10GB");
}

// The vendor's extended module code is at offset 206; 9 to 40 are DWDM, unless the module is for 10-gigabit Ethernet.
TEST(X2Class, OfADwdmModuleComesFirst) {
  lc_fcot_x2_info_t image{};
  image.xcvr_type = 2;
  std::memcpy(reinterpret_cast<uint8*>(&image) + 140, "10-2257-01", 10);
  for (const uint8 code : {uint8{9}, uint8{40}}) {
    reinterpret_cast<uint8*>(&image)[206] = code;
    EXPECT_EQ(pm_get_x2_fcot_type(&image), 20) << int{code};
  }
  reinterpret_cast<uint8*>(&image)[206] = 41;
  EXPECT_EQ(pm_get_x2_fcot_type(&image), 12);
}

TEST(X2Class, FollowsPartNumberAndType) {
  lc_fcot_x2_info_t image{};
  EXPECT_EQ(pm_get_x2_fcot_type(nullptr), 1);
  EXPECT_EQ(pm_get_x2_fcot_type(&image), 1);
  image.xcvr_type = 2;
  EXPECT_EQ(pm_get_x2_fcot_type(&image), 12);
  for (const char* const number :
       {"10-2257-01", "10-2258-01", "10-2205-01", "10-2036-01", "10-2413-01", "10-2357-01"}) {
    image = {};
    std::memcpy(reinterpret_cast<uint8*>(&image) + 140, number, 10);
    EXPECT_EQ(pm_get_x2_fcot_type(&image), 12) << number;
    image.writable_area[140 - 108 + 9] = '2';
    EXPECT_EQ(pm_get_x2_fcot_type(&image), 1) << number;
  }
}

}  // namespace
}  // namespace pmcli_test
