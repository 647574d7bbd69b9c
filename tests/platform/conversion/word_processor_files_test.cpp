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

void put(std::string& bytes, std::size_t at, std::uint64_t value, int size)
{
    for (int i = 0; i < size; ++i)
        bytes[at + static_cast<std::size_t>(i)] = static_cast<char>(value >> 8 * i);
}

/// A file with one stream as word processors of the nineties wrote it, with just as much of a
/// header as the most forgiving of their readers needs.
std::string old_document(const std::string& text)
{
    constexpr std::size_t sector = 512, stream_at = 3 * sector, stream_size = 4096;
    std::string file(stream_at + stream_size, '\0');
    const std::uint64_t header[][3] = { { 0, 0xE11AB1A1E011CFD0, 8 }, { 24, 0x0003003E, 4 },
        { 28, 0xFFFE, 2 }, { 30, 9, 2 }, { 32, 6, 2 }, { 44, 1, 4 }, { 48, 1, 4 }, { 56, 4096, 4 },
        { 60, 0xFFFFFFFE, 4 }, { 68, 0xFFFFFFFE, 4 }, { 76, 0, 4 } };
    for (const auto& [at, value, size] : header)
        put(file, at, value, static_cast<int>(size));
    for (std::size_t i = 1; i < 109; ++i)
        put(file, 76 + 4 * i, 0xFFFFFFFF, 4);
    for (std::size_t i = 0; i < sector / 4; ++i) // which sector follows which
        put(file, sector + 4 * i,
            i == 0                 ? 0xFFFFFFFD
                : i == 1 || i == 9 ? 0xFFFFFFFE
                : i < 9            ? i + 1
                                   : 0xFFFFFFFF,
            4);
    const auto entry = [&](std::size_t number, const std::string& name, int type,
                           std::uint64_t child, std::uint64_t start, std::uint64_t size) {
        const std::size_t at = 2 * sector + 128 * number;
        for (std::size_t i = 0; i < name.size(); ++i)
            file[at + 2 * i] = name[i];
        put(file, at + 64, 2 * name.size() + 2, 2);
        put(file, at + 66, static_cast<std::uint64_t>(type) | 0x100, 2);
        put(file, at + 68, 0xFFFFFFFFFFFFFFFF, 8);
        put(file, at + 76, child, 4);
        put(file, at + 116, start, 4);
        put(file, at + 120, size, 4);
    };
    entry(0, "Root Entry", 5, 1, 0xFFFFFFFE, 0);
    entry(1, "WordDocument", 2, 0xFFFFFFFF, 2, stream_size);
    put(file, stream_at, 0x00C1A5EC, 4);
    put(file, stream_at + 24, 1536, 4);
    put(file, stream_at + 28, 1536 + text.size(), 4);
    file.replace(stream_at + 1536, text.size(), text);
    return file;
}

class WordProcessorTest : public testing::Test {
protected:
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
    EXPECT_NE(
        text_of(old_document("Dear Sir,\ra letter.\r")).find(u"a letter."), std::u16string::npos);
}

TEST_F(WordProcessorTest, GivesUpOnABrokenDocumentAndWhenTheUserDoes)
{
    const std::string whole = old_document("text");
    for (const std::size_t size : { 8U, 508U, 1008U })
        EXPECT_THROW(text_of(whole.substr(0, size)), Failure) << size;
    work.escape_after = std::chrono::milliseconds(300);
    EXPECT_THROW(text_of(whole.substr(0, 2008)), Failure) << "makes a converter hang";
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
