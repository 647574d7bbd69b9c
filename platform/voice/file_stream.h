// Speech that goes into a wave file.
#pragma once

#include "platform/failure.h"
#include "platform/speech_voice.h"
#include "platform/voice/sound/wave_file.h"

#include <cstddef>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <utility>

namespace tessavox::voice {

/// The open file, shared by the stream that a command holds and the readings that go into it.
/// Any thread.
class FileTarget {
public:
    FileTarget(std::unique_ptr<WaveWriter> writer, PcmFormat format)
        : m_format(format)
        , m_writer(std::move(writer))
    {
    }

    PcmFormat format() const { return m_format; }
    /// Appends whole frames. Returns false, and takes nothing any more, once the disk has refused
    /// some or the file is closed.
    bool write(std::span<const std::byte> frames)
    {
        const std::lock_guard lock(m_mutex);
        if (!m_writer || !m_failure.empty())
            return false;
        try {
            m_writer->write(frames);
        } catch (const Failure& failure) {
            m_failure = failure.what();
            return false;
        }
        return true;
    }
    /// @throws Failure if the disk refused anything.
    void close()
    {
        const std::lock_guard lock(m_mutex);
        if (!m_writer)
            return;
        const std::unique_ptr<WaveWriter> writer = std::move(m_writer);
        writer->close();
        if (!m_failure.empty())
            throw Failure(m_failure);
    }

private:
    const PcmFormat m_format;
    std::mutex m_mutex;
    std::unique_ptr<WaveWriter> m_writer; // null once closed
    std::string m_failure; // what the disk refused; empty: nothing
};

class SystemFileStream : public SpeechFileStream {
public:
    int FormatType() const override { return m_format_type; }
    void set_FormatType(int type) override
    {
        PcmFormat::from_type(type);
        if (m_target)
            throw Failure("The format of an open file cannot change");
        m_format_type = type;
    }
    void Open(const std::string& path, SpeechStreamFileMode, bool) override
    {
        if (m_target)
            throw Failure("The stream is open already");
        const PcmFormat format = PcmFormat::from_type(m_format_type);
        m_target = std::make_shared<FileTarget>(create_wave_file(path, format), format);
    }
    void Close() override
    {
        if (!m_target)
            throw Failure("The stream is not open");
        std::exchange(m_target, nullptr)->close();
    }

    /// Null unless open.
    const std::shared_ptr<FileTarget>& target() const { return m_target; }

private:
    int m_format_type = PcmFormat().type();
    std::shared_ptr<FileTarget> m_target;
};

} // namespace tessavox::voice
