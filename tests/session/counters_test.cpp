// Counters of every kind of interface: their tables and lists, clearing them, and the clock that they follow.
#include <gtest/gtest.h>

#include <sstream>

#include "session/json.h"
#include "session/program.h"

namespace session {
namespace {

constexpr char kMoment[] = "1800000000";  // 2027-01-15 08:00 UTC
constexpr char kRule[] = "--------------------------------------------------------------------------------\n";

outcome run_all(std::vector<std::string> commands, std::vector<std::string> options = {}) {
  options.insert(options.end(), {"--clock", kMoment});
  for (std::string& command : commands) options.insert(options.end(), {"-c", std::move(command)});
  return run_shell_on(test_file("counters.yaml"), options);
}

outcome run(const std::string& command) { return run_all({command}); }

std::string text_of(const std::vector<std::string>& commands) {
  const outcome result = run_all(commands);
  EXPECT_EQ(result.err, "") << commands.front();
  EXPECT_EQ(result.exit_code, 0) << commands.front();
  return result.out;
}

std::string text_of(const std::string& command) { return text_of(std::vector{command}); }

rapidjson::Document json_of(const std::string& command) {
  rapidjson::Document document;
  document.Parse(text_of(command + " | json").c_str());
  EXPECT_FALSE(document.HasParseError()) << command;
  return document;
}

std::string table(const std::string& header, const std::string& rows) {
  return std::string("\n") + kRule + header + kRule + rows;
}

constexpr char kReceived[] = "Port                InOctets       InUcastPkts      InMcastPkts      InBcastPkts\n";
constexpr char kSent[] = "Port               OutOctets      OutUcastPkts     OutMcastPkts     OutBcastPkts\n";

TEST(CounterTables, ReceivedAndSentStandOneBelowTheOther) {
  EXPECT_EQ(text_of("show interface mgmt 0, ethernet 1/1 counters"),
            table(kReceived,
                  "mgmt0                   7000                70                7                3\n"
                  "Eth1/1            4294967296              1000              200               30\n") +
                table(kSent,
                      "mgmt0                   6000                60                0                0\n"
                      "Eth1/1   18446744073709551615              2000              100               10\n"));
}

TEST(CounterTables, WithoutARangeLoopbacksAreLeftOut) {
  EXPECT_EQ(text_of("show interface counters | include '^[A-Za-z]+[0-9]'"),
            "mgmt0                   7000                70                7                3\n"
            "Eth1/1            4294967296              1000              200               30\n"
            "Eth2/1             750000000            600000                0                0\n"
            "Eth2/2                     0                 0                0                0\n"
            "Po7                      640                10                0                0\n"
            "mgmt0                   6000                60                0                0\n"
            "Eth1/1   18446744073709551615              2000              100               10\n"
            "Eth2/1            1200000000           1200000                0                0\n"
            "Eth2/2                     0                 0                0                0\n"
            "Po7                        0                 0                0                0\n");
}

TEST(CounterTables, ErrorsStandInThreeTables) {
  EXPECT_EQ(text_of("show interface ethernet 1/1, mgmt 0 counters errors"),
            table("Port       Align-Err     FCS-Err    Xmit-Err     Rcv-Err   UnderSize OutDiscards\n",
                  "Eth1/1             5           6           3         700          11          12\n"
                  "mgmt0             --          --          --          --          --          --\n") +
                // The cell of the carrier is narrower than its column.
                table("Port      Single-Col   Multi-Col    Late-Col   Exces-Col   Carri-Sen       Runts\n",
                      "Eth1/1            13          14          15          16         35           1\n"
                      "mgmt0             --          --          --          --          --          --\n") +
                table("Port          Giants SQETest-Err Deferred-Tx IntMacTx-Er IntMacRx-Er  Symbol-Err\n",
                      "Eth1/1             2          --          19           0           0          20\n"
                      "mgmt0             --          --          --          --          --          --\n"));
}

TEST(CounterTables, ModuleFilterShowsTheFirstErrorTable) {
  EXPECT_EQ(text_of("show interface counters errors module 2"),
            table("Port       Align-Err     FCS-Err    Xmit-Err     Rcv-Err   UnderSize OutDiscards\n",
                  "Eth2/1             0           0           0           0           0           0\n"
                  "Eth2/2             0           0           0           0           0           0\n"));
}

TEST(CounterTables, TrunksShowWhatTheySentFirst) {
  EXPECT_EQ(text_of("show interface ethernet 2/1, 1/1 counters trunk"),
            table("Port            TrunkFramesTx   TrunkFramesRx      WrongEncap\n",
                  "Eth2/1                1200000          600000               0\n"
                  "Eth1/1                      0               0              23\n"));
}

TEST(CounterTables, StormControlShowsLevelsAndDiscards) {
  EXPECT_EQ(text_of("show interface ethernet 1/1 counters storm-control"),
            table("Port       UcastSupp %      McastSupp %      BcastSupp %      TotalSuppDiscards\n",
                  "Eth1/1          100.00           10.25            5.50                    21\n"));
}

TEST(CounterTables, FlowControlShowsPauseFrames) {
  const std::string header =
      "Port       Send FlowControl  Receive FlowControl  RxPause TxPause\n"
      "           admin    oper     admin    oper\n";
  const std::string row = "Eth1/1     off      off      on       on          8       9      \n";
  EXPECT_EQ(text_of("show interface ethernet 1/1 flowcontrol"), table(header, row));
  EXPECT_EQ(text_of("show interface ethernet 1/1, 2/1 flowcontrol module 1"), table(header, row));
}

// Bytes per second in millions, as the column says.
TEST(CounterTables, RatesStandInColumns) {
  EXPECT_EQ(text_of("show interface ethernet 2/1 counters brief | begin ^Ethernet"),
            "Ethernet2/1            1        1000              2        2000             \n");
}

TEST(CounterTables, RatesOfEveryPortAreTheSameInBothForms) {
  const std::string command = "show interface counters brief";
  const auto show = [&](const char* pipe) {
    return run_shell_on(shipped_switch("campus.yaml"), {"--clock", "1700000000", "-c", command + pipe}).out;
  };
  std::istringstream text(show(" | begin ^Ethernet"));
  rapidjson::Document document;
  document.Parse(show(" | json").c_str());

  std::string names;
  std::string name, received, received_packets, sent, sent_packets;
  for (const auto& port : document["interfaces"].GetArray()) {
    ASSERT_TRUE(text >> name >> received >> received_packets >> sent >> sent_packets) << names;
    EXPECT_EQ(port["interface"], name.c_str());
    EXPECT_EQ(std::to_string(port["input_megabytes_per_second"].GetUint64()), received) << name;
    EXPECT_EQ(std::to_string(port["input_packets_per_second"].GetUint64()), received_packets) << name;
    EXPECT_EQ(std::to_string(port["output_megabytes_per_second"].GetUint64()), sent) << name;
    EXPECT_EQ(std::to_string(port["output_packets_per_second"].GetUint64()), sent_packets) << name;
    names += name + " ";
  }
  EXPECT_FALSE(text >> name) << name;
  for (const char* const shown : {"Ethernet1/1 ", "Ethernet2/1 ", "Ethernet101/1/1 ", "port-channel10 "})
    EXPECT_NE(names.find(shown), std::string::npos) << shown << names;
  EXPECT_EQ(names.find('.'), std::string::npos) << "sub-interfaces have no rates: " << names;
}

TEST(CounterTables, RatesAreKeptFromUsersWhoMayNotSeeThem) {
  const std::string command = "show interface ethernet 2/1 counters brief";
  const outcome text = run_all({command + " | include not"}, {"--user", "guest"});
  const outcome structured = run_all({command + " | json"}, {"--user", "guest"});
  EXPECT_EQ(text.out, "    Counters not available\n");
  EXPECT_NE(structured.out.find("Counters not available"), std::string::npos) << structured.out;
  EXPECT_EQ(structured.out.find("1000"), std::string::npos) << structured.out;
}

TEST(CounterLists, DetailedHasWhatIsNotZero) {
  EXPECT_EQ(text_of("show interface port-channel 7, ethernet 2/2, loopback 3 counters detailed | exclude from"),
            "port-channel7\n"
            "  Rx Packets:                                          10\n"
            "  Rx Unicast Packets:                                  10\n"
            "  Rx Bytes:                                           640\n"
            "  Layer 2 Unicast:                                     10\n"
            "\n"
            "loopback3\n"
            "  Input Packets:                                        5\n"
            "  Input Bytes:                                        500\n"
            "  Output Packets:                                       4\n"
            "  Output Bytes:                                       400\n"
            "\n");
}

// 20 and 73 lines, and 16 of layer 3.
TEST(CounterLists, EveryCounterOfAPortIsNumbered) {
  const std::string command = "show interface ethernet 1/1 counters detailed all";
  EXPECT_EQ(text_of(command + " | include ' = ' | count"), "109\n");
  EXPECT_EQ(text_of(command + " | include '^(Eth|  64 bit|  All|   0|  1[59]|  7[23]|  8[78])'"),
            "Ethernet1/1\n"
            "  64 bit counters:\n"
            "   0.                      rxHCTotalPkts = 1230\n"
            "  15.         rxTxHCpkts1024to1518Octets = 0\n"
            "  19.                     rxHCDropEvents = 0\n"
            "  All Port Counters:\n"
            "   0.                          InPackets = 1230\n"
            "  15.             rxHCPkts128to255Octets = 0\n"
            "  19.           rxHCpkts1519to1548Octets = 0\n"
            "  72.                            SQETest = 22\n"
            "  73.                     InLayer3Routed = 0\n"
            "  87.             OutLayer3AverageOctets = 0\n"
            "  88.            OutLayer3AveragePackets = 0\n");
}

TEST(CounterLists, ManagementPortWithoutADeviceHasThePortManagersLinesOnly) {
  EXPECT_EQ(text_of("show interface mgmt 0 counters detailed all | include InPackets"),
            "   0.                 VDCLevelInPackets: = 80\n");
}

TEST(Detailed, LoadsAndRatesAreComputed) {
  const std::string text = text_of("show interface ethernet 2/1 detailed");
  for (const char* const line : {
           "Ethernet2/1 is up\n",
           // 1.25 and 2 of 125 million bytes a second.
           "     reliability 255/255, txload 4/255, rxload 2/255\n",
           "  Last clearing of \"show interface\" counters never\n",
           "    5 minutes input rate 10000000 bits/sec, 1250000 bytes/sec, 1000 frames/sec\n",
           "    5 minutes output rate 16000000 bits/sec, 2000000 bytes/sec, 2000 frames/sec\n",
           "    600000 packets input, 750000000 bytes\n",
       })
    EXPECT_NE(text.find(line), std::string::npos) << line << text;
}

// 700 + 3 errors in 1230 + 2110 packets: 53 of 255.
TEST(Detailed, ErrorsMakeAPortLessReliable) {
  EXPECT_EQ(json_of("show interface ethernet 1/1 detailed")["interfaces"][0]["reliability_per_255"].GetUint(), 202U);
  EXPECT_EQ(text_of("show interface ethernet 1/1 detailed | include reliability"),
            "     reliability 202/255, txload 1/255, rxload 1/255\n");
}

// Both forms of the list: one line on the Ethernet-switch chassis, a line for each member on the others.
TEST(Detailed, MembersOfAPortChannelAreListedOnce) {
  EXPECT_EQ(run_command("show interface port-channel 7 detailed | include [Mm]ember").out,
            "  Members in this channel: Eth1/4, Eth1/5\n");
  EXPECT_EQ(run_shell_on(shipped_switch("storage.yaml"),
                         {"-c", "show interface port-channel 101-102 detailed | include [Mm]ember"})
                .out,
            "    Member[1] : Ethernet4/1\n"
            "    Member[2] : Ethernet4/2\n"
            "    No members\n");
}

TEST(StructuredCounters, RecordHoldsBothTables) {
  const auto document = json_of("show interface ethernet 1/1 counters");
  ASSERT_EQ(document["interfaces"].Size(), 1U);
  const auto& port = document["interfaces"][0];
  EXPECT_STREQ(document["time"].GetString(), "2027-01-15T08:00:00Z");
  EXPECT_EQ(document["messages"].Size(), 0U);
  EXPECT_EQ(port["input_bytes"].GetUint64(), 4294967296U);
  EXPECT_EQ(port["input_multicast_packets"].GetUint64(), 200U);
  EXPECT_EQ(port["output_bytes"].GetUint64(), 18446744073709551615U);
  EXPECT_EQ(port["output_broadcast_packets"].GetUint64(), 10U);
}

TEST(StructuredCounters, ErrorsThatAMediumLacksAreNull) {
  const auto document = json_of("show interface ethernet 1/1, mgmt 0 counters errors");
  const auto& port = document["interfaces"][0];
  EXPECT_EQ(port["alignment_errors"].GetUint64(), 5U);
  EXPECT_EQ(port["carrier_errors"].GetUint64(), 35U);
  EXPECT_EQ(port["symbol_errors"].GetUint64(), 20U);
  EXPECT_EQ(document["interfaces"][1]["interface"], "mgmt0");
  EXPECT_TRUE(document["interfaces"][1]["alignment_errors"].IsNull());
}

TEST(StructuredCounters, RatesAreNumbers) {
  const auto document = json_of("show interface ethernet 2/1 counters brief");
  const auto& port = document["interfaces"][0];
  EXPECT_EQ(document["messages"].Size(), 0U);
  EXPECT_EQ(port["input_megabytes_per_second"].GetUint64(), 1U);
  EXPECT_EQ(port["input_packets_per_second"].GetUint64(), 1000U);
  EXPECT_EQ(port["output_megabytes_per_second"].GetUint64(), 2U);
  EXPECT_EQ(port["output_packets_per_second"].GetUint64(), 2000U);
}

TEST(StructuredCounters, LevelsHaveFractions) {
  const auto document = json_of("show interface ethernet 1/1 counters storm-control");
  const auto& port = document["interfaces"][0];
  EXPECT_DOUBLE_EQ(port["multicast_level_percent"].GetDouble(), 10.25);
  EXPECT_DOUBLE_EQ(port["broadcast_level_percent"].GetDouble(), 5.5);
  EXPECT_EQ(port["storm_suppressed_packets"].GetUint64(), 21U);
}

TEST(StructuredCounters, CountersHaveTheSameNamesInBothLists) {
  const auto some = json_of("show interface ethernet 1/1 counters detailed");
  const auto all = json_of("show interface ethernet 1/1 counters detailed all");
  std::size_t num_compared = 0;
  for (const auto& counter : some["interfaces"][0].GetObject()) {
    const auto same = all["interfaces"][0].FindMember(counter.name);
    if (!counter.value.IsUint64() || same == all["interfaces"][0].MemberEnd()) continue;
    EXPECT_EQ(same->value, counter.value) << counter.name.GetString();
    ++num_compared;
  }
  EXPECT_GT(num_compared, 25U);
  EXPECT_EQ(some["interfaces"][0]["jabbers"].GetUint64(), 4U);
  EXPECT_EQ(all["interfaces"][0]["jabbers"].GetUint64(), 4U);
}

constexpr char kShow[] = "show interface ethernet 2/1 counters | include ^Eth";

TEST(Clearing, CountersStartFrom0AndTrafficGoesOn) {
  EXPECT_EQ(text_of(std::vector<std::string>{kShow, "clear counters interface ethernet 2/1", kShow, "clock advance 10",
                                             kShow}),
            "Eth2/1             750000000            600000                0                0\n"
            "Eth2/1            1200000000           1200000                0                0\n"
            "Eth2/1                     0                 0                0                0\n"
            "Eth2/1                     0                 0                0                0\n"
            "Eth2/1              12500000             10000                0                0\n"
            "Eth2/1              20000000             20000                0                0\n");
}

TEST(Clearing, ItsTimeIsRemembered) {
  const std::string show = "show interface ethernet 2/1 detailed | include clearing";
  EXPECT_EQ(text_of({"clear counters interface ethernet 2/1", "clock advance 3661", show, "clock advance 86400", show}),
            "  Last clearing of \"show interface\" counters 01:01:01\n"
            "  Last clearing of \"show interface\" counters 1d01h\n");
}

// What is not 0 of all interfaces after a command.
std::string left_after(const std::string& command) {
  std::string names;
  const std::string text =
      text_of({command, "show interface counters detailed | include '^(mgmt|Ethernet|port-channel|loopback)'"});
  for (const char character : text) names += character == '\n' ? ' ' : character;
  return names;
}

TEST(Clearing, EveryKindIsClearedByItsOwner) {
  EXPECT_EQ(left_after("help | include nosuchword"), "mgmt0 Ethernet1/1 Ethernet2/1 port-channel7 loopback3 ");
  EXPECT_EQ(left_after("clear counters interface ethernet 1/1-1, 2/1"), "mgmt0 port-channel7 loopback3 ");
  EXPECT_EQ(left_after("clear counters interface port-channel 7"), "mgmt0 Ethernet1/1 Ethernet2/1 loopback3 ");
  EXPECT_EQ(left_after("clear counters interface loopback 3, ethernet 1/1"), "mgmt0 Ethernet2/1 port-channel7 ");
  EXPECT_EQ(left_after("clear counters interface mgmt 0"), "Ethernet1/1 Ethernet2/1 port-channel7 loopback3 ");
}

TEST(Clearing, AllOfAKindAreCleared) {
  EXPECT_EQ(left_after("clear counters ethernet"), "mgmt0 port-channel7 loopback3 ");
  EXPECT_EQ(left_after("clear counters port-channel"), "mgmt0 Ethernet1/1 Ethernet2/1 loopback3 ");
  EXPECT_EQ(left_after("clear counters loopback"), "mgmt0 Ethernet1/1 Ethernet2/1 port-channel7 ");
  EXPECT_EQ(left_after("clear counters mgmt 0"), "Ethernet1/1 Ethernet2/1 port-channel7 loopback3 ");
  EXPECT_EQ(left_after("clear counters all"), "");
  EXPECT_EQ(left_after("clear counters"), "");
}

TEST(Clearing, InterfacesThatDoNotExistAreToldAndNothingIsCleared) {
  const outcome result = run_all({"clear counters interface ethernet 2/1, 2/9", kShow});
  EXPECT_EQ(result.err, "pmsh: no such interface: ethernet 2/9. Type 'show interface ?' for the kinds.\n");
  EXPECT_EQ(result.exit_code, 4);
  EXPECT_EQ(result.out.find("Eth2/1             750000000 "), 0U) << result.out;
  EXPECT_EQ(run("clear counters mgmt 1").exit_code, 4);
}

TEST(Clearing, FailedServicesAreTold) {
  const outcome result = run_all({"clear counters loopback"}, {"--inject-fault", "statistics=reject"});
  EXPECT_EQ(result.out, "error: clearing counters\n");
  EXPECT_EQ(result.exit_code, 2);
}

constexpr char kInbandRefused[] =
    "pmsh: not permitted: only users with 'clear-in-band: yes' in the switch file may clear the in-band interface.\n";

TEST(Clearing, InbandInterfaceIsClearedByThoseWhoMay) {
  const outcome permitted = run_all({"clear counters in-band"}, {"--user", "operator"});
  EXPECT_EQ(permitted.out + permitted.err, "");
  EXPECT_EQ(permitted.exit_code, 0);

  const outcome refused = run_all({"clear counters in-band"}, {"--user", "guest"});
  EXPECT_EQ(refused.err, kInbandRefused);
  EXPECT_EQ(refused.exit_code, 5);

  const outcome without_users = run_shell({"-c", "clear counters in-band"});
  EXPECT_EQ(without_users.err, kInbandRefused);
  EXPECT_EQ(without_users.exit_code, 5);
}

TEST(Clearing, RangeWithTheInbandInterfaceNeedsTheSameRight) {
  const std::string command = "clear counters interface sup-fc 0";
  EXPECT_EQ(run_shell_on(shipped_switch("storage.yaml"), {"--user", "guest", "-c", command}).exit_code, 5);
  EXPECT_EQ(run_shell_on(shipped_switch("storage.yaml"), {"--user", "admin", "-c", command}).exit_code, 0);
}

// The device behind it is eth2, which a test machine seldom has: the lines that do not depend on it.
TEST(Inband, FixedLinesAreShown) {
  EXPECT_EQ(
      run_shell_on(shipped_switch("storage.yaml"), {"-c", "show interface in-band | include '(Hardware|Speed)'"}).out,
      "    Hardware is Fibre Channel\n"
      "    Speed is 1 Gbps\n");
  EXPECT_EQ(
      run_shell_on(shipped_switch("storage.yaml"), {"-c", "show interface sup-fc 0 | include '(Hardware|Speed)'"}).out,
      "    Hardware is Fibre Channel\n"
      "    Speed is 1 Gbps\n");
  EXPECT_EQ(run_shell_on(shipped_switch("storage.yaml"), {"-c", "show interface sup-fc 0 counters | include sup"}).out,
            "sup-fc0\n");
}

TEST(Progress, StandsAtATerminalWhileACommandLasts) {
  terminal screen({"--inject-fault", "statistics=silent", "--wait", "2"});
  ASSERT_TRUE(screen.shows_prompt());
  screen.type("show interface ethernet 1/1 counters detailed\r");
  EXPECT_TRUE(screen.shows("\r\x1b[Kworking, 1 s; Ctrl-C stops it")) << screen.unread();
  EXPECT_TRUE(screen.shows("\r\x1b[Kstats unavailable\r\n")) << screen.unread();
}

TEST(Progress, NeverGoesIntoAPipe) {
  const outcome result = run_all({"show interface ethernet 1/1 counters detailed"},
                                 {"--inject-fault", "statistics=silent", "--wait", "2"});
  EXPECT_EQ(result.out, "stats unavailable\n");
  EXPECT_EQ(result.err, "pmsh: the service 'statistics' did not answer in time.\n");
}

}  // namespace
}  // namespace session
