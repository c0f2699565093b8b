// The front of a module as a picture.
#include "shell/commands/show/front_panel.h"

#include <gtest/gtest.h>

namespace session {
namespace {

using host::front_panel;
using host::line_mark;
using host::panel_style;
using enum host::port_light;
using lines = std::vector<std::string>;

lines texts_of(const front_panel& front, const panel_style& style = {}) {
  lines texts;
  for (const host::panel_line& line : host::lines_of(front, style)) texts.push_back(line.text);
  return texts;
}

// Ports from 1 that are up.
front_panel front_of(uint32_t count) {
  front_panel front{0, 2, "LC", {}};
  for (uint32_t port = 1; port <= count; ++port) front.ports[port] = up;
  return front;
}

TEST(FrontPanel, OddPortsAreAboveEvenOnes) {
  const front_panel front{0, 1, "COPPER", {{1, up}, {2, down}, {3, admin_down}, {4, error_disabled}, {5, unknown}}};
  EXPECT_EQ(texts_of(front), (lines{"Module 1: COPPER",  //
                                    "+---+---+---+",     //
                                    "| 1U| 3A| 5?|",     //
                                    "| 2D| 4E|   |",     //
                                    "+---+---+---+"}));
}

TEST(FrontPanel, TitleNamesTheUnitAndAKnownModel) {
  EXPECT_EQ(texts_of({101, 1, "", {{1, up}}})[0], "Module 1 of unit 101");
  EXPECT_EQ(texts_of({101, 1, "SAT", {{1, up}}})[0], "Module 1 of unit 101: SAT");
}

TEST(FrontPanel, TwelvePortsAreAFrame) {
  EXPECT_EQ(texts_of(front_of(14)), (lines{"Module 2: LC",                     //
                                           "+---+---+---+---+---+---+ +---+",  //
                                           "| 1U| 3U| 5U| 7U| 9U|11U| |13U|",  //
                                           "| 2U| 4U| 6U| 8U|10U|12U| |14U|",  //
                                           "+---+---+---+---+---+---+ +---+"}));
}

TEST(FrontPanel, FramesWithoutPortsAreLeftOut) {
  EXPECT_EQ(texts_of({0, 1, "", {{2, up}, {250, down}}}), (lines{"Module 1",  //
                                                                 "+----+----+----+----+----+----+ +----+----+----+----+"
                                                                 "----+",  //
                                                                 "|    |    |    |    |    |    | |    |    |    |    |"
                                                                 "    |",  //
                                                                 "|  2U|    |    |    |    |    | |    |    |    |    |"
                                                                 "250D|",  //
                                                                 "+----+----+----+----+----+----+ +----+----+----+----+"
                                                                 "----+"}));
}

TEST(FrontPanel, FramesStandSideBySideAsFarAsTheyFit) {
  const front_panel front = front_of(48);
  const auto count_and_width = [&front](std::size_t columns) {
    const lines shown = texts_of(front, {columns, false, false});
    return std::pair(shown.size(), shown[1].size());
  };
  EXPECT_EQ(count_and_width(0), std::pair(std::size_t{1 + 4}, std::size_t{103}));
  EXPECT_EQ(count_and_width(103), std::pair(std::size_t{1 + 4}, std::size_t{103}));
  EXPECT_EQ(count_and_width(102), std::pair(std::size_t{1 + 2 * 4}, std::size_t{77}));
  EXPECT_EQ(count_and_width(60), std::pair(std::size_t{1 + 2 * 4}, std::size_t{51}));
  EXPECT_EQ(count_and_width(25), std::pair(std::size_t{1 + 4 * 4}, std::size_t{25}));
}

TEST(FrontPanel, FrameIsNarrowerWhereATerminalHasNoRoomForIt) {
  EXPECT_EQ(texts_of(front_of(5), {10, false, false}), (lines{"Module 2: LC",  //
                                                              "+---+---+",     //
                                                              "| 1U| 3U|",     //
                                                              "| 2U| 4U|",     //
                                                              "+---+---+",     //
                                                              "+---+",         //
                                                              "| 5U|",         //
                                                              "|   |",         //
                                                              "+---+"}));
  EXPECT_EQ(texts_of(front_of(2), {1, false, false})[2], "| 1U|") << "never less than a cell";
}

TEST(FrontPanel, ColoursTakeThePlaceOfLetters) {
  const front_panel front{0, 1, "", {{1, up}, {2, down}, {3, admin_down}, {4, error_disabled}, {5, unknown}}};
  const auto shown = host::lines_of(front, {0, true, false});
  EXPECT_EQ(shown[2].text, "| 1 | 3 | 5?|");
  EXPECT_EQ(shown[2].marks, (std::vector<line_mark>{{2, 3, host::severity::normal}, {6, 7, host::severity::off}}));
  EXPECT_EQ(shown[3].text, "| 2 | 4 |   |");
  EXPECT_EQ(shown[3].marks, (std::vector<line_mark>{{2, 3, host::severity::warning}, {6, 7, host::severity::alarm}}));
}

TEST(FrontPanel, HasBoxCharactersWhereTheyCanBeShown) {
  EXPECT_EQ(texts_of(front_of(3), {0, false, true}),
            (lines{"Module 2: LC", "┌───┬───┐", "│ 1U│ 3U│", "│ 2U│   │", "└───┴───┘"}));
}

TEST(FrontPanel, LegendNamesLettersOrColours) {
  EXPECT_EQ(host::legend({}).text, "U up, D down, A administratively down, E error-disabled, ? not known");
  const host::panel_line coloured = host::legend({0, true, false});
  EXPECT_EQ(coloured.text, "up  down  administratively down  error-disabled, ? not known");
  EXPECT_EQ(coloured.marks, (std::vector<line_mark>{{0, 2, host::severity::normal},
                                                    {4, 8, host::severity::warning},
                                                    {10, 31, host::severity::off},
                                                    {33, 47, host::severity::alarm}}));
}

}  // namespace
}  // namespace session
