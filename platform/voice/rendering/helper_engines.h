// The speech engines of the process, which run in other processes: an engine is a library that
// parses whatever text there is, and its crash must cost no more than a sentence.
#pragma once

#include "platform/voice/rendering/helper_pool.h"
#include "platform/voice/speech_engines.h"

#include <memory>
#include <string>

namespace tessavox::voice {

struct HelperOptions {
    std::string path; // of the program that speaks
    int most_for_a_file = 0; // how many of it render into a file; 0: as many as processors
    HelperPatience patience;
    std::string shipped_voices = {}; // the folder of descriptions that come with the program
};

/// Starts the first helper at once and does not wait for it. Without the program there are no
/// voices.
std::unique_ptr<SpeechEngines> start_helper_engines(HelperOptions options);

} // namespace tessavox::voice
