#include "app/panel/arrangement.h"

#include "tests/support/testing.h"

namespace tarnwick::panel {
namespace {

// Children as wide as they want to be or as they may; `asked` tells in which order and width.
struct Children {
  std::vector<Extent> wanted;
  std::vector<std::pair<std::size_t, double>> asked;

  Arrangement in(Stack stack, double width, std::vector<bool> grows = {}) {
    stack.children.resize(wanted.size());
    for (std::size_t i = 0; i < grows.size(); ++i) stack.children[i].grows = grows[i];
    return arrange(stack, width, [this](std::size_t i, double childWidth) -> Extent {
      asked.emplace_back(i, childWidth);
      return {std::min(wanted[i].width, childWidth), wanted[i].height};
    });
  }
};

TEST(Arrangement, AColumnKeepsItsDistancesAndIsAsWideAsItsWidestChild) {
  Children children{.wanted = {{50, 10}, {500, 20}}};
  const Stack column{.spacing = 6, .insets = {4, 3, 2, 1}};
  const Arrangement free = children.in(column, 104);
  EXPECT_EQ(free.size, (Extent{104, 42}));
  EXPECT_THAT(free.spots, ElementsAre(Spot{3, 4}, Spot{3, 20}));

  Stack fixed = column;
  fixed.width = 300;
  children.wanted = {{50, 10}};
  EXPECT_EQ(children.in(fixed, 400).size, (Extent{300, 16}));
  EXPECT_EQ(children.in(fixed, 200).size, (Extent{200, 16}));
  EXPECT_EQ(Children{}.in(column, 100).size, (Extent{4, 6}));
  children.wanted = {{50, 10}, {50, 0}, {50, 20}};
  EXPECT_EQ(children.in(column, 104).size, (Extent{54, 42})) << "one distance around what has no height";
}

TEST(Arrangement, WhatIsWiderThanItsColumnHangsOverOnBothSides) {
  const Extent wide{395, 10};
  const Stack column{.insets = {0, 14, 0, 14}, .width = 400, .children = {Node{}, Node{}}};
  const Arrangement all = arrange(column, 4000, [&](std::size_t i, double width) {
    return i == 0 ? wide : Extent{width, 5};
  });
  EXPECT_EQ(all.size, (Extent{400, 15}));
  EXPECT_THAT(all.spots, ElementsAre(Spot{3, 0}, Spot{14, 10}));
}

TEST(Arrangement, InARowTheGrowingChildGetsWhatTheOthersLeave) {
  Children children{.wanted = {{30, 28}, {40, 15}, {20, 10}}};
  Stack row{.direction = Stack::Direction::horizontal,
            .spacing = 10,
            .alignment = Stack::Alignment::centre,
            .width = 200};
  const Arrangement grown = children.in(row, 400, {false, true, false});
  EXPECT_THAT(children.asked, ElementsAre(std::pair(0U, 180.0), std::pair(2U, 150.0), std::pair(1U, 130.0)));
  EXPECT_EQ(grown.size, (Extent{200, 28}));
  EXPECT_THAT(grown.spots, ElementsAre(Spot{0, 0}, Spot{40, 6}, Spot{180, 9}));

  row.width.reset();
  row.alignment = Stack::Alignment::start;
  const Arrangement plain = children.in(row, 400);
  EXPECT_EQ(plain.size, (Extent{110, 28}));
  EXPECT_THAT(plain.spots, ElementsAre(Spot{0, 0}, Spot{40, 0}, Spot{90, 0}));
}

TEST(PanelPlace, IsUnderTheIconOfAMenuBar) {
  const std::tuple<Area, Extent, Spot> cases[] = {
      {{500, 850, 24, 24}, {400, 300}, {492, 544}},
      {{1080, 850, 24, 24}, {400, 300}, {692, 544}},  // at the bar's end
      {{100, 850, 24, 24}, {400, 300}, {108, 544}},   // at its start
      {{300, 850, 24, 24}, {1200, 300}, {108, 544}},  // wider than the screen
  };
  for (const auto& [icon, panel, spot] : cases)
    EXPECT_EQ(underIcon(icon, panel, {100, 50, 1000, 800}), spot) << icon.x;
}

TEST(PanelPlace, IsBesideAnIconOfAnyBar) {
  const std::tuple<Area, Extent, Spot> cases[] = {
      {{500, 0, 24, 24}, {400, 300}, {492, 30}},     // bar at the top
      {{980, 0, 24, 24}, {400, 300}, {592, 30}},     // at its end
      {{0, 0, 24, 24}, {400, 300}, {8, 30}},         // at its start
      {{500, 740, 24, 24}, {400, 300}, {492, 430}},  // bar at the bottom
      {{500, 60, 1, 1}, {400, 300}, {492, 67}},      // a pointer
      {{500, 378, 1, 1}, {400, 300}, {492, 385}},    // in the last row of the upper half
      {{500, 379, 1, 1}, {400, 300}, {492, 73}},     // in the middle
      {{500, 0, 24, 24}, {1200, 900}, {8, 30}},      // larger than the screen
  };
  for (const auto& [icon, panel, spot] : cases)
    EXPECT_EQ(besideIcon(icon, panel, {0, 30, 1000, 700}), spot) << icon.x << " " << icon.y;
}

}  // namespace
}  // namespace tarnwick::panel
