#include "platform/conversion/word_processor_files.h"

#include "platform/conversion/converters.h"
#include "platform/failure.h"
#include "platform/files/disk_file_store.h"
#include "tests/fakes/fake_platform.h"
#include "tests/platform/files/test_folder.h"

#include <chrono>
#include <gtest/gtest.h>
#include <thread>
#include <unistd.h>

namespace tessavox {
namespace {

struct WordProcessorTest : testing::Test {
    struct Work : BlockingWork {
        bool wait(const std::string&, const std::function<bool()>& is_done,
            const std::function<double()>& share) override
        {
            const auto end = std::chrono::steady_clock::now() + escape_after;
            while (!is_done()) {
                EXPECT_LT(share(), 1.5);
                if (std::chrono::steady_clock::now() > end)
                    return false;
                std::this_thread::yield();
            }
            return true;
        }
        std::chrono::milliseconds escape_after = std::chrono::minutes(1);
    };

    std::u16string text_of(const std::string& bytes)
    {
        const std::string path = folder / "given.doc";
        files.write(path, bytes, Durability::fleeting);
        return converter.text_of(path);
    }
    static bool has(const char* program) { return ::access(program, X_OK) == 0; }

    TestFolder folder;
    DiskFileStore files;
    /// As word processors of the nineties wrote it: one stream, and just as much of a header as the
    /// most forgiving of their readers needs.
    const std::string old_document = files.read(OLD_DOCUMENT);
    Work work;
    StringTable texts;
    WordProcessorFiles converter{ files, work, texts, TESSAVOX_DOCUMENT_HELPER };
};

TEST_F(WordProcessorTest, ReadsWhatTheBytesSayWhateverTheNameSays)
{
    EXPECT_EQ(text_of("{\\rtf1 one\\line two\\par}"), u"one\ntwo");
    for (const char* bytes : { "", "plain", "{\\rt", "%PDF-1.7" })
        EXPECT_THROW(text_of(bytes), Failure) << bytes;
    EXPECT_THROW(converter.text_of(folder / "none.doc"), Failure);
    if (!has("/usr/bin/catdoc"))
        GTEST_SKIP() << "nothing is installed that reads old documents";
    EXPECT_NE(text_of(old_document).find(u"a letter."), std::u16string::npos);
}

TEST_F(WordProcessorTest, GivesUpOnABrokenDocumentAndWhenTheUserDoes)
{
    for (const std::size_t size : { 8U, 508U, 1008U })
        EXPECT_THROW(text_of(old_document.substr(0, size)), Failure) << size;
    work.escape_after = std::chrono::milliseconds(300);
    EXPECT_THROW(text_of(old_document.substr(0, 2008)), Failure) << "makes a converter hang";
}

TEST_F(WordProcessorTest, AConverterFindsItsFolderAndNothingElse)
{
    const std::string secret = folder / "secret";
    files.write(secret, "a secret text", Durability::fleeting);
    const std::string inner = folder / "inner";
    std::filesystem::create_directory(inner);
    std::filesystem::create_symlink(secret, inner + "/" + converted_document);
    const std::string command = std::string(TESSAVOX_DOCUMENT_HELPER) + " " + inner + " ";
    EXPECT_NE(std::system((command + "cat 2>/dev/null").c_str()), 0) << "no converter";
    if (!has("/usr/bin/catdoc"))
        GTEST_SKIP() << "nothing is installed that could try";
    EXPECT_EQ(std::system((command + "catdoc 2>&1 | grep . ").c_str()) == 0, false)
        << "a wall is missing on this system";
    EXPECT_EQ(files.read(inner + "/" + converted_text).find("secret"), std::string::npos);
}

} // namespace
} // namespace tessavox
