// What the logic relies on in every voice. A Bed has service(), events(), which outlives the
// voices, path(name), in a folder of its own, and at least two voices.
#pragma once

#include "platform/failure.h"
#include "platform/speech_voice.h"

#include <gtest/gtest.h>

#include <set>

namespace tessavox {

template <class Bed> class SpeechVoiceContract : public testing::Test {
protected:
    Bed bed;
    std::unique_ptr<SpeechVoice> voice = bed.service().create_voice(bed.events());
};

TYPED_TEST_SUITE_P(SpeechVoiceContract);

TYPED_TEST_P(SpeechVoiceContract, ANewVoiceHasTheFirstVoiceRate0Volume100)
{
    EXPECT_EQ(this->voice->Rate(), 0);
    EXPECT_EQ(this->voice->Volume(), 100);
    EXPECT_EQ(this->voice->Voice().id, this->voice->GetVoices("", "").Item(0).id);
    EXPECT_EQ(this->voice->EventInterests(), SVEDefaultInterests);
}

TYPED_TEST_P(SpeechVoiceContract, TheListsAreTheSameAtEveryCallAndTheirTextsUnique)
{
    const auto other = this->bed.service().create_voice(this->bed.events());
    for (const bool outputs : { false, true }) {
        const auto list = [&](SpeechVoice& of) {
            return outputs ? of.GetAudioOutputs("", "") : of.GetVoices("", "");
        };
        const SpeechObjectTokens first = list(*this->voice);
        const SpeechObjectTokens second = list(*other);
        ASSERT_EQ(first.Count(), second.Count());
        ASSERT_GE(first.Count(), outputs ? 1 : 2);
        std::set<std::string> texts;
        for (int i = 0; i < first.Count(); ++i) {
            EXPECT_EQ(first.Item(i).id, second.Item(i).id);
            EXPECT_TRUE(texts.insert(first.Item(i).GetDescription(0)).second) << i;
        }
        EXPECT_THROW(first.Item(first.Count()), Failure);
        EXPECT_THROW(first.Item(-1), Failure);
    }
}

TYPED_TEST_P(SpeechVoiceContract, KeepsWhatItIsGiven)
{
    const SpeechObjectToken second = this->voice->GetVoices("", "").Item(1);
    this->voice->set_Voice(second);
    EXPECT_EQ(this->voice->Voice().id, second.id);
    for (const int rate : { -10, 10 }) {
        this->voice->set_Rate(rate);
        EXPECT_EQ(this->voice->Rate(), rate);
    }
    for (const int volume : { 0, 100 }) {
        this->voice->set_Volume(volume);
        EXPECT_EQ(this->voice->Volume(), volume);
    }
}

TYPED_TEST_P(SpeechVoiceContract, SpeaksIntoAFileUntilItsOutputIsSet)
{
    const std::shared_ptr<SpeechBaseStream> device = this->voice->AudioOutputStream();
    ASSERT_NE(device, nullptr);
    const std::shared_ptr<SpeechFileStream> file = this->bed.service().create_file_stream();
    file->set_FormatType(12);
    EXPECT_EQ(file->FormatType(), 12);
    file->Open(this->bed.path("file.wav"), SSFMCreateForWrite, false);
    this->voice->set_AllowAudioOutputFormatChangesOnNextSet(false);
    this->voice->set_AudioOutputStream(file);
    EXPECT_EQ(this->voice->AudioOutputStream(), file);
    this->voice->Speak(u"", SVSFlagsAsync | SVSFPurgeBeforeSpeak | SVSFIsXML);
    EXPECT_TRUE(this->voice->WaitUntilDone(-1));
    this->voice->set_AudioOutput(this->voice->GetAudioOutputs("", "").Item(0));
    EXPECT_EQ(this->voice->AudioOutputStream(), device);
    device->set_FormatType(6);
    this->voice->set_AudioOutputStream(device);
    EXPECT_EQ(this->voice->AudioOutputStream()->FormatType(), 6);
    EXPECT_NO_THROW(file->Close());
}

TYPED_TEST_P(SpeechVoiceContract, OrdersToAnIdleVoiceDoNoHarm)
{
    this->voice->Pause();
    this->voice->Speak(u"", SVSFPurgeBeforeSpeak);
    this->voice->Resume();
    this->voice->Resume();
    this->voice->Skip("Sentence", 1);
    EXPECT_TRUE(this->voice->WaitUntilDone(0));
}

REGISTER_TYPED_TEST_SUITE_P(SpeechVoiceContract, ANewVoiceHasTheFirstVoiceRate0Volume100,
    TheListsAreTheSameAtEveryCallAndTheirTextsUnique, KeepsWhatItIsGiven,
    SpeaksIntoAFileUntilItsOutputIsSet, OrdersToAnIdleVoiceDoNoHarm);

} // namespace tessavox
