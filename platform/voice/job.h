// One call of Speak, as it waits for its turn and while it is spoken.
#pragma once

#include "platform/text.h"
#include "platform/voice/sound/pcm_format.h"
#include "platform/voice/sound/wave_file.h"
#include "platform/voice/text/text_reader.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

namespace tessavox::voice {

class FileTarget;

/// Everything that Speak decides at the moment of the call. Nothing of it changes afterwards but
/// `cancelled`, which a purge sets from the interface thread, and the wave reader's own position.
struct Job {
    std::int32_t stream = 0; // StreamNum
    int generation = 0; // raised by each purge
    TextSlice text;
    ReaderOptions reading;
    bool persist_markup = false;
    int voice = -1; // index in the catalogue
    std::unique_ptr<WaveReader> wave; // played in place of the text
    PcmFormat format;
    std::string output; // name of the sound output; empty: the default one
    std::shared_ptr<FileTarget> file; // null: the sound goes to `output`
    std::atomic<bool> cancelled{ false };
};

} // namespace tessavox::voice
