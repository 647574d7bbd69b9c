// espeak-ng as one C++ object. The library is one global state for the whole process, so there is
// one of these objects and one lock, which is held while one utterance is spoken.
#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

namespace tessavox::voice {

/// What is set anew before each utterance, because the library keeps everything from call to call.
struct EspeakSettings {
    std::string voice; // the library's identifier, such as "gmw/en-US"
    int words_per_minute = 175;
    int pitch = 50;
    int range = 50;
    int volume = 100;
};

/// What the library said: frames count from the start of `samples`.
struct EspeakSound {
    struct Word {
        std::uint32_t position = 0; // code points from the start of the text of its call
        std::uint64_t frame = 0;
        std::uint32_t phone = 0; // index in `phones` of the one that was told next
    };
    struct Phone {
        std::string mnemonic;
        std::uint64_t frame = 0;
    };
    int sample_rate = 0;
    std::vector<std::int16_t> samples;
    std::vector<Word> words;
    std::vector<Phone> phones;
};

struct EspeakVoice {
    std::string name;
    std::string language; // the first, as a BCP 47 tag in lower case
    std::string identifier;
    int gender = 0; // 0 unstated, 1 male, 2 female
    int age = 0; // years, 0 unstated
};

/// The lock on the library, and what can be done while it is held.
class EspeakLibrary {
public:
    /// Waits for the lock. The first one starts the library.
    EspeakLibrary();
    ~EspeakLibrary();
    EspeakLibrary(const EspeakLibrary&) = delete;
    EspeakLibrary& operator=(const EspeakLibrary&) = delete;

    /// False if its data is missing; nothing else may then be called.
    bool available() const;
    /// Every voice that speaks by itself: no variants, and none that needs another program.
    std::vector<EspeakVoice> voices();

    /// Begins an utterance. @throws Failure if the voice can't be loaded.
    void begin(
        const EspeakSettings& settings, EspeakSound& sound, const std::atomic<bool>& cancelled);
    /// Each of these appends to the sound given to begin(). They return early once cancelled.
    /// `utf8` is plain and holds no NUL.
    void say(const std::string& utf8, bool pause_after);
    void say_phonemes(const std::string& mnemonics, bool pause_after);
    void say_name_of(char32_t character);

    /// What say() would say of `utf8` after begin(), by the names of the phonemes: blanks between
    /// words, phoneme_separator between the phonemes of a word.
    std::string phonemes_of(const std::string& utf8);
    static constexpr char phoneme_separator = '-';

private:
    std::unique_lock<std::mutex> m_lock;
};

} // namespace tessavox::voice
