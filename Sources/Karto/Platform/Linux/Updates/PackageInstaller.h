#pragma once
// The package installer of Debian and its relatives, as administrator once the desktop's own dialog has
// asked.

#include "Karto/Platform/FileSystem.h"
#include "Karto/Platform/UpdateInstaller.h"

namespace karto {

class PackageInstaller final : public UpdateInstaller {
public:
    struct Places {
        // This program, as it was started.
        std::string program;
        // What the package of this name has installed, a path a line.
        std::string installedFiles;

        static Places ofSystem(std::string program);
    };

    PackageInstaller(FileSystem& files, Places places, std::function<void()> restart);

    bool replacesProgram() override;
    Registration install(const std::string& package,
                         std::function<void(const InstallOutcome&)> onEnd) override;
    void showFile(const std::string& path) override;
    void openPage(const std::string& address) override;

    void restart() override { restart_(); }

private:
    FileSystem& files_;
    Places places_;
    std::function<void()> restart_;
};

} // namespace karto
