#include "platform/voice/alignment/aligner.h"

#include <algorithm>

namespace tessavox::voice {

namespace {

SoundFeatures features_of(std::unique_ptr<FeatureExtractor>& extractor,
    std::span<const std::int16_t> samples, int sample_rate, double highest_hz)
{
    if (!extractor || !extractor->is_for(sample_rate, highest_hz))
        extractor = std::make_unique<FeatureExtractor>(sample_rate, highest_hz);
    return extractor->features_of(samples);
}

void learn(VoiceLearner& voice, const ReferenceRows& rows, const WarpPath& path,
    std::span<const SliceVector> target)
{
    for (const WarpPoint& point : path.points)
        if (const auto place = rows.place_of(point.row))
            voice.learn(*place, target[point.slice]);
}

} // namespace

AlignedMarks Aligner::align(
    std::span<const std::int16_t> target, int sample_rate, const ReferenceSpeech& reference)
{
    const double highest_hz
        = std::min(highest_told_hz(sample_rate), highest_told_hz(reference.sample_rate));
    const SoundFeatures heard = features_of(m_target_extractor, target, sample_rate, highest_hz);
    const SoundFeatures spoken
        = features_of(m_reference_extractor, reference.samples, reference.sample_rate, highest_hz);
    const SoundEdges edges = edges_of(heard);
    const std::size_t count = edges.end - edges.begin;
    const auto vectors = std::span(heard.vectors).subspan(edges.begin, count);
    const auto levels = std::span(heard.levels).subspan(edges.begin, count);
    const MarkTarget place{ sample_rate, target.size(), edges.begin, levels };

    const ReferenceRows rows(reference, spoken);
    const WarpPath draft = warp(rows.rows_for(m_voice), vectors, levels);
    if (draft.points.empty())
        return spread_marks(reference, place);
    // What this utterance itself tells of the voice betters its own marks, most of all in the first
    // ones of a voice.
    VoiceLearner better = m_voice;
    learn(better, rows, draft, vectors);
    const WarpPath path = warp(rows.rows_for(better), vectors, levels);
    AlignedMarks marks = map_marks(reference, rows, path, place);
    marks.doubtful = !m_voice.trusts(draft.cost);
    if (!marks.doubtful)
        learn(m_voice, rows, path, vectors);
    return marks;
}

} // namespace tessavox::voice
