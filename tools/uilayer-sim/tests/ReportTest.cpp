#include <gtest/gtest.h>

#include "Report.h"

namespace UilayerSim {
namespace {

TEST(ReportTest, Placeholder) {
    EXPECT_EQ("\"a\"", JsonQuote("a"));
}

}  // namespace
}  // namespace UilayerSim
