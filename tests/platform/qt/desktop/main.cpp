// What only a desktop with other programs on it can show.
#include "tests/platform/qt/desktop/other_program.h"

#include <QApplication>

#include <gtest/gtest.h>

int main(int count, char** arguments)
{
    QApplication application(count, arguments);
    int exit_code = 0;
    if (tessavox::OtherProgram::is_it(count, arguments, exit_code))
        return exit_code;
    testing::InitGoogleTest(&count, arguments);
    return RUN_ALL_TESTS();
}
