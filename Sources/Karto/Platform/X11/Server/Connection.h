#pragma once
// The program's own connection to the X server, apart from the toolkit's.
// Requests are sent in flights and their replies collected against one deadline, so that nothing ever blocks
// longer than a bound. Events that arrive meanwhile are kept and handed out from the event loop, in order.

#include "Karto/Platform/DescriptorWatch.h"
#include "Karto/Platform/Observers.h"
#include "Karto/Platform/Registration.h"
#include "Karto/Platform/Scheduler.h"
#include "Karto/Platform/WeakCallbacks.h"
#include "Karto/Platform/X11/Server/Atoms.h"
#include "Karto/Platform/X11/Server/Handshake.h"
#include "Karto/Platform/X11/Server/Reply.h"
#include "Karto/Platform/X11/Server/ServerSocket.h"

#include <xcb/xcb.h>

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <expected>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace karto::x11 {

// A request that the server has not answered by then counts as failed.
inline constexpr std::chrono::milliseconds requestBound{250};

// The same for what the program asks once, when it starts: at login a window manager may hold the server for
// a while.
inline constexpr std::chrono::milliseconds startBound{5000};

// Until a server that did not answer is asked again.
inline constexpr std::chrono::milliseconds retryTime{1000};

inline Deadline deadlineFromNow(std::chrono::milliseconds bound = requestBound) {
    return std::chrono::steady_clock::now() + bound;
}

class Connection {
public:
    // Connects to the display of the environment. The error is a sentence for a person.
    static std::expected<std::unique_ptr<Connection>, std::string>
    open(std::chrono::milliseconds bound = startBound);

    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    Connection(Connection&&) = delete;
    Connection& operator=(Connection&&) = delete;
    ~Connection() = default;

    // From here on events are handed out from the event loop. onBroken is called once, when the server is
    // gone.
    void attach(DescriptorWatch& descriptors, Scheduler& scheduler, std::function<void()> onBroken);

    // Lets events gather for that time before the event loop hands them out: a stream of them then costs
    // less. Only while attached.
    void gather(std::chrono::milliseconds time);

    [[nodiscard]] xcb_connection_t* get() const { return connection_.get(); }

    [[nodiscard]] const xcb_screen_t& screen() const { return *screen_; }

    [[nodiscard]] int screenNumber() const { return screenNumber_; }

    [[nodiscard]] xcb_window_t root() const { return screen_->root; }

    [[nodiscard]] const Atoms& atoms() const { return atoms_; }

    // Whether the server can tell which process a window belongs to.
    [[nodiscard]] bool knowsProcesses() const { return knowsProcesses_; }

    [[nodiscard]] bool broken() const { return xcb_connection_has_error(get()) != 0; }

    // The answer to a request, whose reply type is Content; null for an error, and when the deadline passes
    // first.
    template<typename Content, typename Cookie>
    Reply<Content> await(Cookie cookie, Deadline deadline) {
        return Reply<Content>(static_cast<Content*>(awaitReply(cookie.sequence, deadline)));
    }

    // For every checked request whether the server carried it out; absent when the deadline passes first.
    std::optional<std::vector<bool>> succeeded(std::span<const xcb_void_cookie_t> requests,
                                               Deadline deadline);

    // A place in the line of events that wait for their observers, to be passed to awaitEvents.
    [[nodiscard]] std::size_t eventMark() const { return line_.size(); }

    // Waits until events have joined the line since the mark, or the deadline has passed. They stay in line
    // for their observers and are returned to look at, valid until the event loop goes on.
    std::vector<const xcb_generic_event_t*> awaitEvents(std::size_t mark, Deadline deadline);

    // Hears every event, in the order of registration.
    [[nodiscard]] Registration observe(std::function<void(const xcb_generic_event_t&)> onEvent);

    // Adds to the events that the server reports of a window, as long as the registration lasts.
    [[nodiscard]] Registration select(xcb_window_t window, std::uint32_t eventMask);

    // Whether an event is being handed to its observers.
    [[nodiscard]] bool inTurn() const { return dispatching_; }

    // Called after every event that observers have handled.
    [[nodiscard]] Registration observeTurnEnds(std::function<void()> onTurnEnd);

    // Called when all events that have arrived are handed out, and now and then while they come without end.
    [[nodiscard]] Registration observeLulls(std::function<void()> onLull);

    // Sends a client message about a window to the window manager.
    void tellWindowManager(xcb_window_t window, xcb_atom_t type,
                           const std::array<std::uint32_t, 5>& words) const;

    // Sends what was asked for. What a server leaves that takes nothing for a moment is sent when it takes
    // something again; nobody waits longer for it.
    void flush();

    // False while a server that has stopped reading has left too much already.
    [[nodiscard]] bool
    takesRequests(std::chrono::milliseconds within = std::chrono::milliseconds::zero()) const;

private:
    explicit Connection(OpenConnection opened);

    // Whether the server has told the atoms, which it is asked for first.
    [[nodiscard]] bool hasAnswered() const { return atoms_.*atomNames.back().first != XCB_ATOM_NONE; }

    void watch();
    void* awaitReply(unsigned sequence, Deadline deadline);
    // Until there is something to read, or maybe so.
    [[nodiscard]] bool waitReadable(Deadline deadline);
    // Moves what has arrived into the line. What is on its way is left to the next time: looking once more
    // whether there is nothing would cost as much as what there was.
    void readEvents();
    // Moves what xcb has read already into the line.
    void takeReadEvents();
    void lineUp(xcb_generic_event_t* received);
    // Makes sure that events in line are handed out although the socket has nothing new to read.
    void dispatchSoon();
    void dispatch();
    [[nodiscard]] std::uint32_t selection(xcb_window_t window) const;
    // Tells the server where the selection differs from `before`.
    void applySelection(xcb_window_t window, std::uint32_t before) const;

    std::unique_ptr<xcb_connection_t, Disconnect> connection_;
    int screenNumber_ = 0;
    const xcb_screen_t* screen_ = nullptr;
    Atoms atoms_;
    bool knowsProcesses_ = false;
    std::deque<Event> line_;
    Observers<xcb_generic_event_t> eventObservers_;
    Observers<> turnObservers_;
    Observers<> lullObservers_;
    // What each registration selects of a window.
    std::map<xcb_window_t, std::map<std::uint64_t, std::uint32_t>> selections_;
    std::uint64_t selected_ = 0;
    bool dispatching_ = false;
    // Whether something waits for the server to take it.
    bool isHeldUp_ = false;
    std::function<void()> onBroken_;
    DescriptorWatch* descriptors_ = nullptr;
    Scheduler* scheduler_ = nullptr;
    Registration readable_;
    Registration gathering_;
    Registration soon_;
    Registration sendingLater_;
    WeakCallbacks callbacks_;
};

// Of a property that holds a name or a handful of values.
inline constexpr std::uint32_t fewWords = 64;
// Of a property that lists windows: more than any desktop has.
inline constexpr std::uint32_t mostWindows = 4096;

// The whole property of a window, at most maximumWords 32-bit words of it.
inline xcb_get_property_cookie_t requestProperty(const Connection& connection, xcb_window_t window,
                                                 xcb_atom_t property, xcb_atom_t type,
                                                 std::uint32_t maximumWords = fewWords) {
    return xcb_get_property(connection.get(), 0, window, property, type, 0, maximumWords);
}

// The 32-bit values of a property; empty for a missing or differently formed one.
std::span<const std::uint32_t> words(const xcb_get_property_reply_t* reply);

// The text of a property in UTF-8; empty for a missing or differently formed one. Latin-1 is converted.
std::string text(const xcb_get_property_reply_t* reply);

} // namespace karto::x11
