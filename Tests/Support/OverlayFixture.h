#pragma once
// An overlay on the in-memory desktop.

#include "Karto/Adapters/DisplayRegistry.h"
#include "Karto/Adapters/ModifierMonitor.h"
#include "Karto/Overlay/OverlayController.h"
#include "Support/FixedConfig.h"
#include "Support/ManualScheduler.h"
#include "Support/MemoryCheckLog.h"
#include "Support/MemoryDesktop.h"
#include "Support/MemoryStage.h"

#include <gtest/gtest.h>

#include <utility>

namespace karto::testing {

class OverlayFixture : public ::testing::Test {
protected:
    static constexpr WindowHandle settingsWindow{77};

    explicit OverlayFixture(PaintOverlay describe)
        : overlay({.config = config,
                   .displays = displays,
                   .screens = desktop,
                   .stage = stage,
                   .activity = stage,
                   .scheduler = scheduler,
                   .log = log},
                  std::move(describe)) {}

    MemoryDesktop desktop;
    MemoryStage stage;
    ManualScheduler scheduler;
    MemoryCheckLog log;
    // The one in force.
    FixedConfig config;
    DisplayRegistry displays{desktop};
    ModifierMonitor monitor{desktop, scheduler};
    OverlayController overlay;
};

} // namespace karto::testing
