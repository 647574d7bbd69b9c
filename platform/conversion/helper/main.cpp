// tessavox-document-helper FOLDER CONVERTER: goes into its folder, confines itself for good, and
// becomes one of the programs that turn a document into another form.
#include "platform/argument_pointers.h"
#include "platform/confinement/confinement.h"
#include "platform/conversion/converters.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <iterator>
#include <string>
#include <sys/prctl.h>
#include <unistd.h>
#include <vector>

namespace tessavox {

namespace {

enum ExitCode { not_started = 2 };

constexpr std::uint64_t most_memory_bytes = std::uint64_t{ 4 } << 30;
constexpr std::uint64_t most_file_bytes = std::uint64_t{ 256 } << 20;
constexpr unsigned longest_life_seconds = 60;

/// What it says goes nowhere, but for its text.
bool connect_streams(const Converter& converter)
{
    const int nowhere = open("/dev/null", O_RDWR);
    const int text
        = converter.prints ? open(converted_text, O_WRONLY | O_CREAT | O_EXCL, 0600) : nowhere;
    return nowhere >= 0 && text >= 0 && dup2(nowhere, STDIN_FILENO) >= 0
        && dup2(text, STDOUT_FILENO) >= 0 && dup2(nowhere, STDERR_FILENO) >= 0;
}

void confine_in(const std::string& folder)
{
    Confinement walls;
    walls.readable = { "/lib", "/lib64", "/usr", "/etc", "/dev/null", "/dev/urandom" };
    walls.writable = folder;
    walls.may_execute = true;
    walls.most_memory_bytes = most_memory_bytes;
    walls.most_file_bytes = most_file_bytes;
    for (const std::string& gap : confine(walls))
        std::fprintf(stderr, "tessavox-document-helper: %s\n", gap.c_str());
}

[[noreturn]] void become(const Converter& converter, const std::string& folder)
{
    std::vector<std::string> environment{ "HOME=" + folder, "TMPDIR=" + folder, "LANG=C.UTF-8",
        "PATH=/usr/bin:/bin" };
    std::vector<std::string> arguments{ converter.program };
    for (std::size_t i = 0; i < std::size(converter.arguments) && converter.arguments[i]; ++i) {
        std::string text = converter.arguments[i];
        if (const std::size_t place = text.find("%1"); place != std::string::npos)
            text.replace(place, 2, folder);
        arguments.push_back(std::move(text));
    }
    execve(converter.program, argument_pointers(arguments).data(),
        argument_pointers(environment).data());
    _exit(not_started);
}

} // namespace

} // namespace tessavox

int main(int count, char** arguments)
{
    using namespace tessavox;
    if (count != 3)
        return not_started;
    const std::string folder = arguments[1];
    const Converter* const converter = converter_for(arguments[2]);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    alarm(longest_life_seconds);
    if (!converter || chdir(folder.c_str()) != 0)
        return not_started;
    confine_in(folder);
    if (!connect_streams(*converter))
        return not_started;
    become(*converter, folder);
}
