// The pipes that work on tables: columns, sort, rows, count.
#include <gtest/gtest.h>

#include "session/program.h"

namespace session {
namespace {

TEST(TablePipes, ColumnsAreThoseOfTheHeaderInTheOrderOfTheirNames) {
  EXPECT_EQ(run_command("show interface ethernet 1/1-2 flowcontrol | columns RxPause,port,send a").out,
            "\n"
            "---------------------------------------\n"
            "RxPause  Port    Send FlowControl admin\n"
            "---------------------------------------\n"
            "      0  Eth1/1  off\n"
            "      0  Eth1/2  off\n");
}

// A port has no cell below "Vlan": its further values are printed below the titles to the left of their own.
TEST(TablePipes, ValuesBelongToTheColumnOfTheirFieldWhereTheyArePrintedBelowAnother) {
  EXPECT_EQ(
      run_command("show interface ethernet 1/1-2, ethernet 2/1, port-channel 7 status | columns Port,Vlan,Speed,Type")
          .out,
      "\n"
      "----------------------------------\n"
      "Port    Vlan    Speed  Type\n"
      "----------------------------------\n"
      "Eth1/1          1000   10/100/1000\n"
      "Eth1/2          auto   10/100/1000\n"
      "Eth2/1  routed  10000  10Gbase-SR\n"
      "Po7     1       1000   --\n");
}

TEST(TablePipes, UnknownColumnIsAnErrorThatNamesThoseThatThereAre) {
  const outcome result = run_command("show interface loopback 0 status | columns Port,Colour");
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err,
            "pmsh: unknown column 'Colour'. The columns are Port, Name, Status, Vlan, Duplex, Speed, Type.\n");
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(run_command("show interface ethernet 1/1 flowcontrol | sort oper").err,
            "pmsh: ambiguous column 'oper': Send FlowControl oper, Receive FlowControl oper.\n");
  EXPECT_EQ(run_command("show transport | sort Port").err,
            "pmsh: '| sort' works on tables, and this output has none. Use '| include' for lines.\n");
}

TEST(TablePipes, ColumnOfOneTableLeavesTheOthersOut) {
  EXPECT_EQ(run_command("show interface ethernet 1/1 counters | columns Port,OutOctets").out,
            "\n"
            "-----------------\n"
            "Port    OutOctets\n"
            "-----------------\n"
            "Eth1/1          0\n");
  EXPECT_EQ(run_command("show interface ethernet 1/1, loopback 0 brief | columns interface,mtu").out,
            "\n"
            "-----------------\n"
            "Interface     MTU\n"
            "-----------------\n"
            "Ethernet1/1  1500\n"
            "\n"
            "---------\n"
            "Interface\n"
            "---------\n"
            "loopback0\n")
      << "no row is lost";
  EXPECT_EQ(run_command("show interface ethernet 1/1 counters | columns OutOctets").out,
            "\n"
            "---------\n"
            "OutOctets\n"
            "---------\n"
            "        0\n");
}

TEST(TablePipes, RowsAreSortedByNumbersAndUnknownValuesAreLast) {
  EXPECT_EQ(run_command("show interface ethernet 1/1-10 brief | sort mtu | columns Interface,MTU").out,
            "\n"
            "------------------\n"
            "Interface      MTU\n"
            "------------------\n"
            "Ethernet1/1   1500\n"
            "Ethernet1/3   1500\n"
            "Ethernet1/4   1500\n"
            "Ethernet1/5   1500\n"
            "Ethernet1/10  1500\n"
            "Ethernet1/2   9000\n");
  EXPECT_EQ(
      run_command("show interface ethernet 1/10, ethernet 1/1-2 status | sort Name | columns Port,Name | rows Eth").out,
      "\n"
      "---------------\n"
      "Port     Name\n"
      "---------------\n"
      "Eth1/1   Desk 1\n"
      "Eth1/2   Desk 2\n"
      "Eth1/10  --\n");
}

TEST(TablePipes, RowsKeepTheHeader) {
  EXPECT_EQ(run_command("show interface status | rows down").out,
            "\n"
            "--------------------------------------------------------------------------------\n"
            "Port           Name               Status   Vlan      Duplex  Speed   Type\n"
            "--------------------------------------------------------------------------------\n"
            "Eth1/2         Desk 2             down     auto    auto    10/100/1000\n");
}

TEST(TablePipes, CountCountsRows) {
  EXPECT_EQ(run_command("show interface ethernet 1/1-5 status | count").out, "5\n");
  EXPECT_EQ(run_command("show interface ethernet 1/1-5 status | exclude down | count").out, "4\n");
  EXPECT_EQ(run_command("show interface ethernet 1/1-5 status | rows down | count").out, "1\n");
  EXPECT_EQ(run_command("show interface ethernet 1/1-5 overview | count").out, "5\n");
  EXPECT_EQ(run_command("show transport | count").out, "5\n");
}

TEST(TablePipes, TableWithoutRulesHasColumns) {
  EXPECT_EQ(run_command("show interface ethernet 1/1-2 overview | sort state | columns interface,\"in bit/s\"").out,
            "Interface    In bit/s\n"
            "Ethernet1/2         0\n"
            "Ethernet1/1         0\n");
}

TEST(TablePipes, AreRefusedForJson) {
  const outcome result = run_command("show interface status | json | sort Port");
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err,
            "pmsh: '| columns', '| sort' and '| rows' work on tables, not on JSON. Remove them or '| json'.\n");
}

TEST(TablePipes, NeedTheirArguments) {
  EXPECT_EQ(run_command("show interface status | columns").err,
            "pmsh: '| columns' needs columns, such as '| columns Port,Status'.\n");
  EXPECT_EQ(run_command("show interface status | sort").err, "pmsh: '| sort' needs a column, such as '| sort Port'.\n");
}

}  // namespace
}  // namespace session
