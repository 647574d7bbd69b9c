// The windows without a screen.
#include <QApplication>

#include <gtest/gtest.h>

int main(int count, char** arguments)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(count, arguments);
    testing::InitGoogleTest(&count, arguments);
    return RUN_ALL_TESTS();
}
