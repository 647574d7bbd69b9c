// The voice of a document: what it can be asked to do and what it reports back. The shape is that
// of the well documented SAPI 5 automation interface, so its public documentation applies.
#pragma once

#include "platform/text.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessavox {

/// Bits of the flags of SpeechVoice::Speak.
enum SpeechVoiceSpeakFlags : std::int32_t {
    SVSFDefault = 0,
    SVSFlagsAsync = 1,
    SVSFPurgeBeforeSpeak = 2,
    SVSFIsFilename = 4,
    SVSFIsXML = 8,
    SVSFIsNotXML = 16,
    SVSFPersistXML = 32,
    SVSFNLPSpeakPunc = 64,
};

/// Bits of SpeechVoice::EventInterests.
enum SpeechVoiceEventBits : std::int32_t {
    SVEStartInputStream = 2,
    SVEEndInputStream = 4,
    SVEVoiceChange = 8,
    SVEBookmark = 16,
    SVEWordBoundary = 32,
    SVEPhoneme = 64,
    SVESentenceBoundary = 128,
    SVEViseme = 256,
    SVEAudioLevel = 512,
    SVEPrivate = 32768,
    SVEDefaultInterests = 33278, // all but AudioLevel
};

/// An installed voice or sound output.
struct SpeechObjectToken {
    std::string id; // unique among all tokens of its kind, the same at every start
    std::string description; // what a person reads in a list; unique too
    // Attributes, as markup asks for them. Empty where unknown.
    std::string name;
    std::string gender; // "Male", "Female" or "Neutral"
    std::string age; // "Child", "Teen", "Adult" or "Senior"
    std::string language; // hexadecimal language id without 0x, such as "409"; several by ';'
    std::string vendor;

    /// The description; the locale is not looked at. @throws Failure if there is none.
    const std::string& GetDescription(int locale) const;
};

/// The answer of GetVoices and GetAudioOutputs.
class SpeechObjectTokens {
public:
    SpeechObjectTokens() = default;
    explicit SpeechObjectTokens(std::vector<SpeechObjectToken> tokens)
        : m_tokens(std::move(tokens))
    {
    }
    int Count() const { return static_cast<int>(m_tokens.size()); }
    /// @throws Failure if `index`, counted from 0, is out of range.
    const SpeechObjectToken& Item(int index) const;
    auto begin() const { return m_tokens.begin(); }
    auto end() const { return m_tokens.end(); }

private:
    std::vector<SpeechObjectToken> m_tokens;
};

/// Where a voice sends its sound, as far as its format goes.
class SpeechBaseStream {
public:
    virtual ~SpeechBaseStream() = default;
    /// A SpeechAudioFormatType, 4 to 39: 4 + 4*rate + 2*(16 bit) + 1*(stereo), with rate 0..8 for
    /// 8, 11.025, 12, 16, 22.05, 24, 32, 44.1 and 48 kHz.
    virtual int FormatType() const = 0;
    /// @throws Failure if `type` is no number of the table above, or the stream is open already.
    virtual void set_FormatType(int type) = 0;
};

enum SpeechStreamFileMode { SSFMCreateForWrite = 3 };

/// A wave file that a voice speaks into.
class SpeechFileStream : public SpeechBaseStream {
public:
    /// Creates the file, or empties an existing one, in the format set before.
    /// @throws Failure if `path` can't be written; no other file is ever touched.
    virtual void Open(const std::string& path, SpeechStreamFileMode mode, bool events) = 0;
    /// Completes the file. @throws Failure if it was not open, or the disk refused a part of it.
    virtual void Close() = 0;
};

/// The ten events of SAPI, and one of our own. A listener overrides those that it wants; all arrive
/// on the interface thread, between handlers, or inside a Speak that was called without
/// SVSFlagsAsync. StreamPos is a byte offset in the output of that stream; CharacterPosition and
/// Length count UTF-16 code units of the text given to Speak, markup included.
class SpeechVoiceEvents {
public:
    virtual ~SpeechVoiceEvents() = default;
    virtual void Voice_StartStream(std::int32_t /*StreamNum*/, std::int64_t /*StreamPos*/) { }
    virtual void Voice_EndStream(std::int32_t /*StreamNum*/, std::int64_t /*StreamPos*/) { }
    virtual void Voice_VoiceChange(
        std::int32_t /*StreamNum*/, std::int64_t /*StreamPos*/, const SpeechObjectToken& /*Token*/)
    {
    }
    virtual void Voice_Bookmark(std::int32_t /*StreamNumber*/, std::int64_t /*StreamPosition*/,
        const std::string& /*Bookmark*/, std::int32_t /*BookmarkId*/)
    {
    }
    virtual void Voice_Word(std::int32_t /*StreamNum*/, std::int64_t /*StreamPos*/,
        std::int32_t /*CharacterPosition*/, std::int32_t /*Length*/)
    {
    }
    virtual void Voice_Sentence(std::int32_t /*StreamNum*/, std::int64_t /*StreamPos*/,
        std::int32_t /*CharacterPosition*/, std::int32_t /*Length*/)
    {
    }
    virtual void Voice_Phoneme(std::int32_t /*StreamNumber*/, std::int64_t /*StreamPosition*/,
        std::int32_t /*Duration*/, std::int16_t /*NextPhoneId*/, std::int32_t /*Feature*/,
        std::int16_t /*CurrentPhoneId*/)
    {
    }
    virtual void Voice_Viseme(std::int32_t /*StreamNum*/, std::int64_t /*StreamPos*/,
        std::int32_t /*Duration*/, std::int32_t /*VisemeType*/, std::int32_t /*Feature*/,
        std::int32_t /*VisemeId*/)
    {
    }
    virtual void Voice_AudioLevel(
        std::int32_t /*StreamNumber*/, std::int64_t /*StreamPosition*/, std::int32_t /*AudioLevel*/)
    {
    }
    virtual void Voice_EnginePrivate(
        std::int32_t /*StreamNumber*/, std::int32_t /*StreamPosition*/, std::int64_t /*lParam*/)
    {
    }
    /// Not asked for by EventInterests: the sound output has been out of reach for some seconds
    /// while something was spoken (false), or is there again (true). The words go on all the same.
    virtual void Voice_AudioOutput(bool /*reachable*/) { }
};

