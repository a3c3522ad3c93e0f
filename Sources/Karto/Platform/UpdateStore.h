#pragma once
// Where a package is kept while it is fetched and until it is installed: one at a time, out of reach of other
// users. Errors are clauses for a person.

#include <cstdint>
#include <expected>
#include <functional>
#include <string>
#include <string_view>

namespace karto {

class UpdateStore {
public:
    virtual ~UpdateStore() = default;

    // Begins the file of that name, or goes on with it, and removes all others. How many bytes are there.
    virtual std::expected<std::uint64_t, std::string> open(const std::string& name) = 0;

    // The rest is about the open file.
    virtual std::expected<void, std::string> append(std::string_view bytes) = 0;
    // Drops the bytes that are there.
    virtual std::expected<void, std::string> startOver() = 0;
    // Hands out all bytes, as they are read back.
    virtual std::expected<void, std::string> read(const std::function<void(std::string_view)>& onBytes) = 0;
    // Gives the whole file its name and closes it. Its path.
    virtual std::expected<std::string, std::string> finish() = 0;

    // Closes it: another Karto may have the place. What is there stays for a later try.
    virtual void close() = 0;
    // Closes and removes everything.
    virtual void clear() = 0;
};

} // namespace karto
