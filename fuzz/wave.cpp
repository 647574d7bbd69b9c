// Any bytes taken for a wave file: reading ends, stays within its buffers and tells the truth.
#include "platform/failure.h"
#include "platform/voice/sound/wave_file.h"

#include <cstdlib>
#include <string>
#include <vector>

#include <sys/mman.h>
#include <unistd.h>

using namespace tessavox;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const int file = ::memfd_create("wave", MFD_CLOEXEC);
    if (::write(file, data, size) != static_cast<ssize_t>(size))
        std::abort();
    attempt([&] {
        const auto reader = voice::open_wave_file("/proc/self/fd/" + std::to_string(file));
        if (reader->channels() < 1 || reader->channels() > 2 || reader->rate() <= 0)
            std::abort();
        std::vector<std::int16_t> block(static_cast<std::size_t>(4096 * reader->channels()));
        std::uint64_t frames = 0;
        while (const std::size_t got = reader->read(block))
            frames += got;
        // A frame is a byte at least.
        if (frames > size || reader->frames() > size)
            std::abort();
    });
    ::close(file);
    return 0;
}
