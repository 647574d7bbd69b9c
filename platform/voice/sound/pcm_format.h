// The 36 sound formats and their numbers.
#pragma once

#include <cstdint>

namespace tessavox::voice {

/// PCM as wave files and sound devices take it: unsigned 8 bit or signed 16 bit little endian.
struct PcmFormat {
    int rate = 48000; // frames a second
    int bits = 16; // 8 or 16
    int channels = 2; // 1 or 2, interleaved

    int block_align() const { return bits / 8 * channels; } // bytes a frame
    bool operator==(const PcmFormat&) const = default;

    /// The format of a SpeechAudioFormatType, 4 to 39. @throws Failure for any other number.
    static PcmFormat from_type(int type);
    /// Its number. @throws Failure if the table has none.
    int type() const;
};

} // namespace tessavox::voice