/// One voice. Used on the interface thread only. Nothing here waits for the engine, the sound
/// device or the disk except Speak without SVSFlagsAsync and WaitUntilDone. Destroying it ends its
/// sound at once; no event arrives afterwards.
class SpeechVoice {
public:
    virtual ~SpeechVoice() = default;

    /// Speaks `text` and returns its stream number, rising from 1. SVSFlagsAsync: returns at once.
    /// SVSFPurgeBeforeSpeak: everything queued or spoken is dropped first, and none of its events
    /// comes any more; an empty text with exactly this flag only drops. SVSFIsFilename: the text is
    /// the path of a wave file to play. @throws Failure if that file can't be opened as a wave
    /// file.
    virtual std::int32_t Speak(TextSlice text, std::int32_t flags) = 0;
    /// Holds the sound at once, keeps the queue. Resume goes on with the very next sample.
    virtual void Pause() = 0;
    virtual void Resume() = 0;
    /// Moves within what is being spoken. `type` is "Sentence"; a negative `count` goes back, 0 to
    /// the start of the current sentence. @throws Failure for any other type.
    virtual std::int32_t Skip(std::string_view type, std::int32_t count) = 0;
    /// Blocks until the queue is empty, or for `milliseconds` (-1: without limit). The events of
    /// that time arrive afterwards, through the message loop. Returns whether the queue is empty.
    virtual bool WaitUntilDone(std::int32_t milliseconds) = 0;
    /// How far the text of the running Speak has been spoken, or written to a file, in UTF-16 code
    /// units: for a progress display. Rises to the text's length, and starts anew with the next
    /// one. A dialog may ask for it every 50 ms beside WaitUntilDone(0); Speak with an empty text
    /// and SVSFPurgeBeforeSpeak ends the writing at once, and Close completes the file as it is.
    virtual std::int64_t spoken_units() const = 0;

    /// The installed voices, in an order that is the same at every start. Two empty texts ask for
    /// all; otherwise the attributes as in markup, "Gender=Female;Language=409".
    virtual SpeechObjectTokens GetVoices(
        std::string_view required_attributes, std::string_view optional_attributes)
        = 0;
    virtual SpeechObjectTokens GetAudioOutputs(
        std::string_view required_attributes, std::string_view optional_attributes)
        = 0;

    virtual SpeechObjectToken Voice() const = 0;
    /// Takes effect with the following Speak. @throws Failure if no such voice is installed.
    virtual void set_Voice(const SpeechObjectToken& token) = 0;
    virtual std::int32_t Rate() const = 0;
    /// -10..10, each step a factor of 3^(1/10). Acts from the next unspoken word.
    /// @throws Failure out of range.
    virtual void set_Rate(std::int32_t rate) = 0;
    virtual std::int32_t Volume() const = 0;
    /// 0..100 per cent. Acts at once; a played wave file keeps its own level.
    /// @throws Failure out of range.
    virtual void set_Volume(std::int32_t volume) = 0;

    /// Sends the sound to an output, or to the system's default one. Ends the use of a file stream
    /// and, unless AllowAudioOutputFormatChangesOnNextSet is false, gives the stream the default
    /// format. @throws Failure if the token is not among GetAudioOutputs.
    virtual void set_AudioOutput(const std::optional<SpeechObjectToken>& token) = 0;
    virtual std::shared_ptr<SpeechBaseStream> AudioOutputStream() const = 0;
    /// Sends the sound to `stream`, which is AudioOutputStream() itself (and then takes over the
    /// format set on it) or a file stream that is open. @throws Failure otherwise.
    virtual void set_AudioOutputStream(std::shared_ptr<SpeechBaseStream> stream) = 0;
    virtual void set_AllowAudioOutputFormatChangesOnNextSet(bool allow) = 0;

    virtual std::int32_t EventInterests() const = 0;
    /// Acts at once; a Speak that has begun without interest in phonemes, visemes or levels does
    /// not make them any more.
    virtual void set_EventInterests(std::int32_t bits) = 0;
};

/// What makes voices; one for the whole process.
class SpeechService {
public:
    virtual ~SpeechService() = default;
    /// A new voice whose events go to `events` only, which must outlive it. Rate 0, Volume 100, the
    /// first installed voice, the default output. Never throws for lack of voices or sound.
    virtual std::unique_ptr<SpeechVoice> create_voice(SpeechVoiceEvents& events) = 0;
    virtual std::shared_ptr<SpeechFileStream> create_file_stream() = 0;
};

} // namespace tessavox
