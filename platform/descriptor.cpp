#include "platform/descriptor.h"

#include <cerrno>
#include <unistd.h>
#include <utility>

namespace tessavox {

namespace {

/// Calls read() or write() until none of the bytes are left.
template <class Byte, class Call> bool transfer_all(std::span<Byte> bytes, Call call)
{
    while (!bytes.empty()) {
        const ssize_t count = call(bytes);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
    return true;
}

} // namespace

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept
{
    std::swap(m_number, other.m_number);
    return *this;
}

Descriptor::~Descriptor()
{
    close();
}

bool Descriptor::close()
{
    return !is_open() || ::close(release()) == 0;
}

bool read_all(int descriptor, std::span<std::byte> bytes)
{
    return transfer_all(bytes,
        [&](std::span<std::byte> rest) { return ::read(descriptor, rest.data(), rest.size()); });
}

bool write_all(int descriptor, std::span<const std::byte> bytes)
{
    return transfer_all(bytes, [&](std::span<const std::byte> rest) {
        return ::write(descriptor, rest.data(), rest.size());
    });
}

} // namespace tessavox
