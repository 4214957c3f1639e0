#include "Quillfade/Cover/CoverStyle.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace quillfade {
namespace {

TEST(CoverStyle, RawValuesNameTheStyles) {
  EXPECT_EQ(rawValue(CoverStyle::live), 0);
  EXPECT_EQ(rawValue(CoverStyle::solid), 1);
  EXPECT_EQ(coverStyle(0), CoverStyle::live);
  EXPECT_EQ(coverStyle(1), CoverStyle::solid);
}

TEST(CoverStyle, OtherIntegersNameNoStyle) {
  for (const std::int64_t value : {std::int64_t{-1}, std::int64_t{2}, std::numeric_limits<std::int64_t>::min(),
                                   std::numeric_limits<std::int64_t>::max()}) {
    EXPECT_EQ(coverStyle(value), std::nullopt) << value;
  }
}

TEST(CoverStyle, TitlesAreThoseOfTheMenu) {
  EXPECT_EQ(title(CoverStyle::live), "Live (strip annotations)");
  EXPECT_EQ(title(CoverStyle::solid), "Solid cover");
}

TEST(CoverStyle, AllStylesAreLiveThenSolid) {
  const std::vector<CoverStyle> all(allCoverStyles.begin(), allCoverStyles.end());
  EXPECT_EQ(all, (std::vector{CoverStyle::live, CoverStyle::solid}));
}

}  // namespace
}  // namespace quillfade
