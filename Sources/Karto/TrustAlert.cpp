#include "Karto/TrustAlert.h"

namespace karto {

void explainDistrust(const std::optional<TrustProblem>& problem, ApplicationHost& host,
                     const std::function<void()>& openSettings, CheckLog& log) {
    log.append("startup: Accessibility permission not granted, showing the onboarding alert and quitting");
    Alert alert{.message = "Karto needs permission to control windows",
                .informativeText =
                    "Open System Settings → Privacy & Security → Accessibility and switch Karto on.\n\n"
                    "If Karto is not in that list, click the \"+\" button below it and choose Karto in your "
                    "Applications folder.\n\n"
                    "Karto quits now — it does not pick the permission up while running. Start it again once "
                    "you have granted it.",
                .buttons = {"Open Settings", "Quit"}};
    if (problem) {
        log.append("startup: " + problem->cause);
        alert.informativeText += "\n\n" + problem->explanation;
    }
    if (host.runAlert(alert) == 0) {
        openSettings();
    }
}

} // namespace karto
