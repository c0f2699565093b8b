// Names and ranges of interfaces as people write them.
#include "switch/interface_name.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "switch/interface_range.h"

namespace host {
namespace {

std::string text_of(const std::vector<interface_span>& spans) {
  std::string text;
  for (const interface_span& it : spans)
    text += interface_text(*it.word, it.low) + " to " + interface_text(*it.word, it.high) + "\n";
  return text;
}

std::string parsed(std::string_view text) {
  std::vector<interface_span> spans;
  const auto error = parse_interface_range(text, spans);
  return error ? "error: " + error->message : text_of(spans);
}

TEST(InterfaceRange, ReadsPortsOfOneSlot) {
  EXPECT_EQ(parsed("ethernet 1/1"), "ethernet 1/1 to ethernet 1/1\n");
  EXPECT_EQ(parsed("ethernet 1/1-4, 1/7, 1/9.10-20"),
            "ethernet 1/1 to ethernet 1/4\n"
            "ethernet 1/7 to ethernet 1/7\n"
            "ethernet 1/9.10 to ethernet 1/9.20\n");
}

TEST(InterfaceRange, AWordHoldsUntilTheNext) {
  EXPECT_EQ(parsed("port-channel 1-3, ethernet 2/1"),
            "port-channel 1 to port-channel 3\n"
            "ethernet 2/1 to ethernet 2/1\n");
  EXPECT_EQ(parsed("loopback 0,5,mgmt 0"),
            "loopback 0 to loopback 0\n"
            "loopback 5 to loopback 5\n"
            "mgmt 0 to mgmt 0\n");
}

TEST(InterfaceRange, WordsAreAbbreviatedInAnyCaseAndBlanksAreFree) {
  EXPECT_EQ(parsed("eth1/1"), "ethernet 1/1 to ethernet 1/1\n");
  EXPECT_EQ(parsed("  E 1/1 - 1/4 ,  Po12.5-7  "),
            "ethernet 1/1 to ethernet 1/4\n"
            "port-channel 12.5 to port-channel 12.7\n");
  EXPECT_EQ(parsed("Vethernet7"), "vethernet 7 to vethernet 7\n");
  EXPECT_EQ(parsed("sup-fc0"), "sup-fc 0 to sup-fc 0\n");
  EXPECT_EQ(parsed("fc1/1"), "fc 1/1 to fc 1/1\n");
  EXPECT_EQ(parsed("GigabitEthernet1/1.5"), "gigabitethernet 1/1.5 to gigabitethernet 1/1.5\n");
}

TEST(InterfaceRange, ReadsFibreChannelPortsThatAreNamedByANumber) {
  EXPECT_EQ(parsed("bay 1-14, b20"), "bay 1 to bay 14\nbay 20 to bay 20\n");
  EXPECT_EQ(parsed("ext1,ex 256"), "ext 1 to ext 1\next 256 to ext 256\n");
  EXPECT_EQ(parsed("external1/1, exte 1/2"), "external 1/1 to external 1/1\nexternal 1/2 to external 1/2\n");
}

TEST(InterfaceRange, TheInBandInterfaceNeedsNoNumber) {
  EXPECT_EQ(parsed("in-band"), "in-band 0 to in-band 0\n");
  EXPECT_EQ(parsed("in-b, mgmt 0"), "in-band 0 to in-band 0\nmgmt 0 to mgmt 0\n");
  EXPECT_EQ(parsed("in-band 0"), "in-band 0 to in-band 0\n");
}

TEST(InterfaceRange, ReadsPortsOfSatellites) {
  EXPECT_EQ(parsed("ethernet 101/1/1-4"), "ethernet 101/1/1 to ethernet 101/1/4\n");
  EXPECT_EQ(parsed("ethernet 101/1/47-102/1/2"), "ethernet 101/1/47 to ethernet 102/1/2\n");
}

TEST(InterfaceRange, SpansSlotsWhenSimple) {
  EXPECT_EQ(parsed("ethernet 1/47-2/2"), "ethernet 1/47 to ethernet 2/2\n");
  EXPECT_EQ(parsed("ethernet 1/9.10-1/9.20"), "ethernet 1/9.10 to ethernet 1/9.20\n");
  EXPECT_EQ(parsed("ethernet 1/9.10-1/10.20"),
            "error: range over more than the sub-interfaces of one port '1/9.10-1/10.20' at character 10");
  EXPECT_EQ(parsed("ethernet 1/9.10-1/10"),
            "error: range over more than the sub-interfaces of one port '1/9.10-1/10' at character 10");
  EXPECT_EQ(parsed("ethernet 1/9-101/1/4"),
            "error: range over more than the sub-interfaces of one port '1/9-101/1/4' at character 10");
}

struct wrong_range {
  const char* text;
  range_fault fault;
  std::size_t position;
  const char* message;
};

TEST(InterfaceRange, EveryFaultNamesTextAndPosition) {
  using enum range_fault;
  const wrong_range kWrong[] = {
      {"ethernot 1/1", unknown_word, 0, "unknown interface 'ethernot' at character 1"},
      {"ethernet 1/1, foo 2", unknown_word, 14, "unknown interface 'foo' at character 15"},
      {"s 1", ambiguous_word, 0, "ambiguous interface 's' at character 1"},
      {"f 1/1", ambiguous_word, 0, "ambiguous interface 'f' at character 1"},
      {"1/1", missing_word, 0, "no kind of interface in front of '1/1' at character 1"},
      {"ethernet", missing_number, 8, "no number for ethernet at character 9"},
      {"ethernet foo", missing_number, 9, "no number for ethernet 'foo' at character 10"},
      {"ethernet 1/1-", missing_number, 13, "no number for ethernet at character 14"},
      {"ethernet 1/1 - , 1/2", missing_number, 15, "no number for ethernet ',' at character 16"},
      {"ethernet 1", bad_number, 9, "not a number of ethernet '1' at character 10"},
      {"ethernet 1/", bad_number, 9, "not a number of ethernet '1/' at character 10"},
      {"ethernet 0/1", bad_number, 9, "not a number of ethernet '0/1' at character 10"},
      {"ethernet 65/1", bad_number, 9, "not a number of ethernet '65/1' at character 10"},
      {"ethernet 1/257", bad_number, 9, "not a number of ethernet '1/257' at character 10"},
      {"ethernet 1/1.0", bad_number, 9, "not a number of ethernet '1/1.0' at character 10"},
      {"ethernet 1/1.4096", bad_number, 9, "not a number of ethernet '1/1.4096' at character 10"},
      {"ethernet 1/1.", bad_number, 9, "not a number of ethernet '1/1.' at character 10"},
      {"ethernet 99/1/1", bad_number, 9, "not a number of ethernet '99/1/1' at character 10"},
      {"ethernet 0/1/1", bad_number, 9, "not a number of ethernet '0/1/1' at character 10"},
      {"ethernet 101/1/1.5", bad_number, 9, "not a number of ethernet '101/1/1.5' at character 10"},
      {"ethernet 1/2/3/4", bad_number, 9, "not a number of ethernet '1/2/3/4' at character 10"},
      {"ethernet 1/99999999999", bad_number, 9, "not a number of ethernet '1/99999999999' at character 10"},
      {"ethernet 1/1-300", bad_number, 13, "not a number of ethernet '300' at character 14"},
      {"ethernet 1/1.5-4096", bad_number, 15, "not a number of ethernet '4096' at character 16"},
      {"port-channel 0", bad_number, 13, "not a number of port-channel '0' at character 14"},
      {"port-channel 4096", bad_number, 13, "not a number of port-channel '4096' at character 14"},
      {"port-channel 1/2", bad_number, 13, "not a number of port-channel '1/2' at character 14"},
      {"bay 0", bad_number, 4, "not a number of bay '0' at character 5"},
      {"bay 257", bad_number, 4, "not a number of bay '257' at character 5"},
      {"ext 1/1", bad_number, 4, "not a number of ext '1/1' at character 5"},
      {"fc 63/1", bad_number, 3, "not a number of fc '63/1' at character 4"},
      {"bay 4-2", reversed, 4, "reversed range '4-2' at character 5"},
      {"loopback 1.5", bad_number, 9, "not a number of loopback '1.5' at character 10"},
      {"ethernet 1/4-1", reversed, 9, "reversed range '1/4-1' at character 10"},
      {"ethernet 2/1-1/4", reversed, 9, "reversed range '2/1-1/4' at character 10"},
      {"ethernet 1/1.20 - 10", reversed, 9, "reversed range '1/1.20 - 10' at character 10"},
      {"", empty, 0, "empty range at character 1"},
      {"   ", empty, 3, "empty range at character 4"},
      {"ethernet 1/1,", empty, 13, "empty range at character 14"},
      {"ethernet 1/1,,1/2", empty, 13, "empty range at character 14"},
      {"ethernet 1/1 brief", trailing_text, 13, "unexpected text 'brief' at character 14"},
      {"ethernet 1/1-4-5", trailing_text, 14, "unexpected text '-5' at character 15"},
      {"ethernet 1/1;1/2 x", trailing_text, 12, "unexpected text ';1/2' at character 13"},
  };
  for (const wrong_range& it : kWrong) {
    std::vector<interface_span> spans;
    const auto error = parse_interface_range(it.text, spans);
    ASSERT_TRUE(error) << it.text;
    EXPECT_EQ(error->fault, it.fault) << it.text;
    EXPECT_EQ(error->position, it.position) << it.text;
    EXPECT_EQ(error->message, it.message);
  }
}

TEST(InterfaceRange, SpansInFrontOfAFaultAreKept) {
  std::vector<interface_span> spans;
  EXPECT_TRUE(parse_interface_range("ethernet 1/1-4, port-channel 2 brief", spans));
  EXPECT_EQ(text_of(spans),
            "ethernet 1/1 to ethernet 1/4\n"
            "port-channel 2 to port-channel 2\n");
}

// ---- Ranges of the command line.

// The range as it was understood, what follows it, and what is wrong with it.
std::string read(std::string_view text) {
  const auto text_of_items = [](const std::vector<range_item>& items) {
    std::string all;
    for (const range_item& it : items) {
      all += all.empty() ? "" : ", ";
      if (const auto* const span = std::get_if<interface_span>(&it))
        all += interface_text(*span->word, span->low) + (span->low == span->high ? "" : " to ") +
               (span->low == span->high ? "" : interface_text(*span->word, span->high));
      else if (const auto* const pattern = std::get_if<name_pattern>(&it))
        all += "like " + pattern->text;
      else
        all += "all";
    }
    return all;
  };
  const range_reading reading = read_range(text);
  std::string all = text_of_items(reading.range.items);
  if (!reading.range.exceptions.empty()) all += " but " + text_of_items(reading.range.exceptions);
  if (reading.end < text.size()) all += " |" + std::string(text.substr(reading.end));
  for (const range_error& error : reading.errors) all += "; " + error.message;
  return all;
}

TEST(CommandRange, TheLastOfASpanMayRepeatTheWord) {
  EXPECT_EQ(read("ethernet1/1-ethernet1/4"), "ethernet 1/1 to ethernet 1/4");
  EXPECT_EQ(read("e 1/1 - Eth 1/4, port-channel1-po3"),
            "ethernet 1/1 to ethernet 1/4, port-channel 1 to port-channel 3");
  EXPECT_EQ(read("e1/1-fc1/2"), "; range from ethernet to another kind 'fc' at character 6");
  EXPECT_EQ(read("e1/1-e4"), "; not a number of ethernet '4' at character 7");
}

TEST(CommandRange, NumbersBelongToTheWordBefore) {
  EXPECT_EQ(read("e1/1-4,6"), "ethernet 1/1 to ethernet 1/4, ethernet 1/6");
  EXPECT_EQ(read("e1/47-2/2,5-7"), "ethernet 1/47 to ethernet 2/2, ethernet 2/5 to ethernet 2/7");
  EXPECT_EQ(read("e1/9.10-12,20"), "ethernet 1/9.10 to ethernet 1/9.12, ethernet 1/9.20");
  EXPECT_EQ(read("lo1-4,6"), "loopback 1 to loopback 4, loopback 6");
  EXPECT_EQ(read("all except e1/1-4,6"), "all but ethernet 1/1 to ethernet 1/4, ethernet 1/6");
  EXPECT_EQ(read("e1/1,e6"), "ethernet 1/1; not a number of ethernet '6' at character 7");
}

TEST(CommandRange, AllAndPatternsAreItems) {
  EXPECT_EQ(read("all"), "all");
  EXPECT_EQ(read("\"e*1/[1-3]\", 'Po *' brief"), "like e*1/[1-3], like Po * | brief");
  EXPECT_EQ(read("al, mgmt 0"), "all, mgmt 0");
  EXPECT_EQ(read("\"\""), "; empty pattern '\"\"' at character 1");
  EXPECT_EQ(read("'e* brief"), "; unclosed quote ''e* brief' at character 1");
}

TEST(CommandRange, ExceptTakesAwayAllThatFollowsIt) {
  EXPECT_EQ(read("all except ethernet 1/1-4 brief"), "all but ethernet 1/1 to ethernet 1/4 | brief");
  EXPECT_EQ(read("e1/1-9 exc 1/2, \"*1/3\", mgmt 0"),
            "ethernet 1/1 to ethernet 1/9 but ethernet 1/2, like *1/3, mgmt 0");
  EXPECT_EQ(read("e1/1 ex"), "ethernet 1/1 | ex");
  EXPECT_EQ(read("all except"), "all; empty range at character 11");
  EXPECT_EQ(read("all except e1/1 except e1/2"), "all but ethernet 1/1 | except e1/2");
}

TEST(CommandRange, EndsWhereOtherWordsBegin) {
  EXPECT_EQ(read("e1/1 brief"), "ethernet 1/1 | brief");
  EXPECT_EQ(read("in-band brief"), "in-band 0 | brief");
  EXPECT_EQ(read("e1/1 - 4 , 1/7  status"), "ethernet 1/1 to ethernet 1/4, ethernet 1/7 |  status");
}

TEST(CommandRange, EveryBadItemIsAnError) {
  EXPECT_EQ(read("e1/300, foo 1/1, 2, e1/4-1, s1,e1/2 brief"),
            "ethernet 1/2 | brief; not a number of ethernet '1/300' at character 2; unknown interface 'foo' at "
            "character 9; reversed range '1/4-1' at character 22; ambiguous interface 's' at character 29");
  EXPECT_EQ(read("e1/1x,1/2;3"),
            "ethernet 1/1, ethernet 1/2; unexpected text 'x' at character 5; unexpected text ';3' at character 10");
}

// ---- Other names of interfaces

interface_names devices() {
  return interface_names([] {
    return std::vector<interface_names::named_interface>{{"v1", ethernet_index(IF_TYPE_ETHERNET, 0, 9)},
                                                         {"e1/2", ethernet_index(IF_TYPE_ETHERNET, 0, 30)},
                                                         {"br-lan.7", ethernet_index(IF_TYPE_ETHERNET, 0, 3)},
                                                         {"lo", index_of(IF_TYPE_LOOPBACK, {.port = 0})}};
  });
}

std::string named(std::string_view text) {
  const range_reading reading = read_range(text, devices());
  std::string read;
  for (const range_item& it : reading.range.items) read += text_of({std::get<interface_span>(it)});
  for (const range_error& it : reading.errors) read += "error: " + it.message + "\n";
  return read;
}

TEST(NamedInterface, IsThatOfItsExactNameBeforeAnythingElse) {
  EXPECT_EQ(named("v1"), "ethernet 1/10 to ethernet 1/10\n");
  EXPECT_EQ(named("e1/2"), "ethernet 1/31 to ethernet 1/31\n");
  EXPECT_EQ(named("br-lan.7,lo , mgmt0"),
            "ethernet 1/4 to ethernet 1/4\n"
            "loopback 0 to loopback 0\n"
            "mgmt 0 to mgmt 0\n");
}

TEST(NamedInterface, OtherTextsAreReadAsWithoutNames) {
  EXPECT_EQ(named("v 1"), "vethernet 1 to vethernet 1\n");
  EXPECT_EQ(named("V1"), "vethernet 1 to vethernet 1\n");
  EXPECT_EQ(named("v10"), "vethernet 10 to vethernet 10\n");
  EXPECT_EQ(named("br-lan"), "error: unknown interface 'br-lan' at character 1\n");
}

TEST(NamedInterface, ANumberAfterItHasNoWord) {
  EXPECT_EQ(named("e1/5,v1,7"),
            "ethernet 1/5 to ethernet 1/5\n"
            "ethernet 1/10 to ethernet 1/10\n"
            "error: no kind of interface in front of '7' at character 9\n");
}

TEST(NamedInterface, PatternsMatchNames) {
  const range_reading reading = read_range("'br*', 'v[0-9]'", devices());
  ASSERT_EQ(reading.range.items.size(), 2U);
  EXPECT_TRUE(matches(reading.range, ethernet_index(IF_TYPE_ETHERNET, 0, 3)));
  EXPECT_TRUE(matches(reading.range, ethernet_index(IF_TYPE_ETHERNET, 0, 9)));
  EXPECT_FALSE(matches(reading.range, ethernet_index(IF_TYPE_ETHERNET, 0, 30)));
}

TEST(NamedInterface, NamesAreLoadedWhenOneIsLookedFor) {
  int loads = 0;
  interface_names names([&loads] {
    ++loads;
    return std::vector<interface_names::named_interface>{{"b", 2}, {"a", 1}};
  });
  EXPECT_EQ(loads, 0);
  EXPECT_EQ(names.find("a"), std::optional<if_index_t>(1));
  EXPECT_EQ(names.find("b"), std::optional<if_index_t>(2));
  EXPECT_EQ(names.find("A"), std::nullopt);
  EXPECT_EQ(names.find(""), std::nullopt);
  EXPECT_EQ(loads, 1);
  EXPECT_EQ(names.all().front().first, "a");
  EXPECT_EQ(loads, 1);
}

TEST(CommandRange, FilesNameInterfacesByNumbersAlone) {
  EXPECT_EQ(parsed("all"), "error: unknown interface 'all' at character 1");
  EXPECT_EQ(parsed("'e*'"), "error: no kind of interface in front of ''e*'' at character 1");
  EXPECT_EQ(parsed("ethernet 1/1-4 except 1/2"), "error: unexpected text 'except' at character 16");
}

// What may be typed at the end of a text: a word of interfaces, a number, the end of the range, "-", "except".
std::string ending(std::string_view text) {
  const range_ending it = read_range(text).ending;
  std::string all = "'" + std::string(text.substr(it.begun)) + "'";
  if (it.begins_item) all += " item";
  if (it.word != nullptr) all += " word";
  if (it.number != nullptr) all += " number of " + std::string(it.number->word);
  if (it.low) all += " after " + interface_text(*it.number, *it.low);
  if (it.is_whole) all += " whole";
  if (it.is_complete) all += " end";
  if (it.is_complete && it.takes_dash) all += " dash";
  if (it.is_complete && it.takes_except) all += " except";
  return all + (it.is_in_quotes ? " quotes" : "");
}

TEST(RangeEnding, IsWhatMayBeTyped) {
  EXPECT_EQ(ending("eth"), "'eth' item");
  EXPECT_EQ(ending("eth "), "'' number of ethernet");
  EXPECT_EQ(ending("eth1/"), "'1/' number of ethernet");
  EXPECT_EQ(ending("eth 1/1"), "'1/1' number of ethernet end dash except");
  EXPECT_EQ(ending("eth 1/1 "), "'' end dash except");
  EXPECT_EQ(ending("eth 1/1,"), "'' item number of ethernet");
  EXPECT_EQ(ending("eth 1/1, po"), "'po' item");
  EXPECT_EQ(ending("eth 1/1-"), "'' word number of ethernet after ethernet 1/1");
  EXPECT_EQ(ending("eth 1/1-1"), "'1' number of ethernet after ethernet 1/1 end except");
  EXPECT_EQ(ending("eth 1/1-4 "), "'' end except");
  EXPECT_EQ(ending("eth 1/1-eth1/"), "'1/' number of ethernet after ethernet 1/1 whole");
  EXPECT_EQ(ending("all "), "'' end except");
  EXPECT_EQ(ending("all except "), "'' item");
  EXPECT_EQ(ending("all except e1/1 "), "'' end dash");
  EXPECT_EQ(ending("all, \"e*"), "'' quotes");
}

// ---- What a range takes.

// Which of a small switch's interfaces a range takes, by name; and what it says of missing ends.
std::string matching(std::string_view text) {
  std::vector<if_index_t> existing = {
      ethernet_index(IF_TYPE_ETHERNET, 0, 0),
      ethernet_index(IF_TYPE_ETHERNET, 0, 2),
      ethernet_index(IF_TYPE_ETHERNET, 0, 9),
      ethernet_index(IF_TYPE_ETHERNET_L3, 0, 1),
      ethernet_index(IF_TYPE_ETHERNET_L3, 0, 1, 5),
      ethernet_index(IF_TYPE_ETHERNET_L3, 0, 1, 20),
      ethernet_index(IF_TYPE_ETHERNET_L3, 1, 0),
      satellite_index(101, 0, 0),
      satellite_index(101, 0, 1),
      channel_index(IF_TYPE_PORT_CHANNEL, 4),
      channel_index(IF_TYPE_ETH_PORT_CHANNEL, 3),
      channel_index(IF_TYPE_ETH_PORT_CHANNEL, 5, PC_SUBTYPE_XGFC),
      channel_index(IF_TYPE_ETH_PORT_CHANNEL, 10),
      channel_index(IF_TYPE_ETH_PORT_CHANNEL, 3, PC_SUBTYPE_ORDINARY, 7),
      numbered_index(IF_TYPE_LOOPBACK, 0),
      ethernet_index(IF_TYPE_MGMT, 0, 0),
      ethernet_index(IF_TYPE_FC, 0, 0),
      ethernet_index(IF_TYPE_FC, 0, 1),
      ethernet_index(IF_TYPE_FC, kMaxFcSlot, 0),
      named_fc_index(name_family::bay, 0),
      named_fc_index(name_family::bay, 9),
      named_fc_index(name_family::external, 0),
      named_fc_index(name_family::external, 1),
  };
  std::sort(existing.begin(), existing.end());
  std::vector<interface_span> spans;
  EXPECT_FALSE(parse_interface_range(text, spans));
  std::string result;
  for (const interface_span& span : spans) {
    std::vector<if_index_t> matches;
    const span_ends ends = append_matching(span, existing, matches);
    for (const if_index_t it : matches) {
      char buffer[40];
      snprintf_if_index_short(buffer, sizeof buffer, it);
      result += std::string(buffer) + " ";
    }
    if (!ends.low_exists) result += "(no " + interface_text(*span.word, span.low) + ") ";
    if (!ends.high_exists) result += "(no " + interface_text(*span.word, span.high) + ") ";
  }
  return result;
}

TEST(MatchingInterfaces, ComeInNaturalOrderOverAllKindsOfTheWord) {
  EXPECT_EQ(matching("ethernet 1/1-3"), "Eth1/1 Eth1/2 Eth1/3 ");
  EXPECT_EQ(matching("port-channel 3-10"), "Po3 Po4 Po5 Po10 ");
  EXPECT_EQ(matching("ethernet 1/3-2/1"), "Eth1/3 Eth1/10 Eth2/1 ");
}

TEST(MatchingInterfaces, SubInterfacesAreTakenOnlyByNumber) {
  EXPECT_EQ(matching("ethernet 1/2"), "Eth1/2 ");
  EXPECT_EQ(matching("ethernet 1/2.5-20"), "Eth1/2.5 Eth1/2.20 ");
  EXPECT_EQ(matching("port-channel 3.7"), "Po3.7 ");
}

TEST(MatchingInterfaces, SatellitesAreTakenOnlyByUnit) {
  EXPECT_EQ(matching("ethernet 101/1/1-2"), "Eth101/1/1 Eth101/1/2 ");
  EXPECT_EQ(matching("ethernet 1/1"), "Eth1/1 ");
}

TEST(MatchingInterfaces, FibreChannelPortsAreTakenByTheFamilyOfTheirName) {
  EXPECT_EQ(matching("fc 1/1-62/1"), "fc1/1 fc1/2 fc62/1 ");
  EXPECT_EQ(matching("bay 1-10"), "bay1 bay10 ");
  EXPECT_EQ(matching("ext 1-2"), "ext1 ext2 ");
  EXPECT_EQ(matching("ext 3"), "(no ext 3) (no ext 3) ");
}

TEST(MatchingInterfaces, PatternsAreOfTheNamesAsWrittenAndAsDisplayed) {
  const if_index_t port = ethernet_index(IF_TYPE_ETHERNET, 0, 0);
  for (const char* const pattern : {"ethernet 1/1", "Ethernet1/1", "ETHERNET*", "*1/?", "e*1/[1-3]", "*"})
    EXPECT_TRUE(matches(range_item(name_pattern{pattern}), port)) << pattern;
  for (const char* const pattern : {"eth1/1", "Ethernet1/1?", "e*1/[2-3]", "1/1"})
    EXPECT_FALSE(matches(range_item(name_pattern{pattern}), port)) << pattern;
}

TEST(MatchingInterfaces, ExceptionsAreNotTaken) {
  interface_range range;
  EXPECT_FALSE(parse_interface_range("all except ethernet 1/1-4, \"mgmt*\"", range));
  EXPECT_FALSE(matches(range, ethernet_index(IF_TYPE_ETHERNET, 0, 3)));
  EXPECT_FALSE(matches(range, ethernet_index(IF_TYPE_MGMT, 0, 0)));
  EXPECT_TRUE(matches(range, ethernet_index(IF_TYPE_ETHERNET, 0, 4)));
}

TEST(MatchingInterfaces, OtherKinds) { EXPECT_EQ(matching("mgmt 0, loopback 0"), "mgmt0 Lo0 "); }

TEST(MatchingInterfaces, MissingEndsAreTold) {
  EXPECT_EQ(matching("ethernet 1/1-4"), "Eth1/1 Eth1/2 Eth1/3 (no ethernet 1/4) ");
  EXPECT_EQ(matching("ethernet 1/4-10"), "Eth1/10 (no ethernet 1/4) ");
  EXPECT_EQ(matching("loopback 1-3"), "(no loopback 1) (no loopback 3) ");
  EXPECT_EQ(matching("ethernet 1/2.6"), "(no ethernet 1/2.6) (no ethernet 1/2.6) ");
}

TEST(InterfaceNumber, GoesToAnIndexAndBack) {
  const if_index_t kIndexes[] = {
      ethernet_index(IF_TYPE_ETHERNET, 63, 255, 4095),
      satellite_index(101, 3, 40),
      channel_index(IF_TYPE_PORT_CHANNEL, 9, PC_SUBTYPE_ORDINARY, 3),
      numbered_index(IF_TYPE_VETHERNET, 900),
      ethernet_index(IF_TYPE_MGMT, 0, 1),
      ethernet_index(IF_TYPE_EXTERNAL, 2, 3),
      ethernet_index(IF_TYPE_FC, 2, 3),
      named_fc_index(name_family::bay, 13),
      named_fc_index(name_family::external, 0),
  };
  for (const if_index_t it : kIndexes) EXPECT_EQ(index_of(decode_index(it).type, number_of(it)), it);
}

TEST(InterfaceWord, EveryKindHasAWord) {
  constexpr if_index_type_t kKinds[] = {1, 2, 4, 5, 10, 11, 13, 20, 22, 26, 29, 30, 31, 32, 254};
  for (const if_index_type_t kind : kKinds) EXPECT_NE(word_of(kind), nullptr) << int{kind};
  EXPECT_EQ(word_of(IF_TYPE_NONE), nullptr);
  EXPECT_EQ(word_of(200), nullptr);
  EXPECT_EQ(word_of(IF_TYPE_PORT_CHANNEL), word_of(IF_TYPE_ETH_PORT_CHANNEL));
  EXPECT_EQ(word_of(IF_TYPE_FC)->word, "fc");
  EXPECT_EQ(word_of(IF_TYPE_FC, name_family::bay)->word, "bay");
  EXPECT_EQ(word_of(IF_TYPE_FC, name_family::external)->word, "ext");
  EXPECT_EQ(word_of(IF_TYPE_EXTERNAL)->word, "external");
}

}  // namespace
}  // namespace host
