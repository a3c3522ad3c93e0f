#include "Karto/Platform/Linux/InotifyFileWatch.h"

#include "Karto/Platform/Linux/Descriptor.h"
#include "Karto/Platform/Linux/PathWalk.h"

#include <sys/inotify.h>
#include <sys/stat.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <utility>

namespace karto {

namespace {

// The entry itself: it was moved, or its last name was removed or given to another.
constexpr std::uint32_t placeEvents = IN_MOVE_SELF | IN_DELETE_SELF;

// Some programs write and never close, others write through a mapping and only their closing is seen. A link
// count that changes is reported as IN_ATTRIB, at once, while IN_DELETE_SELF waits for the last reader.
constexpr std::uint32_t fileEvents = placeEvents | IN_MODIFY | IN_CLOSE_WRITE | IN_ATTRIB;

struct FileIdentity {
    dev_t device = 0;
    ino_t number = 0;

    bool operator==(const FileIdentity&) const = default;
};

// Absent unless the path leads to a regular file.
std::optional<FileIdentity> identify(const std::string& path) {
    struct stat status{};
    if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    return FileIdentity{.device = status.st_dev, .number = status.st_ino};
}

struct WatchedFile {
    std::string path;
    FileIdentity identity;
    std::function<void()> onChange;
    Descriptor inotify;
    // After the descriptor, so that it ends before that closes.
    Registration readable;
};

// What happened, as one set of event bits.
std::uint32_t takeEvents(const Descriptor& inotify) {
    alignas(inotify_event) std::array<char, 4096> buffer{};
    const auto length = ::read(inotify.number(), buffer.data(), buffer.size());
    std::uint32_t events = 0;
    for (std::size_t at = 0; std::cmp_less(at, length);) {
        inotify_event event{};
        std::memcpy(&event, buffer.data() + at, sizeof event);
        events |= event.mask;
        at += sizeof event + event.len;
    }
    return events;
}

bool hasChanged(const WatchedFile& file) {
    const auto events = takeEvents(file.inotify);
    // New permissions or times are no change; a new link count is one when the path has come to lead
    // elsewhere.
    return (events & ~std::uint32_t{IN_ATTRIB | IN_IGNORED}) != 0 || identify(file.path) != file.identity;
}

} // namespace

std::optional<Registration> InotifyFileWatch::watch(const std::string& path, std::function<void()> onChange) {
    const auto identity = identify(path);
    if (!identity) {
        return std::nullopt;
    }
    const auto file = std::make_shared<WatchedFile>(WatchedFile{
        .path = path,
        .identity = *identity,
        .onChange = std::move(onChange),
        .inotify = Descriptor(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)),
        .readable = {},
    });
    auto places = placesOnTheWay(path);
    if (::inotify_add_watch(file->inotify.number(), places.back().c_str(), fileEvents | IN_DONT_FOLLOW) < 0) {
        return std::nullopt;
    }
    places.pop_back();
    for (const auto& place : places) {
        // A folder that may not be read cannot be watched; the file itself still is.
        ::inotify_add_watch(file->inotify.number(), place.c_str(), placeEvents | IN_DONT_FOLLOW);
    }
    file->readable = descriptors_.watch(file->inotify.number(), [&watched = *file] {
        if (hasChanged(watched)) {
            // A copy, because the callback may end the registration and with it the file.
            const auto callback = watched.onChange;
            callback();
        }
    });
    return Registration([file] {});
}

} // namespace karto
