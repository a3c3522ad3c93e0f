#include "Karto/Platform/Linux/InotifyFileWatch.h"

#include "Karto/Platform/Linux/PathWalk.h"

#include <sys/inotify.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <map>
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

// The bits of what happened, by the number of the watch that saw it.
using Events = std::map<int, std::uint32_t>;

// Stands in place of a number when the kernel's queue was too short; whatever is watched may have changed.
constexpr int everyWatch = -1;

// Empty when nothing is left to take.
Events takeEvents(const Descriptor& inotify) {
    alignas(inotify_event) std::array<char, 4096> buffer{};
    const auto length = ::read(inotify.number(), buffer.data(), buffer.size());
    Events events;
    for (std::size_t at = 0; std::cmp_less(at, length);) {
        inotify_event event{};
        std::memcpy(&event, buffer.data() + at, sizeof event);
        events[event.wd] |= event.mask;
        at += sizeof event + event.len;
    }
    return events;
}

} // namespace

struct InotifyFileWatch::WatchedFile {
    std::string path;
    FileIdentity identity;
    std::function<void()> onChange;
    std::set<int> watches;

    [[nodiscard]] bool isChangedBy(const Events& events) const {
        std::uint32_t seen = 0;
        for (const auto& [watch, bits] : events) {
            seen |= watch == everyWatch || watches.contains(watch) ? bits : 0;
        }
        // New permissions, owners or times are by themselves no change; a new link count is one when the path
        // has come to lead elsewhere.
        return (seen & ~std::uint32_t{IN_ATTRIB | IN_IGNORED}) != 0 ||
               (seen != 0 && identify(path) != identity);
    }
};

std::optional<Registration> InotifyFileWatch::watch(const std::string& path, std::function<void()> onChange) {
    const auto identity = identify(path);
    if (!identity) {
        return std::nullopt;
    }
    if (!inotify_) {
        inotify_ = Descriptor(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
    }
    // What the watches that have ended left behind would only wake us up.
    while (files_.empty() && !takeEvents(inotify_).empty()) {}
    const auto places = placesOnTheWay(path);
    const auto file = std::make_shared<const WatchedFile>(WatchedFile{.path = path,
                                                                      .identity = *identity,
                                                                      .onChange = std::move(onChange),
                                                                      .watches = watchPlaces(places)});
    files_.push_back(file);
    Registration registration([this, file] { end(file); });
    // Whoever replaced something before it was watched has not been seen.
    if (file->watches.empty() || placesOnTheWay(path) != places || identify(path) != identity) {
        return std::nullopt;
    }
    if (!readable_) {
        readable_ = descriptors_.watch(inotify_.number(), [this] { reportChanges(); });
    }
    return registration;
}

std::set<int> InotifyFileWatch::watchPlaces(const std::vector<std::string>& places) const {
    std::set<int> watches;
    // Another file may be watching the same place already, for other events.
    const auto add = [&](const std::string& place, std::uint32_t events) {
        const int watch =
            ::inotify_add_watch(inotify_.number(), place.c_str(), events | IN_DONT_FOLLOW | IN_MASK_ADD);
        if (watch >= 0) {
            watches.insert(watch);
        }
    };
    add(places.back(), fileEvents);
    for (auto place = places.begin(); !watches.empty() && place != std::prev(places.end()); ++place) {
        // A folder that may not be read cannot be watched; the file itself still is.
        add(*place, placeEvents);
    }
    return watches;
}

void InotifyFileWatch::end(const std::shared_ptr<const WatchedFile>& file) {
    std::erase(files_, file);
    for (const int watch : file->watches) {
        // The kernel gives a place one number, however many files lie behind it. It does not give the number
        // to another place later, so that one whose place is gone can be removed, too.
        if (std::ranges::none_of(files_, [=](const auto& other) { return other->watches.contains(watch); })) {
            ::inotify_rm_watch(inotify_.number(), watch);
        }
    }
    if (files_.empty()) {
        readable_.reset();
    }
}

void InotifyFileWatch::reportChanges() const {
    const auto events = takeEvents(inotify_);
    // A callback may end any of the registrations and begin others.
    const std::vector<std::weak_ptr<const WatchedFile>> files(files_.begin(), files_.end());
    for (const auto& watched : files) {
        const auto file = watched.lock();
        if (file && file->isChangedBy(events)) {
            file->onChange();
        }
    }
}

} // namespace karto
