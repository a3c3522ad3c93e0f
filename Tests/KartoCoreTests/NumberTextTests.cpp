#include "KartoCore/NumberText.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string_view>
#include <utility>
#include <vector>

namespace karto {

namespace {

TEST(NumberText, writesTheShortestDecimalWithAFraction) {
    const std::vector<std::pair<double, std::string_view>> table{
        {0.5, "0.5"},
        {1, "1.0"},
        {300, "300.0"},
        {-0.0, "-0.0"},
        {1.0 / 3, "0.3333333333333333"},
        {2.0 / 3, "0.6666666666666666"},
        {0.0001, "0.0001"},
        {0.00001, "1e-05"},
        {-0.0000125, "-1.25e-05"},
        {1e16, "10000000000000000.0"},
        {0x1p54, "1.8014398509481984e+16"},
        {1e300, "1e+300"},
        {std::numeric_limits<double>::denorm_min(), "5e-324"},
        {std::numeric_limits<double>::infinity(), "inf"},
        {-std::numeric_limits<double>::infinity(), "-inf"},
        {-std::numeric_limits<double>::quiet_NaN(), "nan"},
    };
    for (const auto& [value, text] : table) {
        EXPECT_EQ(shortestDecimal(value), text);
    }
}

RC_GTEST_PROP(NumberText, everyNumberReadsBackToTheSameBits, (std::uint64_t bits)) {
    const auto value = std::bit_cast<double>(bits);
    RC_PRE(std::isfinite(value));
    const std::string text = shortestDecimal(value);
    RC_ASSERT(std::bit_cast<std::uint64_t>(std::strtod(text.c_str(), nullptr)) == bits);
    RC_ASSERT(text.contains('.') || text.contains('e'));
}

} // namespace

} // namespace karto
