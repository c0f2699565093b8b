// Lines that are tables.
#include "shell/output/chain/table.h"

#include <gtest/gtest.h>

#include "host/shell/output/chain/seen_lines.h"
#include "shell/output/chain/filter.h"

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

// The values of the only column in the order of its rows.
texts sorted(std::initializer_list<std::string_view> values) {
  seen_lines seen;
  host::line_filters filters;
  filters.add({host::pipe_kind::sort, "value"});
  host::filtering_sink filter(filters, seen);
  host::table_sink sink(filter);
  for (const std::string_view line : {std::string_view(kRule), std::string_view("Value"), std::string_view(kRule)})
    sink.take({line});
  for (const std::string_view value : values) sink.take({value});
  sink.end();
  EXPECT_EQ(filters.fault(), "");
  const texts all = seen.texts();
  return {all.begin() + 3, all.end()};
}

TEST(Sort, NumbersAreBeforeTextsAndUnknownValuesAreLast) {
  EXPECT_EQ(sorted({"auto", "--", "10", "9.5", "-3", "18446744073709551615", "18446744073709551614"}),
            (texts{"-3", "9.5", "10", "18446744073709551614", "18446744073709551615", "auto", "--"}));
  EXPECT_EQ(sorted({"1.2G", "950", "255k", "3M"}), (texts{"950", "255k", "3M", "1.2G"}));
  EXPECT_EQ(sorted({"nan", "2", "inf", "1"}), (texts{"1", "2", "inf", "nan"}));
}

TEST(Sort, NumbersInTextsAreNumbersAndEqualRowsKeepTheirOrder) {
  EXPECT_EQ(sorted({"Eth1/10", "Eth1/9.2", "Eth1/9", "Eth1/09", "Po1"}),
            (texts{"Eth1/9", "Eth1/09", "Eth1/9.2", "Eth1/10", "Po1"}));
}

}  // namespace
}  // namespace session
