#include "Karto/Platform/Linux/QtScheduler.h"

#include <QCoreApplication>
#include <QEventLoop>

#include <gmock/gmock.h>

#include <optional>
#include <string>
#include <vector>

namespace karto::testing {

using std::chrono::milliseconds;

TEST(QtScheduler, runsWhatIsDueAndNotCancelledInTheOrderOfScheduling) {
    QtScheduler scheduler;
    std::vector<std::string> ran;
    QEventLoop loop;
    const auto note = [&](const char* name) { return [&ran, name] { ran.emplace_back(name); }; };
    const auto distant = scheduler.after(std::chrono::hours(1), note("distant"));
    auto cancelled = scheduler.after(milliseconds(0), note("cancelled"));
    std::optional<Registration> endsItself;
    endsItself = scheduler.after(milliseconds(0), [&] {
        ran.emplace_back("first");
        endsItself.reset();
    });
    const auto second = scheduler.after(milliseconds(0), note("second"));
    const auto last = scheduler.after(milliseconds(1), [&] { loop.quit(); });
    cancelled.reset();
    loop.exec();
    EXPECT_THAT(ran, ::testing::ElementsAre("first", "second"));
}

TEST(QtScheduler, aTaskThatWaitsKeepsNoOtherFromRunning) {
    QtScheduler scheduler;
    QEventLoop outer;
    QEventLoop inner;
    const auto waiting = scheduler.after(milliseconds(0), [&] {
        inner.exec();
        outer.quit();
    });
    const auto awaited = scheduler.after(milliseconds(0), [&] { inner.quit(); });
    outer.exec();
}

TEST(QtScheduler, aCancellationMayComeAfterTheEndOfTheScheduler) {
    std::optional<QtScheduler> scheduler(std::in_place);
    auto task = scheduler->after(milliseconds(0), [] {});
    scheduler.reset();
    task.reset();
    QCoreApplication::processEvents();
}

} // namespace karto::testing
