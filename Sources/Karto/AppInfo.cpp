#include "Karto/AppInfo.h"

#include "Karto/Updates/UpdateAddress.h"

namespace karto::AppInfo {

namespace {

std::optional<std::string_view> unlessEmpty(std::string_view text) {
    return text.empty() ? std::nullopt : std::optional(text);
}

} // namespace

std::string_view version() { return KARTO_VERSION; }

std::optional<UpdateSource> updateSource() {
    const auto key = FeedKey::fromText(KARTO_UPDATE_KEY);
    if (!key || !isSafeUpdateAddress(KARTO_UPDATE_FEED)) {
        return std::nullopt;
    }
    return UpdateSource{
        .feedAddress = KARTO_UPDATE_FEED, .key = *key, .runningVersion = std::string(version())};
}

std::optional<std::string_view> commit() { return unlessEmpty(KARTO_BUILD_COMMIT); }

std::optional<std::string_view> buildDate() { return unlessEmpty(KARTO_BUILD_DATE); }

std::string buildDescription(std::optional<std::string_view> buildDate,
                             std::optional<std::string_view> commit) {
    if (!buildDate) {
        return "Unbundled build — run scripts/bundle.sh";
    }
    std::string description = "Built ";
    description += *buildDate;
    if (commit) {
        description += " · ";
        description += *commit;
    }
    return description;
}

} // namespace karto::AppInfo
