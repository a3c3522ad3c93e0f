#include "Karto/Platform/Linux/Updates/PackageInstaller.h"

#include "Karto/Platform/Linux/Updates/ChildProgram.h"

#include <fmt/format.h>

#include <cstdlib>
#include <utility>

namespace karto {

namespace {

constexpr std::size_t maximumListBytes = 1U << 20U;

// What pkexec ends with itself.
constexpr int dismissed = 126;
constexpr int notStarted = 127;

std::string lastLine(std::string_view text) {
    const auto end = text.find_last_not_of('\n');
    const auto whole = text.substr(0, end == std::string_view::npos ? 0 : end + 1);
    return std::string(whole.substr(whole.rfind('\n') + 1));
}

InstallOutcome outcome(const ChildEnd& end) {
    using Kind = InstallOutcome::Kind;
    if (end.status == 0) {
        return {.kind = Kind::installed, .problem = {}};
    }
    const bool isDenied = end.status == notStarted && end.complaint.contains("Not authorized");
    if (end.status == dismissed || isDenied) {
        return {.kind = Kind::refused, .problem = {}};
    }
    if (!end.status || end.status == notStarted) {
        return {.kind = Kind::unavailable, .problem = {}};
    }
    const auto line = lastLine(end.complaint);
    return {.kind = Kind::failed,
            .problem = line.empty() ? fmt::format("the package installer ended with status {}", *end.status)
                                    : fmt::format("the package installer says \"{}\"", line)};
}

} // namespace

PackageInstaller::Places PackageInstaller::Places::ofSystem(std::string program) {
    const char* const administration = std::getenv("DPKG_ADMINDIR"); // NOLINT(concurrency-mt-unsafe)
    const std::string folder = administration != nullptr ? administration : "/var/lib/dpkg";
    return {.program = std::move(program), .installedFiles = folder + "/info/karto.list"};
}

PackageInstaller::PackageInstaller(FileSystem& files, Places places, std::function<void()> restart)
    : files_(files)
    , places_(std::move(places))
    , restart_(std::move(restart)) {}

bool PackageInstaller::replacesProgram() {
    const auto list = files_.read(places_.installedFiles, maximumListBytes);
    return list && ('\n' + *list + '\n').contains('\n' + places_.program + '\n');
}

Registration PackageInstaller::install(const std::string& package,
                                       std::function<void(const InstallOutcome&)> onEnd) {
    // Without a dialog of the desktop it must not ask in the terminal that the program was started from.
    return runChild({.name = "pkexec",
                     .arguments = {"--disable-internal-agent", "apt-get", "install", "--yes", "--no-remove",
                                   "-q", "-o", "DPkg::Lock::Timeout=60", package}},
                    {.onOutput = [](std::string_view) {},
                     .onEnd = [onEnd = std::move(onEnd)](const ChildEnd& end) { onEnd(outcome(end)); }},
                    ChildSignal::terminate);
}

void PackageInstaller::showFile(const std::string& path) {
    startProgram({.name = "xdg-open", .arguments = {path.substr(0, path.rfind('/'))}});
}

void PackageInstaller::openPage(const std::string& address) {
    startProgram({.name = "xdg-open", .arguments = {address}});
}

} // namespace karto
