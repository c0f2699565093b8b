// The output channel: placeholders, type codes, names, order, and what is made safe.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>

#include "host/shell/output/captured_command.h"
#include "messages/interface_values.h"
#include "platform/cmd_channel.h"
#include "service/answers.h"
#include "shell/output/rendering.h"
#include "switch/if_index_layout.h"
#include "transport/transport.h"

namespace session {
namespace {

// What a line of the channel with one value looks like.
template <typename Value>
std::string print_one(const char* format, uint32 tuple, const Value& value) {
  captured_command command;
  cmd_prt(command.channel(), format, cmd_tuple(tuple, &value));
  return command.finish();
}

std::string print_text(const char* format, uint32 tuple, const char* text) {
  captured_command command;
  cmd_prt(command.channel(), format, cmd_tuple(tuple, text));
  return command.finish();
}

std::string print_enum(uint32 tuple, uint32 value) { return print_one("%s\n", tuple, value); }

const if_index_t kEthernet1_10 = host::ethernet_index(IF_TYPE_ETHERNET, 0, 9);

TEST(Placeholders, WidthPadsAndPrecisionCuts) {
  const uint32 number = 1500;
  EXPECT_EQ(print_one("[%8s]\n", 0x142A0278, number), "[    1500]\n");
  EXPECT_EQ(print_one("[%-8s]\n", 0x142A0278, number), "[1500    ]\n");
  EXPECT_EQ(print_one("[%-6.2s]\n", 0x142A0278, number), "[15    ]\n");
  EXPECT_EQ(print_one("[%.3s]\n", 0x142A0278, number), "[150]\n");
  EXPECT_EQ(print_one("[%2s]\n", 0x142A0278, number), "[1500]\n");
}

TEST(Placeholders, OtherPercentSignsAreLiteral) {
  const uint32 number = 7;
  captured_command command;
  cmd_prt(command.channel(), "UcastSupp %      McastSupp %\n");
  cmd_prt(command.channel(), "100%, %d %5.s %--3s %% %s%\n", cmd_tuple(0x142A0278, &number));
  EXPECT_EQ(command.finish(), "UcastSupp %      McastSupp %\n100%, %d %5.s %--3s %% 7%\n");
}

// Ethernet1/10 of this switch has an MTU that is not known.
host::reply serve_no_mtu(mts_opc_t opcode, std::span<const std::byte> request) {
  host::reply answer;
  const auto head = [&](uint32 count) { host::append_bytes(answer, host::reply_head{0, count}); };
  if (opcode == host::VALUES_OPC_SOURCE) {
    head(1);
    host::append_bytes(answer, host::source_answer{0});
    return answer;
  }
  EXPECT_EQ(opcode, host::VALUES_OPC_UNKNOWN);
  host::values_request asked;
  std::memcpy(&asked, request.data(), sizeof asked);
  host::unknown_answer unknown{};
  if (asked.if_index == kEthernet1_10) unknown.set(host::property::mtu_bytes);
  head(1);
  host::append_bytes(answer, unknown);
  return answer;
}

constexpr host::service kNoMtu[] = {{host::SAP_INTERFACE_VALUES, "interface-values", serve_no_mtu}};

TEST(Placeholders, AValueThatIsNotKnownIsADash) {
  const uint32 number = 1500;
  host::transport_register(kNoMtu);
  host::output_settings settings;
  settings.shown = {host::kDetailedDisplay, {}, "detailed", false, true};
  captured_command command(settings);
  const auto row = [&](if_index_t if_index) {
    command.output().begin_interface("a port", if_index);
    cmd_prt(command.channel(), "[%8s|%-6s|%s]\n", cmd_tuple(0x142A0278, &number), cmd_tuple(0x142A0278, &number),
            cmd_tuple(0x142A0279, &number));
    command.output().end_interface();
  };
  row(kEthernet1_10);
  row(kEthernet1_10 + 0x1000);
  row(0);
  EXPECT_EQ(command.finish(), "[      --|--    |1500]\n[    1500|1500  |1500]\n[    1500|1500  |1500]\n");
}

TEST(Placeholders, SixteenTuplesOfOneCallKeepTheirValues) {
  uint32 v[16];
  for (uint32 i = 0; i < 16; ++i) v[i] = i + 1;
  captured_command command;
  const auto t = [&v](int i) { return cmd_tuple(0x142A0278, &v[i]); };
  cmd_prt(command.channel(), "%s %s %s %s %s %s %s %s %s %s %s %s %s %s %s %s\n", t(0), t(1), t(2), t(3), t(4), t(5),
          t(6), t(7), t(8), t(9), t(10), t(11), t(12), t(13), t(14), t(15));
  EXPECT_EQ(command.finish(), "1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16\n");
}

TEST(Placeholders, CellsCountCharactersAndNotBytes) {
  EXPECT_EQ(print_text("[%-6.4s]\n", 0x302A01DC,
                       "Gr\xc3\xbc\xc3\x9f"
                       "e"),
            "[Gr\xc3\xbc\xc3\x9f  ]\n");
}

TEST(TypeCodes, AreRenderedAsText) {
  const uint8 mac[] = {0x02, 0x1C, 0x73, 0x00, 0xAB, 0x0F};
  const uint8 address[] = {192, 0, 2, 254};
  EXPECT_EQ(print_one("%s\n", 0x142A0278, uint32{4294967295U}), "4294967295\n");
  EXPECT_EQ(print_one("%s\n", 0x152A0250, uint64{18446744073709551615ULL}), "18446744073709551615\n");
  EXPECT_EQ(print_one("%s\n", 0x0F2A0274, mac), "021c.7300.ab0f\n");
  EXPECT_EQ(print_one("%s\n", 0x1E2A0276, address), "192.0.2.254\n");
  EXPECT_EQ(print_one("%s\n", 0x222A05EA, uint32{0x1A000F}), "0x1a000f\n");
  EXPECT_EQ(print_one("%s\n", 0x0C2A01D8, kEthernet1_10), "Ethernet1/10\n");
  EXPECT_EQ(print_text("%s\n", 0x302A0273, "Port-Channel"), "Port-Channel\n");
  EXPECT_EQ(print_text("%s\n", 0, "plain"), "plain\n");
}

TEST(TypeCodes, TagOfATextIsATextWhateverItsCodeSays) {
  EXPECT_EQ(print_text("    Belongs to %s\n", 0x142A0271, "port-channel7"), "    Belongs to port-channel7\n");
}

TEST(TypeCodes, FloatsHaveTheirDigitsAndSign) {
  EXPECT_EQ(print_one("%6s C\n", 0x452A0020, cmd_float_t{25.5F, 0, {{25, 50, 2}}}), " 25.50 C\n");
  EXPECT_EQ(print_one("%s\n", 0x452A0020, cmd_float_t{3.05F, 0, {{3, 5, 2}}}), "3.05\n");
  EXPECT_EQ(print_one("%s\n", 0x452A0020, cmd_float_t{-0.5F, 0, {{0, 50, 2}}}), "-0.50\n");
  EXPECT_EQ(print_one("%s\n", 0x452A0020, cmd_float_t{-3.25F, 0, {{-3, 25, 2}}}), "-3.25\n");
  EXPECT_EQ(print_one("%s\n", 0x452A0020, cmd_float_t{7.0F, 0, {{7, 0, 0}}}), "7\n");
}

TEST(EnumeratedValues, HaveTheTextsOfTheirTag) {
  EXPECT_EQ(print_enum(0x022A01D9, 1), "up\n");
  EXPECT_EQ(print_enum(0x022A01F8, 2), "down\n");
  EXPECT_EQ(print_enum(0x022A0281, 1), "full\n");
  EXPECT_EQ(print_enum(0x022A0616, 2), "half\n");
  EXPECT_EQ(print_enum(0x022A01E3, 3), "auto\n");
  EXPECT_EQ(print_enum(0x022A0282, 0), "auto\n");
  EXPECT_EQ(print_enum(0x022A0617, 10000), "10000\n");
  EXPECT_EQ(print_enum(0x022A01E2, 0), "0\n");
  EXPECT_EQ(print_enum(0x022A028A, 1), "on\n");
  EXPECT_EQ(print_enum(0x022A028B, 0), "off\n");
  EXPECT_EQ(print_enum(0x022A0205, 1), "yes\n");
  EXPECT_EQ(print_enum(0x022A0212, 0), "no\n");
  EXPECT_EQ(print_enum(0x022A0021, 1), "++\n");
  EXPECT_EQ(print_enum(0x022A0039, 4), "--\n");
  EXPECT_EQ(print_enum(0x022A0027, 5), "\n");
}

TEST(EnumeratedValues, UnknownOnesShowTheirNumber) {
  EXPECT_EQ(print_enum(0x022A01D9, 9), "9\n");
  EXPECT_EQ(print_enum(0x022A0281, 0), "0\n");
  EXPECT_EQ(print_enum(0x022A028A, 2), "2\n");
  EXPECT_EQ(print_enum(0x022A7777, 42), "42\n");
}

TEST(EnumeratedValues, AttributesAskTheVocabulary) {
  host::vocabulary words{};
  words.port_mode = [](uint32 mode) { return mode == 0x80000 ? "mode text" : "other mode"; };
  words.rate_mode = [](uint8 mode) { return mode == 2 ? "rate text" : "other rate"; };
  words.flow_control = [](uint16 bits) { return bits == 0x8 ? "flow text" : "other flow"; };
  words.state_reason = [](uint8 reason, boolean short_name) {
    return reason == 12 ? (short_name == 1 ? "short reason" : "long reason") : "other reason";
  };
  host::set_vocabulary(words);
  EXPECT_EQ(print_enum(0x022A0283, 0x80000), "mode text\n");
  EXPECT_EQ(print_enum(0x022A0284, 2), "rate text\n");
  EXPECT_EQ(print_enum(0x022A0288, 0x8), "flow text\n");
  EXPECT_EQ(print_enum(0x022A01DB, 12), "long reason\n");
  EXPECT_EQ(print_enum(0x022A061D, 12), "long reason\n");
  EXPECT_EQ(print_enum(0x022A01DA, 12), "short reason\n");
  host::set_vocabulary({});
}

TEST(InterfaceNames, AreShortWhereTheFullOneDoesNotFit) {
  EXPECT_EQ(print_one("[%-12.12s]\n", 0x0C2A01D8, kEthernet1_10), "[Ethernet1/10]\n");
  EXPECT_EQ(print_one("[%-11.11s]\n", 0x0C2A01D8, kEthernet1_10), "[Eth1/10    ]\n");
}

TEST(InterfaceNames, OfSatellitePortsAreNumbersWhereTheShortOneDoesNotFit) {
  const if_index_t port = host::satellite_index(101, 0, 9);
  EXPECT_EQ(print_one("[%-11.11s]\n", 0x0C2A01D8, port), "[Eth101/1/10]\n");
  EXPECT_EQ(print_one("[%-10.10s]\n", 0x0C2A01D8, port), "[101/1/10  ]\n");
  EXPECT_EQ(print_one("[%-8.8s]\n", 0x0C2A01D8, port), "[101/1/10]\n");
  EXPECT_EQ(print_one("[%s]\n", 0x0C2A01D8, port), "[Ethernet101/1/10]\n");
}

TEST(InterfaceNames, OfOtherPortsAreCutWhereTheShortOneDoesNotFit) {
  EXPECT_EQ(print_one("[%-6.6s]\n", 0x0C2A01D8, kEthernet1_10), "[Eth1/1]\n");
}

TEST(InterfaceNames, AreShortFromPrintShortToTheEndOfTheLine) {
  captured_command command;
  cmd_print_short(command.channel());
  cmd_prt(command.channel(), "%s ", cmd_tuple(0x0C2A01D8, &kEthernet1_10));
  cmd_prt(command.channel(), "%s\n%s\n", cmd_tuple(0x0C2A01D8, &kEthernet1_10), cmd_tuple(0x0C2A01D8, &kEthernet1_10));
  EXPECT_EQ(command.finish(), "Eth1/10 Eth1/10\nEthernet1/10\n");
}

TEST(Channel, TextOfPrintfAndOfTheChannelKeepTheirOrder) {
  captured_command command;
  const uint32 number = 2;
  std::printf("one ");
  cmd_prt(command.channel(), "%s ", cmd_tuple(0x142A0278, &number));
  std::puts("three");
  cmd_prt(command.channel(), "four\n");
  cmd_prt_send(command.channel());
  cmd_prt_send(command.channel());
  std::printf("five\n");
  EXPECT_EQ(command.finish(), "one 2 three\nfour\nfive\n");
}

TEST(Channel, HandleIsTheSameWithinACommandAndNullWithoutOne) {
  paraminfo_t block{};
  EXPECT_EQ(cmd_paraminfo_to_rxhandle(&block), nullptr);
  captured_command command;
  EXPECT_NE(command.channel(), nullptr);
  EXPECT_EQ(command.channel(), command.channel());
  EXPECT_EQ(cmd_paraminfo_to_rxhandle(nullptr), nullptr);
  cmd_prt(nullptr, "nowhere\n");
  EXPECT_EQ(command.finish(), "");
}

TEST(Channel, StandardOutputIsItselfAgainAfterTheCommand) {
  std::FILE* const before = stdout;
  {
    captured_command command;
    EXPECT_NE(stdout, before);
  }
  EXPECT_EQ(stdout, before);
}

TEST(Channel, BoundTextsCannotEndTheirLine) {
  EXPECT_EQ(print_text("[%s]\n", 0x302A01DC, "a\nb\tc\x1b[0m\x7f"), "[a\\x0ab\\x09c\\x1b[0m\\x7f]\n");
}

TEST(Channel, PrintedTextKeepsItsLinesAndTabsOnly) {
  captured_command command;
  std::printf("a\tb\r\n%s\n", "\x07\xc2\x9b\xff\xc3\xa9");
  EXPECT_EQ(command.finish(), "a\tb\\x0d\n\\x07\\xc2\\x9b\\xff\xc3\xa9\n");
}

TEST(Channel, PrintedCharacterThatIsCutByABufferStaysWhole) {
  captured_command command;
  std::string expected;
  for (int i = 0; i < 8191; ++i) expected += 'x';
  expected += "\xc3\xa9\n";
  std::printf("%s", expected.c_str());
  EXPECT_EQ(command.finish(), expected);
}

TEST(Channel, ResponseOfAFailedCommandIsShownAndCounts) {
  captured_command command;
  command.output().begin_interface("Ethernet1/1");
  cmd_rsp_send_nok(command.channel(), 0, "Ethernet1/1: (not allowed)");
  EXPECT_TRUE(command.output().end_interface());
  EXPECT_EQ(command.finish(), "Ethernet1/1: (not allowed)\n");
}

// A failure is noted where it happens, and not by what is printed about it.
TEST(Channel, TextAloneIsNoFailure) {
  captured_command command;
  command.output().begin_interface("Ethernet1/1");
  std::printf("error: %s\n", "general failure");
  EXPECT_FALSE(command.output().end_interface());
}

// A mark is coloured where its value is bound, whatever else the line contains.
TEST(Channel, BoundMarksAreColoured) {
  host::output_settings settings;
  settings.coloured = true;
  settings.shown = {host::kTransceiverDetailsDisplay, {}, {}, true};
  captured_command command(settings);
  const uint32 high_alarm = 1, high_warning = 2, low_warning = 3, low_alarm = 4, none = 5;
  cmd_rx_handle_t* const rx = command.channel();
  cmd_prt(rx, "Temperature  76.00 C  %2.2s   75.00 C\n", cmd_tuple(0x022A0021, &high_alarm));
  cmd_prt(rx, "Voltage  %2.2s|\n", cmd_tuple(0x022A0027, &high_warning));
  cmd_prt(rx, "Current %-3s|\n", cmd_tuple(0x022A002D, &low_warning));
  cmd_prt(rx, "%s++ %s|\n", cmd_tuple(0x022A0033, &low_alarm), cmd_tuple(0x022A0039, &none));
  std::puts("  Temperature   76.00 C  ++");
  EXPECT_EQ(command.finish(),
            "Temperature  76.00 C  \x1b[31m++\x1b[0m   75.00 C\n"
            "Voltage   \x1b[33m+\x1b[0m|\n"
            "Current \x1b[33m-\x1b[0m  |\n"
            "\x1b[31m--\x1b[0m++ |\n"
            "  Temperature   76.00 C  ++\n");
}

TEST(Channel, FailedRangesAreAFailure) {
  captured_command command;
  command.output().begin_interface("Ethernet1/1");
  mrange_handle_t* const ranges = cmd_mrange_create(0);
  cmd_mrange_range_add(ranges, host::numbered_index(IF_TYPE_LOOPBACK, 1), host::numbered_index(IF_TYPE_LOOPBACK, 2));
  EXPECT_FALSE(command.output().failed());
  cmd_mrange_error_set(ranges);
  EXPECT_TRUE(command.output().end_interface());
}

TEST(Channel, NothingIsShownOnceTheCommandIsCancelled) {
  static bool cancelled;
  cancelled = false;
  host::output_settings settings;
  settings.is_cancelled = [] { return cancelled; };
  captured_command command(settings);
  std::puts("before");
  command.output().flush();
  cancelled = true;
  std::puts("after");
  EXPECT_EQ(command.finish(), "before\n");
}

// A pipe that keeps each write apart shows the sizes of the writes; it splits what is larger than 4 KiB.
TEST(Channel, OutputLeavesInBlocksOfAtLeastFourKilobytes) {
  int ends[2];
  ASSERT_EQ(pipe2(ends, O_DIRECT | O_NONBLOCK), 0);
  host::line_filters filters;
  host::output_settings settings;
  settings.descriptor = ends[1];
  {
    host::command_output output(settings, filters);
    for (int i = 0; i < 1000; ++i) std::puts("a line of thirty-two characters.");
  }
  close(ends[1]);
  std::vector<ssize_t> sizes;
  char part[8192];
  for (ssize_t size = 0; (size = read(ends[0], part, sizeof part)) > 0;) sizes.push_back(size);
  close(ends[0]);
  std::size_t small = 0;
  ssize_t total = 0;
  for (const ssize_t size : sizes) {
    small += size < 4096;
    total += size;
  }
  EXPECT_EQ(total, 33'000);
  EXPECT_LE(small, 2U);  // the rest of a large block, and the end
}

// The newline of a text that is a line of its own ends that line; others show.
TEST(Texts, OneWithoutAMeaningMayBeAWholeLine) {
  EXPECT_EQ(print_text("%s", 0, "one line\n"), "one line\n");
  EXPECT_EQ(print_text("%s", 0, "two\nhalves\n"), "two\\x0ahalves\n");
  EXPECT_EQ(print_text("%s\n", 0x302A01DC, "a description\n"), "a description\\x0a\n");
}

}  // namespace
}  // namespace session
