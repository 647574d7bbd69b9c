// Recovery copies as files in a folder of the user's.
#pragma once

#include "platform/recovery_copies.h"

#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

namespace tessavox {

constexpr std::chrono::hours longest_recovery_copy = std::chrono::days(30);

/// A copy is a text in UTF-8 that only its user can read, named by the document and the time. They
/// are written and removed by a thread of its own, which begins by removing what is too old. A file
/// that is about to be written over is copied at once, before the caller goes on.
class RecoveryFolder : public RecoveryCopies {
public:
    /// The folder is made when it is needed.
    explicit RecoveryFolder(std::string folder);
    /// Writes what is still to be written.
    ~RecoveryFolder() override;

    std::unique_ptr<RecoveryCopy> create() override;

private:
    class Copy;
    /// What is to become of a file: its new text, or nothing for its end. The newest one counts.
    using Orders = std::map<std::string, std::optional<TextSlice>>;

    std::string path_of(const std::string& title, const std::string& extension);
    void order(const std::string& path, std::optional<TextSlice> text);
    bool make_folder();
    void run();
    void carry_out(const Orders& orders);
    void remove_old_copies();

    std::string m_folder;
    int m_number = 0; // of the copies of this process
    std::mutex m_mutex;
    std::condition_variable m_something_to_do;
    Orders m_orders;
    bool m_ends = false;
    std::thread m_thread; // the last member: it uses the others
};

} // namespace tessavox
