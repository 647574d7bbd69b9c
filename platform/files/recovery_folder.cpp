#include "platform/files/recovery_folder.h"

#include "platform/failure.h"
#include "platform/files/disk_file_store.h"
#include "platform/text_limits.h"

#include <array>
#include <cstdio>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace tessavox {

namespace fs = std::filesystem;

namespace {

/// By which a file is known again that nobody has written since.
using Marks = std::array<std::int64_t, 5>;

std::optional<Marks> marks_of(const std::string& path)
{
    struct stat status { };
    if (path.empty() || ::stat(path.c_str(), &status) != 0)
        return std::nullopt;
    return Marks{ static_cast<std::int64_t>(status.st_dev),
        static_cast<std::int64_t>(status.st_ino), status.st_size, status.st_mtim.tv_sec,
        status.st_mtim.tv_nsec };
}

std::string now()
{
    const std::time_t time = std::time(nullptr);
    std::tm parts{};
    localtime_r(&time, &parts);
    std::array<char, 32> text;
    const std::size_t length = std::strftime(text.data(), text.size(), "%Y-%m-%d %H-%M-%S", &parts);
    return { text.data(), length };
}

/// So much of a title that it fits into a file's name along with the rest.
std::string shortened(std::string title)
{
    constexpr std::size_t longest = 120;
    title = title.substr(title.rfind('/') + 1);
    if (title.size() <= longest)
        return title;
    std::size_t end = longest;
    while (end > 0 && (static_cast<unsigned char>(title[end]) & 0xC0) == 0x80)
        --end; // not in the middle of a character
    return title.substr(0, end);
}

void make_private(const std::string& path)
{
    ::chmod(path.c_str(), 0600);
}

} // namespace

class RecoveryFolder::Copy : public RecoveryCopy {
public:
    explicit Copy(RecoveryFolder& folder)
        : m_folder(folder)
    {
    }

    void keep(const std::string& title, const TextSlice& text) override
    {
        if (text.empty())
            return;
        if (m_path.empty())
            m_path = m_folder.path_of(title, ".txt");
        m_folder.order(m_path, text);
    }

    void drop() override
    {
        if (!m_path.empty())
            m_folder.order(std::exchange(m_path, {}), std::nullopt);
    }

    void note_file(const std::string& path) override
    {
        m_noted_path = path;
        m_noted = marks_of(path);
    }

    void keep_foreign_file(const std::string& path) override
    {
        const auto marks = marks_of(path);
        const bool is_own = path == m_noted_path && marks == m_noted;
        std::error_code failed;
        if (is_own || !marks || !fs::is_regular_file(path, failed)
            || fs::file_size(path, failed) > most_text_bytes || !m_folder.make_folder())
            return;
        const std::string copy = m_folder.path_of(path, fs::path(path).extension().string());
        if (fs::copy_file(path, copy, failed))
            make_private(copy);
        fs::last_write_time(copy, fs::file_time_type::clock::now(), failed);
    }

private:
    RecoveryFolder& m_folder;
    std::string m_path; // empty: nothing is kept
    std::string m_noted_path;
    std::optional<Marks> m_noted;
};

RecoveryFolder::RecoveryFolder(std::string folder)
    : m_folder(std::move(folder))
    , m_thread([this] { run(); })
{
}

RecoveryFolder::~RecoveryFolder()
{
    {
        const std::lock_guard lock(m_mutex);
        m_ends = true;
    }
    m_something_to_do.notify_one();
    m_thread.join();
}

std::unique_ptr<RecoveryCopy> RecoveryFolder::create()
{
    return std::make_unique<Copy>(*this);
}

std::string RecoveryFolder::path_of(const std::string& title, const std::string& extension)
{
    return m_folder + "/" + shortened(title) + " " + now() + " " + std::to_string(::getpid()) + "-"
        + std::to_string(++m_number) + extension;
}

bool RecoveryFolder::make_folder()
{
    std::error_code failed;
    if (fs::create_directories(m_folder, failed))
        fs::permissions(m_folder, fs::perms::owner_all, failed);
    return fs::is_directory(m_folder, failed);
}

void RecoveryFolder::order(const std::string& path, std::optional<TextSlice> text)
{
    {
        const std::lock_guard lock(m_mutex);
        m_orders[path] = std::move(text);
    }
    m_something_to_do.notify_one();
}

void RecoveryFolder::run()
{
    remove_old_copies();
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_something_to_do.wait(lock, [this] { return m_ends || !m_orders.empty(); });
        if (m_orders.empty())
            return;
        const Orders orders = std::exchange(m_orders, {});
        lock.unlock();
        carry_out(orders);
        lock.lock();
    }
}

void RecoveryFolder::carry_out(const Orders& orders)
{
    DiskFileStore files;
    for (const auto& [path, text] : orders) {
        if (!text) {
            ::unlink(path.c_str());
            continue;
        }
        if (!make_folder())
            return;
        // Private from its first byte on, as the file that takes its place keeps its permissions.
        const int empty = ::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
        if (empty >= 0)
            ::close(empty);
        attempt([&, &path = path, &text = text] {
            files.write(path, to_utf8(text->view()), Durability::durable);
        });
    }
}

void RecoveryFolder::remove_old_copies()
{
    std::error_code failed;
    const auto oldest = fs::file_time_type::clock::now() - longest_recovery_copy;
    for (const fs::directory_entry& entry : fs::directory_iterator(m_folder, failed)) {
        std::error_code ignored;
        if (entry.is_regular_file(ignored) && !entry.is_symlink(ignored)
            && entry.last_write_time(ignored) < oldest && !ignored)
            fs::remove(entry.path(), ignored);
    }
}

} // namespace tessavox
