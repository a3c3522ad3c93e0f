#pragma once
// The way into an X server. One that takes connections and never answers is waited for no longer than a
// bound; xcb on its own would wait for ever.

#include <xcb/xcb.h>

#include <chrono>
#include <expected>
#include <memory>
#include <string>

namespace karto::x11 {

struct Disconnect {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};

struct OpenConnection {
    std::unique_ptr<xcb_connection_t, Disconnect> connection;
    // The one that the display's name asks for.
    int screenNumber = 0;
};

// This machine's, by which servers and clients know it.
std::string hostName();

// The display's name in the environment.
std::string displayName();

// What a person is told when the server has not answered in time.
std::string sentenceOfSilence();

// Connects to the display of the environment. The error is a sentence for a person.
std::expected<OpenConnection, std::string> connectToServer(std::chrono::milliseconds bound);

} // namespace karto::x11
