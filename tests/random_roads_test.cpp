// A small part of what tools/random-roads does.
#include "tests/support/random_roads.h"

#include <gmock/gmock.h>

namespace korvadex::test {
namespace {

TEST(RandomRoads, LoseNothingAndHearNothingUntrue) {
    RoadReport report;
    for (const int number : {0, 3, 39})
        TakeRoads(1, number, report);
    EXPECT_THAT(report.violations, testing::IsEmpty());
}

TEST(RandomRoads, GoBackAndForth) {
    RoadReport report;
    TakeWalk(1, 200, report);
    EXPECT_THAT(report.violations, testing::IsEmpty());
}

} // namespace
} // namespace korvadex::test
