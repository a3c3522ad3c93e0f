// The cost of reading and saving the configuration file against the number of zones, without the disk: beside
// what the parser alone takes for the same text.

#include "Karto/Adapters/ConfigStore.h"
#include "KartoCore/ConfigReading.h"
#include "KartoCore/TOMLWriter.h"
#include "LargeConfiguration.h"

#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <toml++/toml.h>

#include <iterator>
#include <map>
#include <utility>

namespace karto {
namespace {

class MemoryFiles final : public FileSystem {
public:
    std::string resolvingLinks(const std::string& path) override { return path; }

    bool exists(const std::string& path) override { return files_.contains(path); }

    FileResult<std::string> read(const std::string& path, std::size_t /*maximumBytes*/) override {
        const auto file = files_.find(path);
        return file == files_.end() ? FileResult<std::string>(none()) : file->second;
    }

    FileResult<void> createDirectories(const std::string& /*path*/) override { return {}; }

    FileResult<std::unique_ptr<AppendFile>> openForAppending(const std::string& /*path*/) override {
        return none();
    }

    FileResult<void> writeAtomically(const std::string& path, std::string_view bytes) override {
        files_.insert_or_assign(path, std::string(bytes));
        return {};
    }

    FileResult<void> rename(const std::string& /*from*/, const std::string& /*to*/) override {
        return none();
    }

    FileResult<void> remove(const std::string& /*path*/) override { return none(); }

private:
    static std::unexpected<FileError> none() {
        return std::unexpected(FileError{.kind = FileError::Kind::notFound, .message = "none"});
    }

    std::map<std::string, std::string> files_;
};

struct NoFileWatch final : FileWatch {
    std::optional<Registration> watch(const std::string& /*path*/,
                                      std::function<void()> /*onChange*/) override {
        return std::nullopt;
    }
};

struct NoScheduler final : Scheduler {
    Registration after(std::chrono::milliseconds /*delay*/, std::function<void()> /*task*/) override {
        return {};
    }
};

struct NoCheckLog final : CheckLog {
    void append(std::string_view /*message*/) override {}
};

// A store over files that take no time.
struct MemoryStore {
    MemoryFiles files;
    NoFileWatch fileWatch;
    NoScheduler scheduler;
    NoCheckLog log;
    ConfigStore store{"/config.toml", files, fileWatch, scheduler, log};
};

// The keys of a node's table, its whole tree in one line, as somebody may write it by hand.
void writeInline(const LayoutNode& node, std::string& text) {
    const auto out = std::back_inserter(text);
    const Split* const split = node.split();
    if (split == nullptr) {
        if (const auto pin = node.zone()->pinnedOrder)
            fmt::format_to(out, "order = {}", *pin);
        return;
    }
    fmt::format_to(out, "split = {{ axis = \"{}\", at = {}, first = {{", rawName(split->axis), split->at);
    writeInline(split->first, text);
    text += "}, second = {";
    writeInline(split->second, text);
    text += "} }";
}

KartoConfig configurationFor(const benchmark::State& state) {
    return configuration(static_cast<int>(state.range(0)), displayCount);
}

std::string asSaved(const benchmark::State& state) { return TOMLWriter::write(configurationFor(state)); }

std::string inOneLine(const benchmark::State& state) {
    std::string text = "profile.name = \"Benchmark\"\n";
    for (const DisplayLayout& layout : configurationFor(state).displays) {
        fmt::format_to(std::back_inserter(text), "\n[[display]]\nname = \"{}\"\norientation = \"{}\"\n",
                       layout.name, rawName(layout.orientation));
        writeInline(layout.root, text);
    }
    return text;
}

using Text = std::string (*)(const benchmark::State& state);

void parseAlone(benchmark::State& state, Text textOf) {
    const std::string text = textOf(state);
    while (state.KeepRunning())
        benchmark::DoNotOptimize(toml::parse(text));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
    state.SetComplexityN(state.range(0));
}

// The file is read, checked, put in force and backed up.
void reload(benchmark::State& state, Text textOf) {
    MemoryStore memory;
    const std::string text = textOf(state);
    std::ignore = memory.files.writeAtomically(memory.store.path(), text);
    while (state.KeepRunning()) {
        if (memory.store.reload() != ConfigChangeEvent::reloadedFromDisk) {
            state.SkipWithError(memory.store.lastError().value_or("nothing was reloaded").c_str());
            return;
        }
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
    state.SetComplexityN(state.range(0));
}

// The configuration is checked, written and put in force.
void save(benchmark::State& state) {
    MemoryStore memory;
    const KartoConfig config = configurationFor(state);
    while (state.KeepRunning()) {
        if (const auto saved = memory.store.save(config); !saved) {
            state.SkipWithError(saved.error().message.c_str());
            return;
        }
    }
    state.SetComplexityN(state.range(0));
}

BENCHMARK(save)->RangeMultiplier(10)->Range(10, 10'000)->Complexity();
BENCHMARK_CAPTURE(parseAlone, asSaved, asSaved)->RangeMultiplier(10)->Range(10, 10'000)->Complexity();
BENCHMARK_CAPTURE(reload, asSaved, asSaved)->RangeMultiplier(10)->Range(10, 10'000)->Complexity();
BENCHMARK_CAPTURE(parseAlone, inOneLine, inOneLine)->RangeMultiplier(10)->Range(10, 10'000)->Complexity();
BENCHMARK_CAPTURE(reload, inOneLine, inOneLine)->RangeMultiplier(10)->Range(10, 10'000)->Complexity();

} // namespace
} // namespace karto
