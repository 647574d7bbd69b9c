#include "platform/conversion/word_processor_files.h"

#include "platform/conversion/converters.h"
#include "platform/failure.h"
#include "platform/rtf/reader.h"
#include "platform/temporary_folder.h"
#include "platform/text.h"
#include "platform/text_files/plain_text.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tessavox {

namespace fs = std::filesystem;

namespace {

DocumentKind kind_of(const std::string& bytes)
{
    if (bytes.starts_with("\xD0\xCF\x11\xE0"))
        return DocumentKind::ole;
    if (bytes.starts_with("PK\x03\x04"))
        return DocumentKind::zip;
    const std::string start = lower_ascii(std::string_view(bytes).substr(0, 1024));
    const bool is_page = start.find("<html") != std::string::npos
        || start.find("<!doctype html") != std::string::npos;
    return is_page ? DocumentKind::html : DocumentKind::other;
}

/// A program in a process group of its own, which ends with this.
class Conversion {
public:
    Conversion(std::string helper, std::string folder, const Converter& converter)
        : m_longest(converter.most_seconds)
    {
        std::string name = converter.name;
        posix_spawnattr_t attributes;
        posix_spawnattr_init(&attributes);
        sigset_t none, usual;
        sigemptyset(&none);
        sigemptyset(&usual);
        for (const int signal : { SIGINT, SIGTERM, SIGPIPE, SIGCHLD, SIGHUP, SIGXFSZ })
            sigaddset(&usual, signal);
        posix_spawnattr_setsigmask(&attributes, &none);
        posix_spawnattr_setsigdefault(&attributes, &usual);
        posix_spawnattr_setpgroup(&attributes, 0);
        posix_spawnattr_setflags(
            &attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETPGROUP);
        char* const arguments[] = { helper.data(), folder.data(), name.data(), nullptr };
        const int error
            = ::posix_spawn(&m_process, helper.c_str(), nullptr, &attributes, arguments, environ);
        posix_spawnattr_destroy(&attributes);
        if (error != 0)
            throw Failure("a conversion can't be started");
    }
    ~Conversion()
    {
        ::kill(-m_process, SIGKILL);
        while (!m_is_over && ::waitpid(m_process, nullptr, 0) < 0 && errno == EINTR) { }
    }
    Conversion(const Conversion&) = delete;
    Conversion& operator=(const Conversion&) = delete;

    bool is_over()
    {
        m_is_over = m_is_over || ::waitpid(m_process, nullptr, WNOHANG) == m_process;
        return m_is_over;
    }
    double share_of_time() const
    {
        return (std::chrono::steady_clock::now() - m_start) / m_longest;
    }

private:
    std::chrono::duration<double> m_longest;
    pid_t m_process = 0;
    bool m_is_over = false;
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

} // namespace

/// Returns false if the user has ended it.
bool WordProcessorFiles::run(const std::string& folder, const Converter& converter)
{
    Conversion conversion(m_helper, folder, converter);
    return m_work.wait(
        m_texts.LoadResString(2357),
        [&] { return conversion.is_over() || conversion.share_of_time() > 1; },
        [&] { return conversion.share_of_time(); });
}

std::u16string WordProcessorFiles::text_of(const std::string& path)
{
    const std::string bytes = m_files.read(path);
    if (rtf::is_rich_text(bytes)) {
        std::u16string text = rtf::read_rich_text(bytes).text;
        std::replace(text.begin(), text.end(), u'\u2028', u'\n');
        return text;
    }
    const DocumentKind kind = kind_of(bytes);
    for (const Converter& converter : converters) {
        if (!(converter.kinds & bit(kind)) || ::access(converter.program, X_OK) != 0)
            continue;
        const TemporaryFolder folder;
        m_files.write(folder / converted_document, bytes, Durability::fleeting);
        if (!run(folder.path(), converter))
            break;
        std::string text;
        attempt([&] { text = m_files.read(folder / converted_text); });
        if (text.find_first_not_of(" \t\r\n\f") != std::string::npos)
            return decode_plain_text(text).text;
    }
    throw Failure("nothing here reads " + path);
}

} // namespace tessavox
