// The rows that a target is held against, made of a reference: its slices that sound, and silences
// wherever a reader may breathe.
#pragma once

#include "platform/voice/alignment/reference_speech.h"
#include "platform/voice/alignment/time_warping.h"
#include "platform/voice/alignment/voice_learner.h"

#include <optional>
#include <vector>

namespace tessavox::voice {

/// The rows of one reference, with the way from its time to them.
class ReferenceRows {
public:
    /// `reference` must live as long; `features` are its own.
    ReferenceRows(const ReferenceSpeech& reference, const SoundFeatures& features);

    /// The rows as the voice that is learnt would sound; plain ones if it is new.
    std::vector<WarpRow> rows_for(const VoiceLearner& voice) const;

    std::size_t size() const { return m_rows.size(); }
    bool is_silence(std::size_t row) const { return m_rows[row].kind != WarpRow::Kind::sound; }
    /// The phone that a row belongs to; null for silences, and between phones.
    const ReferencePhone* phone_of(std::size_t row) const { return m_rows[row].phone; }
    /// Where in its phone a row is. Nothing without a phone.
    std::optional<VoiceLearner::Place> place_of(std::size_t row) const;

    /// The first sounding row that is not before a frame of the reference, or the last row of all.
    /// There must be a row.
    std::size_t row_of(std::uint64_t frame) const;
    /// How many frames of the reference `frame` lies after the centre of a row.
    std::int64_t beside(std::size_t row, std::uint64_t frame) const;

private:
    struct Row {
        WarpRow::Kind kind = WarpRow::Kind::sound;
        std::size_t slice = 0; // of the reference; of a silence, the next one that sounds
        const ReferencePhone* phone = nullptr;
        std::size_t third = 0; // of the phone
    };

    std::uint64_t frame_of_slice(std::size_t slice) const;
    const ReferencePhone* phone_at(std::uint64_t frame) const;
    bool in_pause(std::uint64_t frame) const;
    void add_sound(std::size_t slice);

    const ReferenceSpeech& m_reference;
    const SoundFeatures& m_features;
    std::vector<Row> m_rows;
};

} // namespace tessavox::voice
