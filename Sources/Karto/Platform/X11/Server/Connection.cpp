#include "Karto/Platform/X11/Server/Connection.h"

#include "Karto/Platform/X11/Server/Extensions.h"

#include <poll.h>
#include <xcb/res.h>
#include <xcb/xcbext.h>

#include <algorithm>
#include <cerrno>
#include <string_view>
#include <utility>

namespace karto::x11 {

namespace {

// After so long, timers and other descriptors have their turn, however many events still come.
constexpr std::chrono::milliseconds turnBound{50};

} // namespace

std::expected<std::unique_ptr<Connection>, std::string> Connection::open(std::chrono::milliseconds bound) {
    auto opened = connectToServer(bound);
    if (!opened) {
        return std::unexpected(std::move(opened).error());
    }
    std::unique_ptr<Connection> result(new Connection(*std::move(opened)));
    if (!result->hasAnswered()) {
        return std::unexpected(sentenceOfSilence());
    }
    return result;
}

Connection::Connection(OpenConnection opened)
    : connection_(std::move(opened.connection))
    , screenNumber_(opened.screenNumber) {
    xcb_connection_t* const connection = get();
    // The answers are here before those for the atoms.
    for (xcb_extension_t* extension : extensions) {
        xcb_prefetch_extension_data(connection, extension);
    }
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (int i = 0; i < screenNumber_ && screens.rem > 1; ++i) {
        xcb_screen_next(&screens);
    }
    screen_ = screens.data;

    std::array<xcb_intern_atom_cookie_t, atomNames.size()> cookies{};
    std::ranges::transform(atomNames, cookies.begin(), [connection](const AtomName& entry) {
        return xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(entry.second.size()),
                               entry.second.data());
    });
    const auto deadline = deadlineFromNow(startBound);
    for (std::size_t i = 0; i < cookies.size(); ++i) {
        if (const auto reply = await<xcb_intern_atom_reply_t>(cookies[i], deadline)) {
            atoms_.*atomNames[i].first = reply->atom;
        }
    }
    if (!hasAnswered()) {
        return;
    }
    const auto* resources = xcb_get_extension_data(connection, &xcb_res_id);
    knowsProcesses_ = resources != nullptr && resources->present != 0;
}

void Connection::attach(DescriptorWatch& descriptors, Scheduler& scheduler, std::function<void()> onBroken) {
    scheduler_ = &scheduler;
    descriptors_ = &descriptors;
    onBroken_ = std::move(onBroken);
    watch();
    dispatchSoon();
}

void Connection::watch() {
    readable_ = descriptors_->watch(xcb_get_file_descriptor(get()), callbacks_.wrap([this] { dispatch(); }));
}

void Connection::gather(std::chrono::milliseconds time) {
    readable_.reset();
    gathering_ = scheduler_->after(time, callbacks_.wrap([this] { watch(); }));
}

void Connection::flush() {
    // A server that is only busy makes room soon. What is held back may be the end of a grab, without which
    // nobody else on this desktop gets an answer, the toolkit of this thread included.
    isHeldUp_ = !takesRequests(isHeldUp_ ? std::chrono::milliseconds::zero() : requestBound);
    if (!isHeldUp_) {
        xcb_flush(get());
    } else if (scheduler_ != nullptr) {
        sendingLater_ = scheduler_->after(requestBound, callbacks_.wrap([this] { flush(); }));
    }
    // Writing may read as well, and nobody would hear of what was read until more comes.
    dispatchSoon();
}

bool Connection::takesRequests(std::chrono::milliseconds within) const {
    // Also when the server is gone, which is for the library to find out. A socket that can be written to has
    // room for all that the library holds back.
    pollfd descriptor{.fd = xcb_get_file_descriptor(get()), .events = POLLOUT, .revents = 0};
    return poll(&descriptor, 1, static_cast<int>(within.count())) != 0;
}

bool Connection::waitReadable(Deadline deadline) {
    while (true) {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        if (left.count() <= 0) {
            return false;
        }
        const short awaited = isHeldUp_ ? POLLIN | POLLOUT : POLLIN;
        pollfd descriptor{.fd = xcb_get_file_descriptor(get()), .events = awaited, .revents = 0};
        const int ready = poll(&descriptor, 1, static_cast<int>(left.count()));
        if (ready > 0) {
            if (isHeldUp_) {
                flush();
            }
            return true;
        }
        if (ready < 0 && errno != EINTR) {
            return false;
        }
    }
}

void* Connection::awaitReply(unsigned sequence, Deadline deadline) {
    void* reply = nullptr;
    xcb_generic_error_t* error = nullptr;
    const auto isAnswered = [&] { return xcb_poll_for_reply(get(), sequence, &reply, &error) != 0; };
    // The answers of a flight come together: those behind the first cost the system nothing more.
    bool answered = isAnswered();
    if (!answered) {
        flush();
        answered = isAnswered();
    }
    while (!answered && !broken() && waitReadable(deadline)) {
        answered = isAnswered();
    }
    if (!answered) {
        xcb_discard_reply(get(), sequence);
    }
    const Reply<xcb_generic_error_t> discardedError(error);
    dispatchSoon();
    return reply;
}

