#include "Karto/Platform/Linux/QtDesktopTheme.h"

#include "Karto/Platform/Linux/QtDescriptorWatch.h"
#include "Karto/Platform/Linux/SessionBus.h"

#include <QGuiApplication>
#include <QPalette>

#include <gtest/gtest.h>

namespace karto::testing {

TEST(QtDesktopTheme, withoutAPortalTheAccentFollowsThePalette) {
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    QtDescriptorWatch descriptors;
    SessionBus bus(descriptors);
    QtDesktopTheme theme(bus);
    EXPECT_EQ(theme.scale(), 1);
    int changes = 0;
    const auto observing = theme.observeChanges([&] { ++changes; });
    QPalette palette = QGuiApplication::palette();
    palette.setColor(QPalette::Highlight, Qt::red);
    QGuiApplication::setPalette(palette);
    QCoreApplication::processEvents();
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(theme.accent(), (RGBColor{.red = 1, .green = 0, .blue = 0}));
}

} // namespace karto::testing
