#include "Karto/Platform/Linux/Updates/FetchProgram.h"

#include "Karto/Platform/Linux/Updates/ChildProgram.h"

#include <fmt/format.h>

#include <charconv>
#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>

namespace karto {

namespace {

namespace fs = std::filesystem;

std::string programNear(const fs::path& running) {
    constexpr auto name = "karto-fetch";
    std::error_code error;
    auto beside = running.parent_path() / name;
    return fs::exists(beside, error)
               ? beside
               : running.parent_path().parent_path() / KARTO_LIBEXEC_FOLDER / "karto" / name;
}

// The answer: a line with the place of its first byte, then its bytes.
class Answer {
public:
    explicit Answer(FetchReport report)
        : report_(std::make_shared<const FetchReport>(std::move(report))) {}

    void stop() { report_.reset(); }

    void take(std::string_view bytes) {
        // Whoever hears it may stop the answer.
        const auto report = report_;
        if (hasBegun_) {
            return report->onBytes(bytes);
        }
        head_ += bytes;
        const auto lineEnd = head_.find('\n');
        if (lineEnd == std::string::npos) {
            return;
        }
        hasBegun_ = true;
        std::uint64_t offset = 0;
        std::from_chars(head_.data(), head_.data() + lineEnd, offset);
        report->onBegin(offset);
        if (const auto rest = head_.substr(lineEnd + 1); report_ && !rest.empty()) {
            report->onBytes(rest);
        }
    }

    void end(const ChildEnd& end) const {
        const auto report = report_;
        if (end.status == 0) {
            return report->onEnd(std::nullopt);
        }
        const auto line = end.complaint.substr(0, end.complaint.find('\n'));
        report->onEnd(line.empty() ? "the program that fetches updates does not work" : line);
    }

private:
    std::shared_ptr<const FetchReport> report_;
    std::string head_;
    bool hasBegun_ = false;
};

} // namespace

FetchProgram::FetchProgram(const std::string& runningProgram)
    : program_(programNear(runningProgram)) {}

Registration FetchProgram::fetch(const FetchRequest& request, FetchReport report) {
    const auto answer = std::make_shared<Answer>(std::move(report));
    const auto child = std::make_shared<Registration>(
        runChild({.name = program_, .arguments = {request.address, fmt::format("{}", request.offset)}},
                 {.onOutput = [answer](std::string_view bytes) { answer->take(bytes); },
                  .onEnd = [answer](const ChildEnd& end) { answer->end(end); }},
                 ChildSignal::kill));
    return Registration([answer, child] {
        answer->stop();
        child->reset();
    });
}

} // namespace karto
