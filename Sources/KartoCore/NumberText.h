#pragma once
// Numbers as every text of the program writes them.

#include <string>

namespace karto {

// The shortest decimal that reads back to the same double, always with a fraction: 0.5, 64.0, -0.0.
// Magnitudes below 0.0001, and from 2^54 up, take the exponent form with a sign and two digits: 1e-05.
std::string shortestDecimal(double value);

} // namespace karto
