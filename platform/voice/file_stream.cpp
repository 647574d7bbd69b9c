#include "platform/voice/file_stream.h"

#include "platform/failure.h"

#include <utility>

namespace tessavox::voice {

FileTarget::FileTarget(std::unique_ptr<WaveWriter> writer, PcmFormat format)
    : m_format(format)
    , m_writer(std::move(writer))
{
}

bool FileTarget::write(std::span<const std::byte> frames)
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

void FileTarget::close()
{
    const std::lock_guard lock(m_mutex);
    if (!m_writer)
        return;
    const std::unique_ptr<WaveWriter> writer = std::move(m_writer);
    writer->close();
    if (!m_failure.empty())
        throw Failure(m_failure);
}

void SystemFileStream::set_FormatType(int type)
{
    PcmFormat::from_type(type);
    if (m_target)
        throw Failure("The format of an open file cannot change");
    m_format_type = type;
}

void SystemFileStream::Open(const std::string& path, SpeechStreamFileMode, bool)
{
    if (m_target)
        throw Failure("The stream is open already");
    const PcmFormat format = PcmFormat::from_type(m_format_type);
    m_target = std::make_shared<FileTarget>(create_wave_file(path, format), format);
}

void SystemFileStream::Close()
{
    if (!m_target)
        throw Failure("The stream is not open");
    std::exchange(m_target, nullptr)->close();
}

} // namespace tessavox::voice
