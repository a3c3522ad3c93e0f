#pragma once
// A status item that nobody sees, for as long as it is installed.

#include "Karto/Platform/StatusItem.h"

#include <stdexcept>
#include <string_view>
#include <utility>

namespace karto::testing {

class MemoryStatusItem final : public StatusItem {
public:
    StatusItemFace face;
    int menuUpdates = 0;

    // As it opens now.
    [[nodiscard]] Menu menu() const { return makeMenu_(); }

    void click(std::string_view text) const {
        for (const auto& line : menu()) {
            if (line.text == text && line.isEnabled) {
                line.action();
                return;
            }
        }
        throw std::runtime_error("no such line: " + std::string(text));
    }

    Registration install(DrawIcon /*drawIcon*/, MakeMenu makeMenu) override {
        makeMenu_ = std::move(makeMenu);
        return Registration([this] { makeMenu_ = nullptr; });
    }

    void setFace(const StatusItemFace& newFace) override { face = newFace; }

    void updateMenu() override { ++menuUpdates; }

    [[nodiscard]] bool isShown() const override { return makeMenu_ != nullptr; }

private:
    MakeMenu makeMenu_;
};

} // namespace karto::testing
