#pragma once

// What a desktop provides, one facility each. All of it outlives whoever is given it.

namespace karto {

class Accessibility;
class ApplicationActivity;
class ApplicationHost;
class FileSystem;
class FileWatch;
class HotKeyCenter;
class Instance;
class KeyEvents;
class LoginItemService;
class ModifierEvents;
class OverlayStage;
class Scheduler;
class Screens;
class StatusItem;
class UpdaterEngine;

struct Platform {
    ApplicationHost& host;
    Scheduler& scheduler;
    FileSystem& files;
    FileWatch& fileWatch;
    Accessibility& accessibility;
    Screens& screens;
    HotKeyCenter& hotKeyCenter;
    ModifierEvents& modifierEvents;
    KeyEvents& keyEvents;
    OverlayStage& stage;
    ApplicationActivity& activity;
    StatusItem& statusItem;
    LoginItemService& loginItem;
    Instance& instance;
    UpdaterEngine& updater;
};

} // namespace karto
