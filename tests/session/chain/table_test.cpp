// Lines that are tables.
#include "shell/output/chain/table.h"

#include <gtest/gtest.h>

#include "session/chain/seen_lines.h"

namespace session {
namespace {

using host::line_role;

constexpr char kRule[] = "------------------------------";

struct table_lines : seen_lines {
  void take(const host::text_line& it) override {
    seen_lines::take(it);
    roles.push_back(it.role);
    values.emplace_back(it.values.begin(), it.values.end());
    columns.push_back(it.table == nullptr ? session::texts() : it.table->columns);
  }

  std::vector<line_role> roles;
  std::vector<session::texts> values;
  std::vector<session::texts> columns;
};

struct TableSink : testing::Test {
  void take(std::initializer_list<std::string_view> lines) {
    for (const std::string_view line : lines) sink.take({line});
    sink.end();
  }

  table_lines seen;
  host::table_sink sink{seen};
};

TEST_F(TableSink, RowsHaveAValueForEachColumn) {
  take({"before", "", kRule, "Port     Native  State", "         Vlan", kRule, "Eth1/1   10      up",
        "Eth1/2           down", "", "after"});
  EXPECT_EQ(seen.roles,
            (std::vector{line_role::other, line_role::other, line_role::rule, line_role::title, line_role::title,
                         line_role::rule, line_role::row, line_role::row, line_role::other, line_role::other}));
  EXPECT_EQ(seen.columns[6], (texts{"Port", "Native Vlan", "State"}));
  EXPECT_EQ(seen.values[6], (texts{"Eth1/1", "10", "up"}));
  EXPECT_EQ(seen.values[7], (texts{"Eth1/2", "", "down"}));
}

TEST_F(TableSink, LineWithoutItsFirstColumnContinuesARow) {
  take({kRule, "Port     State", kRule, "Eth1/1   up", "         since noon"});
  EXPECT_EQ(seen.roles.back(), line_role::continuation);
}

TEST_F(TableSink, HeaderWithoutRowsIsATableAndRulesAloneAreNot) {
  take({kRule, "Port     State", kRule, "", kRule, kRule, "text", kRule, "", "end"});
  EXPECT_EQ(seen.columns[1], (texts{"Port", "State"}));
  EXPECT_EQ(seen.texts(), (texts{kRule, "Port     State", kRule, "", kRule, kRule, "text", kRule, "", "end"}))
      << "every line comes out";
  EXPECT_EQ(seen.columns.back(), texts{});
}

TEST_F(TableSink, HeaderThatDoesNotEndComesOut) {
  take({kRule, "Port     State"});
  EXPECT_EQ(seen.texts(), (texts{kRule, "Port     State"}));
  EXPECT_EQ(seen.roles, (std::vector{line_role::other, line_role::other}));
}

TEST_F(TableSink, GroupTitleBeginsEachTitleBelowIt) {
  take({kRule, "Port     Sent             Received", "         admin    oper    admin    oper", kRule,
        "Eth1/1   on       off     on       on"});
  EXPECT_EQ(seen.columns.back(), (texts{"Port", "Sent admin", "Sent oper", "Received admin", "Received oper"}));
}

}  // namespace
}  // namespace session
