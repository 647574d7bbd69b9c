// Speech that goes into a wave file.
#pragma once

#include "platform/speech_voice.h"
#include "platform/voice/sound/wave_file.h"

#include <cstddef>
#include <memory>
#include <mutex>
#include <span>
#include <string>

namespace tessavox::voice {

/// The open file, shared by the stream that a command holds and the readings that go into it.
/// Any thread.
class FileTarget {
public:
    FileTarget(std::unique_ptr<WaveWriter> writer, PcmFormat format);

    PcmFormat format() const { return m_format; }
    /// Appends whole frames. Returns false, and takes nothing any more, once the disk has refused
    /// some or the file is closed.
    bool write(std::span<const std::byte> frames);
    /// @throws Failure if the disk refused anything.
    void close();

private:
    const PcmFormat m_format;
    std::mutex m_mutex;
    std::unique_ptr<WaveWriter> m_writer; // null once closed
    std::string m_failure; // what the disk refused; empty: nothing
};

class SystemFileStream : public SpeechFileStream {
public:
    int FormatType() const override { return m_format_type; }
    void set_FormatType(int type) override;
    void Open(const std::string& path, SpeechStreamFileMode mode, bool events) override;
    void Close() override;

    /// Null unless open.
    const std::shared_ptr<FileTarget>& target() const { return m_target; }

private:
    int m_format_type = PcmFormat().type();
    std::shared_ptr<FileTarget> m_target;
};

} // namespace tessavox::voice
