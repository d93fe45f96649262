// An open file or folder of the system; closed with its last owner. Any thread.
#pragma once

#include <unistd.h>
#include <utility>

class Descriptor
{
public:
    // Negative for none.
    explicit Descriptor(int number = -1)
        : m_number(number)
    {
    }
    ~Descriptor()
    {
        if (m_number >= 0)
            ::close(m_number);
    }
    Descriptor(Descriptor &&other) noexcept
        : m_number(other.release())
    {
    }
    Descriptor &operator=(Descriptor &&other) noexcept
    {
        std::swap(m_number, other.m_number);
        return *this;
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    explicit operator bool() const { return m_number >= 0; }
    [[nodiscard]] int get() const { return m_number; }
    // The caller closes it.
    [[nodiscard]] int release() { return std::exchange(m_number, -1); }

private:
    int m_number;
};
