#pragma once

// One visitor out of several functions, for std::visit.

namespace karto {

template<typename... Functions>
struct Overloaded : Functions... {
    using Functions::operator()...;
};

} // namespace karto
