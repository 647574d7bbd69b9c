// Open files, pipes and sockets of the system, by their numbers.
#pragma once

#include <cstddef>
#include <span>

namespace tessavox {

/// Closes what it holds; -1 is nothing.
class Descriptor {
public:
    explicit Descriptor(int number = -1)
        : m_number(number)
    {
    }
    Descriptor(Descriptor&& other) noexcept
        : m_number(other.release())
    {
    }
    Descriptor& operator=(Descriptor&& other) noexcept;
    ~Descriptor();

    bool is_open() const { return m_number >= 0; }
    int get() const { return m_number; }
    int release()
    {
        const int number = m_number;
        m_number = -1;
        return number;
    }

    /// False if closing failed, which is where some file systems report a full disk.
    bool close();

private:
    int m_number;
};

/// Fills all of `bytes`, however long that takes. False at the end of the input.
bool read_all(int descriptor, std::span<std::byte> bytes);
/// Writes all of `bytes`. False if nobody reads them any more.
bool write_all(int descriptor, std::span<const std::byte> bytes);

} // namespace tessavox
