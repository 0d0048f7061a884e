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
      {{500, 379, 1, 1}, {400, 300}, {492, 386}},    // in the last row of the upper half
      {{500, 380, 1, 1}, {400, 300}, {492, 74}},     // in the first of the lower
      {{100, 200, 1, 1}, {400, 300}, {107, 192}},    // nearest to the left side
      {{500, 0, 24, 24}, {1200, 900}, {8, 30}},      // larger than the screen
  };
  for (const auto& [icon, panel, spot] : cases)
    EXPECT_EQ(besideIcon(icon, panel, {0, 30, 1000, 700}), spot) << icon.x << " " << icon.y;
}

TEST(PanelPlace, IsInsideTheScreenOfTheIconBesideItsBar) {
  struct Case {
    const char* bar;
    Area visible, icon;
    Spot spot;
  };
  const Case cases[] = {
      {"left, in its middle", {50, 0, 950, 800}, {13, 400, 24, 24}, {50, 392}},
      {"left, at its end", {50, 0, 950, 800}, {13, 770, 24, 24}, {50, 492}},
      {"left, at its start", {50, 0, 950, 800}, {0, 2, 50, 24}, {56, 8}},
      {"right, at its end", {0, 0, 950, 800}, {963, 770, 24, 24}, {550, 492}},
      {"right, in its middle", {0, 0, 976, 800}, {976, 300, 24, 24}, {570, 292}},
      {"left of the second screen", {1040, 0, 960, 600}, {1008, 560, 24, 24}, {1040, 292}},
      {"right of the first screen, beside the second", {0, 0, 960, 800}, {968, 10, 24, 24}, {560, 8}},
      {"top of a screen at the left of the first", {-1000, 30, 1000, 770}, {-40, 3, 24, 24}, {-408, 33}},
      {"bottom of a screen above the first", {0, -800, 1000, 770}, {960, -27, 24, 24}, {592, -333}},
      {"left, hides itself", {0, 0, 1000, 800}, {2, 400, 24, 24}, {32, 392}},
      {"right, hides itself", {0, 0, 1000, 800}, {974, 400, 24, 24}, {568, 392}},
  };
  for (const auto& [bar, visible, icon, spot] : cases)
    EXPECT_EQ(besideIcon(icon, {400, 300}, visible), spot) << bar;
  // In a corner of a screen whose bars nobody knows.
  const Area corner{976, 776, 24, 24};
  const Area screen{0, 0, 1000, 800};
  EXPECT_EQ(besideIcon(corner, {400, 300}, screen, Stack::Direction::horizontal), (Spot{592, 470}));
  EXPECT_EQ(besideIcon(corner, {400, 300}, screen, Stack::Direction::vertical), (Spot{570, 492}));
}

TEST(PanelPlace, AnIconThatNobodyTellsOfIsAtTheEndOfABar) {
  const std::tuple<const char*, Area, Spot> cases[] = {
      {"top", {100, 30, 1000, 770}, {1099, 0}},
      {"top, with a dock at the left", {160, 30, 940, 770}, {1099, 0}},
      {"top, with a dock below", {100, 30, 1000, 700}, {1099, 0}},
      {"bottom", {100, 0, 1000, 760}, {1099, 799}},
      {"right", {100, 0, 950, 800}, {1099, 799}},
      {"left", {150, 0, 950, 800}, {100, 799}},
      {"none", {100, 0, 1000, 800}, {1099, 0}},
  };
  for (const auto& [bar, visible, spot] : cases)
    EXPECT_EQ(likelyIcon({100, 0, 1000, 800}, visible), spot) << bar;
}

}  // namespace
}  // namespace tarnwick::panel
