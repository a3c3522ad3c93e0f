// Shows the update window at a step of an update, or at several in turn, named by the arguments, until it is
// closed.

#include "Karto/Updates/Views/UpdateWindowView.h"

#include <QApplication>
#include <QTimer>

#include <map>
#include <memory>
#include <string>
#include <utility>

namespace {

using namespace karto;
using Phase = UpdateState::Phase;

constexpr std::chrono::milliseconds stepDuration{300};

UpdateState at(Phase phase) {
    UpdateState state;
    state.phase = phase;
    UpdateFeed feed;
    feed.version = "0.2.0";
    feed.packageSize = 1'640'000;
    feed.notes = "Zones can be dragged by their corners.\n"
                 "The overlay appears on the display of the pointer first.\n"
                 "Windows of programs that name no application keep their icon.\n"
                 "A display that comes back finds its windows where it left them.";
    state.feed = std::make_shared<const UpdateFeed>(std::move(feed));
    state.received = 620'000;
    state.file = "/home/person/.cache/karto/updates/karto-9f86d081884c7d65.deb";
    return state;
}

UpdateState failure(UpdateState::Step step, const std::string& problem) {
    auto state = at(Phase::failed);
    state.failedStep = step;
    state.problem = problem;
    return state;
}

} // namespace

int main(int argumentCount, char** arguments) {
    using Step = UpdateState::Step;
    const QApplication application(argumentCount, arguments);
    const std::map<std::string, UpdateState> states{
        {"checking", at(Phase::checking)},
        {"not-found", at(Phase::notFound)},
        {"found", at(Phase::found)},
        {"page", at(Phase::found)},
        {"downloading", at(Phase::downloading)},
        {"verified", at(Phase::verified)},
        {"handed-over", at(Phase::handedOver)},
        {"check-failed", failure(Step::check, "the name of the server was not found")},
        {"download-failed", failure(Step::download, "the package is not the one that was signed")},
        {"installation-failed",
         failure(Step::installation,
                 "the package installer says \"E: Could not get lock /var/lib/dpkg/lock-frontend\"")},
    };
    UpdateWindowView window([](UpdateIntent /*intent*/) { QApplication::quit(); });
    std::chrono::milliseconds begin{0};
    for (const auto& name : QApplication::arguments().sliced(1)) {
        QTimer::singleShot(begin, [&window, &states, name = name.toStdString()] {
            window.tell(updateView(
                states.at(name), {.runningVersion = "0.1.0",
                                  .replacesProgram = name != "page",
                                  .now = std::chrono::system_clock::time_point{} + std::chrono::seconds(4)}));
            window.show();
        });
        begin += stepDuration;
    }
    return QApplication::exec();
}
