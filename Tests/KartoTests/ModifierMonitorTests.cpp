#include "Karto/Adapters/ModifierMonitor.h"
#include "Support/ManualScheduler.h"
#include "Support/MemoryDesktop.h"

#include <gmock/gmock.h>

#include <optional>

namespace karto::testing {

TEST(ModifierMonitor, reportsTheWholeSetAfterEveryChangeToTheFirstListener) {
    MemoryDesktop desktop;
    std::vector<ModifierSet> reported;
    ManualScheduler scheduler;
    std::optional<ModifierMonitor> monitor(std::in_place, desktop, scheduler);
    monitor->start([&](ModifierSet held) { reported.push_back(held); });
    monitor->start([](ModifierSet) { ADD_FAILURE() << "the second listener was called"; });
    constexpr std::uint32_t capsLock = 0x10000;
    for (const auto bits : {ModifierBits::shift, ModifierBits::shift | ModifierBits::command,
                            ModifierBits::command, capsLock}) {
        desktop.hold({bits});
    }
    EXPECT_THAT(reported,
                ::testing::ElementsAre(ModifierSet::shift, ModifierSet::shift | ModifierSet::command,
                                       ModifierSet::command, ModifierSet()));
    monitor.reset();
    desktop.hold({ModifierBits::shift});
    EXPECT_EQ(reported.size(), 4U);
}

} // namespace karto::testing
