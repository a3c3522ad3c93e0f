#include <gmock/gmock.h>

#include <QApplication>

int main(int argumentCount, char** arguments) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argumentCount, arguments);
    ::testing::InitGoogleMock(&argumentCount, arguments);
    return RUN_ALL_TESTS();
}
