#include "platform/qt/file_dialogs.h"

#include <gtest/gtest.h>

namespace tessavox {
namespace {

TEST(FileFilters, TakeEveryFileForAllFilesAndKeepTheirOrder)
{
    const QStringList expected{ "All Files (*)", "Wave Files (*.wav)",
        "Text (plain) (*.txt *.rtf)" };
    EXPECT_EQ(name_filters("All Files (*.*)|*.*|Wave Files (*.wav)|*.wav|"
                           "Text (plain) (*.txt;*.rtf)|*.txt; *.rtf"),
        expected);
    EXPECT_TRUE(name_filters("").isEmpty());
}

} // namespace
} // namespace tessavox