std::optional<std::vector<bool>> Connection::succeeded(std::span<const xcb_void_cookie_t> requests,
                                                       Deadline deadline) {
    // The server answers in order: with this reply, the fate of everything before it is known.
    const auto mark = await<xcb_get_input_focus_reply_t>(xcb_get_input_focus(get()), deadline);
    if (!mark) {
        for (const auto request : requests) {
            xcb_discard_reply(get(), request.sequence);
        }
        return std::nullopt;
    }
    std::vector<bool> result;
    result.reserve(requests.size());
    for (const auto request : requests) {
        void* nothing = nullptr;
        xcb_generic_error_t* error = nullptr;
        xcb_poll_for_reply(get(), request.sequence, &nothing, &error);
        result.push_back(Reply<xcb_generic_error_t>(error) == nullptr);
    }
    return result;
}

std::vector<const xcb_generic_event_t*> Connection::awaitEvents(std::size_t mark, Deadline deadline) {
    flush();
    takeReadEvents();
    while (line_.size() <= mark && !broken() && waitReadable(deadline)) {
        readEvents();
    }
    dispatchSoon();
    std::vector<const xcb_generic_event_t*> fresh;
    for (auto event = line_.begin() + static_cast<std::ptrdiff_t>(mark); event != line_.end(); ++event) {
        fresh.push_back(event->get());
    }
    return fresh;
}

Registration Connection::observe(std::function<void(const xcb_generic_event_t&)> onEvent) {
    return eventObservers_.add(std::move(onEvent));
}

Registration Connection::observeTurnEnds(std::function<void()> onTurnEnd) {
    return turnObservers_.add(std::move(onTurnEnd));
}

Registration Connection::observeLulls(std::function<void()> onLull) {
    return lullObservers_.add(std::move(onLull));
}

Registration Connection::select(xcb_window_t window, std::uint32_t eventMask) {
    const auto key = selected_++;
    const auto before = selection(window);
    selections_[window].emplace(key, eventMask);
    applySelection(window, before);
    return Registration(callbacks_.wrap([this, window, key] {
        const auto selectedBefore = selection(window);
        selections_[window].erase(key);
        applySelection(window, selectedBefore);
        if (selections_[window].empty()) {
            selections_.erase(window);
        }
    }));
}

std::uint32_t Connection::selection(xcb_window_t window) const {
    const auto selected = selections_.find(window);
    std::uint32_t mask = 0;
    if (selected != selections_.end()) {
        for (const auto& [key, part] : selected->second) {
            mask |= part;
        }
    }
    return mask;
}

void Connection::applySelection(xcb_window_t window, std::uint32_t before) const {
    const auto mask = selection(window);
    if (mask != before) {
        xcb_change_window_attributes(get(), window, XCB_CW_EVENT_MASK, &mask);
    }
}

void Connection::tellWindowManager(xcb_window_t window, xcb_atom_t type,
                                   const std::array<std::uint32_t, 5>& words) const {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = type;
    std::ranges::copy(words, static_cast<std::uint32_t*>(event.data.data32));
    xcb_send_event(
        get(), 0, root(), XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
        reinterpret_cast<const char*>(&event)); // NOLINT(cppcoreguidelines-pro-type-reinterpret-cast)
}

void Connection::readEvents() {
    if (xcb_generic_event_t* event = xcb_poll_for_event(get())) {
        lineUp(event);
    }
    takeReadEvents();
}

void Connection::takeReadEvents() {
    while (xcb_generic_event_t* event = xcb_poll_for_queued_event(get())) {
        lineUp(event);
    }
}

void Connection::lineUp(xcb_generic_event_t* received) {
    Event event(received);
    // Requests that nobody awaits may fail: windows vanish at any time.
    constexpr int error = 0;
    if (eventCode(*event) != error) {
        line_.push_back(std::move(event));
    }
}

void Connection::dispatchSoon() {
    if (dispatching_ || scheduler_ == nullptr || soon_) {
        return;
    }
    takeReadEvents();
    if (!line_.empty() || broken()) {
        soon_ = scheduler_->after(std::chrono::milliseconds(0), callbacks_.wrap([this] { dispatch(); }));
    }
}

void Connection::dispatch() {
    if (dispatching_) {
        return;
    }
    soon_.reset();
    dispatching_ = true;
    const auto end = deadlineFromNow(turnBound);
    readEvents();
    while (!line_.empty() && std::chrono::steady_clock::now() < end) {
        const Event event = std::move(line_.front());
        line_.pop_front();
        eventObservers_.notify(*event);
        turnObservers_.notify();
        takeReadEvents();
    }
    lullObservers_.notify();
    dispatching_ = false;
    flush();
    if (broken()) {
        readable_.reset();
        gathering_.reset();
        if (const auto onBroken = std::exchange(onBroken_, nullptr)) {
            onBroken();
        }
    }
}

std::span<const std::uint32_t> words(const xcb_get_property_reply_t* reply) {
    if (reply == nullptr || reply->format != 32) {
        return {};
    }
    return {static_cast<const std::uint32_t*>(xcb_get_property_value(reply)), reply->value_len};
}

std::string text(const xcb_get_property_reply_t* reply) {
    if (reply == nullptr || reply->format != 8) {
        return {};
    }
    const std::string_view bytes(static_cast<const char*>(xcb_get_property_value(reply)), reply->value_len);
    if (reply->type != XCB_ATOM_STRING) {
        return std::string(bytes);
    }
    std::string utf8;
    for (const char character : bytes) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte < 0x80) {
            utf8 += character;
        } else {
            utf8 += static_cast<char>(0xC0 | (byte >> 6));
            utf8 += static_cast<char>(0x80 | (byte & 0x3F));
        }
    }
    return utf8;
}

} // namespace karto::x11
