#include "platform/voice/engines/time_stretch.h"

#include "platform/failure.h"

#include <sonic.h>

#include <algorithm>
#include <cmath>
#include <memory>

namespace tessavox::voice {

namespace {

struct DestroyStream {
    void operator()(sonicStream stream) const { sonicDestroyStream(stream); }
};
using Stream = std::unique_ptr<sonicStreamStruct, DestroyStream>;

std::vector<std::int16_t> stretched(const Rendering& rendering, double speed, double pitch)
{
    const Stream stream(sonicCreateStream(rendering.sample_rate, 1));
    if (!stream)
        throw Failure("no memory to stretch speech");
    sonicSetSpeed(stream.get(), static_cast<float>(speed));
    sonicSetPitch(stream.get(), static_cast<float>(pitch));
    // The library takes a pointer to data that it doesn't change.
    auto* samples = const_cast<std::int16_t*>(rendering.samples.data());
    if (sonicWriteShortToStream(stream.get(), samples, static_cast<int>(rendering.samples.size()))
            == 0
        || sonicFlushStream(stream.get()) == 0)
        throw Failure("no memory to stretch speech");
    std::vector<std::int16_t> result(
        static_cast<std::size_t>(std::max(0, sonicSamplesAvailable(stream.get()))));
    const int got
        = sonicReadShortFromStream(stream.get(), result.data(), static_cast<int>(result.size()));
    result.resize(static_cast<std::size_t>(std::max(0, got)));
    return result;
}

} // namespace

void stretch(Rendering& rendering, double speed, double pitch)
{
    if (rendering.samples.empty() || (speed == 1 && pitch == 1))
        return;
    const double before = static_cast<double>(rendering.samples.size());
    rendering.samples = stretched(rendering, speed, pitch);
    const double ratio = static_cast<double>(rendering.samples.size()) / before;
    move_marks(rendering, [&](std::uint64_t frame) {
        return std::min<std::uint64_t>(
            static_cast<std::uint64_t>(std::floor(static_cast<double>(frame) * ratio)),
            rendering.samples.size());
    });
}

} // namespace tessavox::voice
