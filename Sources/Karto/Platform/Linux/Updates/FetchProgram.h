#pragma once
// Fetches with a program of its own, which has the network's libraries, threads and memory and is gone with
// the fetch. What it is told and what it answers stands in Sources/KartoFetch.

#include "Karto/Platform/UpdateFetcher.h"

namespace karto {

class FetchProgram final : public UpdateFetcher {
public:
    // runningProgram: the path of this program, beside which or in whose installation the other one lies.
    explicit FetchProgram(const std::string& runningProgram);

    Registration fetch(const FetchRequest& request, FetchReport report) override;

private:
    std::string program_;
};

} // namespace karto
