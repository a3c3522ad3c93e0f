#include "ProcessorTime.h"

#include <fmt/format.h>

#include <filesystem>
#include <fstream>

namespace karto::bench {

std::chrono::nanoseconds processorTime(pid_t process) {
    std::chrono::nanoseconds sum{0};
    for (const auto& thread : std::filesystem::directory_iterator(fmt::format("/proc/{}/task", process))) {
        std::chrono::nanoseconds::rep spent = 0;
        std::ifstream(thread.path() / "schedstat") >> spent;
        sum += std::chrono::nanoseconds(spent);
    }
    return sum;
}

} // namespace karto::bench
