// The sound formats on offer.
#pragma once

namespace tessavox {

struct FormatRow {
    const char* text; // what the list shows and the settings keep
    int type; // a SpeechAudioFormatType
};

// The first entry carries 6, not 4: "8kHz 8Bit Mono" has always given 16-bit sound.
inline constexpr FormatRow formats[] = {
    { "8kHz 8Bit Mono", 6 },
    { "8kHz 8Bit Stereo", 5 },
    { "8kHz 16Bit Mono", 6 },
    { "8kHz 16Bit Stereo", 7 },
    { "11kHz 8Bit Mono", 8 },
    { "11kHz 8Bit Stereo", 9 },
    { "11kHz 16Bit Mono", 10 },
    { "11kHz 16Bit Stereo", 11 },
    { "12kHz 8Bit Mono", 12 },
    { "12kHz 8Bit Stereo", 13 },
    { "12kHz 16Bit Mono", 14 },
    { "12kHz 16Bit Stereo", 15 },
    { "16kHz 8Bit Mono", 16 },
    { "16kHz 8Bit Stereo", 17 },
    { "16kHz 16Bit Mono", 18 },
    { "16kHz 16Bit Stereo", 19 },
    { "22kHz 8Bit Mono", 20 },
    { "22kHz 8Bit Stereo", 21 },
    { "22kHz 16Bit Mono", 22 },
    { "22kHz 16Bit Stereo", 23 },
    { "24kHz 8Bit Mono", 24 },
    { "24kHz 8Bit Stereo", 25 },
    { "24kHz 16Bit Mono", 26 },
    { "24kHz 16Bit Stereo", 27 },
    { "32kHz 8Bit Mono", 28 },
    { "32kHz 8Bit Stereo", 29 },
    { "32kHz 16Bit Mono", 30 },
    { "32kHz 16Bit Stereo", 31 },
    { "44kHz 8Bit Mono", 32 },
    { "44kHz 8Bit Stereo", 33 },
    { "44kHz 16Bit Mono", 34 },
    { "44kHz 16Bit Stereo", 35 },
    { "48kHz 8Bit Mono", 36 },
    { "48kHz 8Bit Stereo", 37 },
    { "48kHz 16Bit Mono", 38 },
    { "48kHz 16Bit Stereo", 39 },
};

} // namespace tessavox
